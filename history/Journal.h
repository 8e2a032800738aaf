#pragma once

#include "history/HistoryTypes.h"
#include "history/JournalWriter.h"
#include "messages/ActionRecord.h"
#include "platform/Clock.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <type_traits>

namespace quellbox {

/// What an action is about: what Journal adds is who acts, where, and when.
struct HistorySubject {
    HistoryAction action = HistoryAction::Unblock;
    QString archive{};
    QString pickup{};
    QString kept{};
    qint64 undoes = 0;
    QString detail{}; ///< entries that it has added to the whitelist, one in a line
};

/// The history as the rest of the program knows it: what is done is handed over and written down beside the window, and
/// questions are answered later. Nothing here waits or fails.
class Journal : public QObject {
    Q_OBJECT

public:
    /// Where the history is kept, and who acts.
    struct Place {
        QString file; ///< of the database; empty keeps the history in memory, until the program ends
        QString account{};
        QString computer{};
        bool isKept = true; ///< false keeps the history in memory as well
    };

    /// What is lent has to outlive this object, and the pool what it does for it.
    Journal(WorkPool& pool, const Clock& clock, const Place& place);
    ~Journal() override;

    /// The record of an action that begins now, and ends when the last who holds the record has let it go.
    std::shared_ptr<ActionRecord> Begin(const HistorySubject& subject);

    /// Something was done that has one entry and no message.
    void Note(const HistorySubject& subject, const HistoryEntry& entry);

    /// Whether the history outlives the program.
    void SetKept(bool isKept);

    /// The program ends: what cannot be written now is not tried again.
    void Hurry() { writer_->Hurry(); }

    /// Removes what happened before that day.
    void RemoveBefore(QDate day);

    /// Asks the database, and hands the answer to `take`, on the thread of this object, unless `receiver` has gone.
    /// When the database cannot answer, it gets a default answer.
    enum class Question {
        Reads,    ///< what is written
        ReadsAll, ///< what was done before the question was asked; while that cannot be written, there is no answer
        Writes,   ///< and changes the database
    };
    template <class Ask, class Take>
    void AskFor(Question question, const QObject* receiver, Ask ask, Take take);

    /// What does the writing, for jobs that know more of it than the database.
    const std::shared_ptr<JournalWriter>& Writer() const { return writer_; }

Q_SIGNALS:
    /// Something was written.
    void Changed();

    /// What the user is to know about the database; each kind of trouble is told once.
    void Troubled(const QString& text);

private:
    class Mailbox;

    HistoryActionFacts FactsOf(const HistorySubject& subject) const;

    const Clock& clock_;
    Place place_;
    std::shared_ptr<Mailbox> mailbox_;
    std::shared_ptr<JournalWriter> writer_;
};

/// What other threads have for the owner of a journal, who may have gone meanwhile.
class Journal::Mailbox {
public:
    explicit Mailbox(Journal& owner) : owner_(&owner) {}

    void Close() {
        const QMutexLocker lock(&mutex_);
        owner_ = nullptr;
    }

    /// Runs `letter` on the owner's thread, if there still is an owner then.
    void Post(std::function<void(Journal&)> letter) {
        const QMutexLocker lock(&mutex_);
        if (owner_ != nullptr) {
            QMetaObject::invokeMethod(
                owner_, [owner = owner_, letter = std::move(letter)] { letter(*owner); }, Qt::QueuedConnection);
        }
    }

private:
    QMutex mutex_;
    Journal* owner_;
};

template <class Ask, class Take>
void Journal::AskFor(Question question, const QObject* receiver, Ask ask, Take take) {
    using Answer = std::invoke_result_t<Ask, JournalDatabase&>;
    const auto answer = std::make_shared<Answer>();
    const auto deliver = [mailbox = mailbox_, answer, take = std::move(take),
                          receiver = QPointer<const QObject>(receiver)] {
        mailbox->Post([answer, take, receiver](Journal&) {
            if (receiver) {
                take(std::move(*answer));
            }
        });
    };
    if (question == Question::Writes) {
        writer_->Write([ask, answer](JournalDatabase& database) { *answer = ask(database); },
                       JournalWriter::Pace::AtOnce, deliver);
        return;
    }
    const auto read = [ask, answer, deliver](JournalDatabase& database) {
        *answer = ask(database);
        deliver();
    };
    writer_->Read(read, question == Question::ReadsAll ? JournalWriter::Sight::All : JournalWriter::Sight::Present,
                  deliver);
}

} // namespace quellbox
