#include "history/JournalRecord.h"

#include <QDeadlineTimer>

#include <utility>

namespace quellbox {

namespace {

// An action does not wait longer for its record to be written, and not at all where that cannot be done now.
constexpr qint64 patienceMs = 4000;
constexpr qint64 lookMs = 50;

} // namespace

HistoryEntry EntryOf(const HandledMessage& handled) {
    const MessageTexts texts = handled.message.Texts();
    HistoryEntry entry;
    entry.file = handled.message.Key();
    entry.sender = texts.tag;
    entry.from = texts.from;
    entry.to = texts.to;
    entry.subject = texts.subject;
    entry.size = handled.message.Size();
    entry.rating = texts.scl;
    entry.result = handled.failure ? HistoryResult::Failed : HistoryResult::Done;
    entry.reason = handled.failure ? handled.failure->reason : QString();
    entry.detail = handled.detail;
    entry.isFinal = handled.isFinal;
    return entry;
}

JournalRecord::JournalRecord(std::shared_ptr<JournalWriter> writer, HistoryActionFacts facts)
    : writer_(std::move(writer)), facts_(std::move(facts)) {}

void JournalRecord::Announce(const QStringList& files) {
    {
        const QMutexLocker lock(&mutex_);
        ++announced_;
    }
    const auto announce = [files](JournalDatabase& database, qint64 action) { database.Announce(action, files); };
    Write(announce, JournalWriter::Pace::AtOnce, [self = shared_from_this()] {
        const QMutexLocker lock(&self->mutex_);
        ++self->onRecord_;
        self->written_.wakeAll();
    });
}

void JournalRecord::AwaitAnnounced() {
    if (onRecord_ >= announced_) {
        return;
    }
    QMutexLocker lock(&mutex_);
    const int awaited = announced_;
    const QDeadlineTimer patience(patienceMs);
    while (onRecord_ < awaited && !waitsNoMore_) {
        written_.wait(&mutex_, QDeadlineTimer(lookMs));
        waitsNoMore_ = patience.hasExpired() || writer_->IsInTrouble();
    }
}

void JournalRecord::Take(HandledMessage handled) {
    {
        const QMutexLocker lock(&mutex_);
        hasTaken_ = true;
        taken_.push_back(std::move(handled));
        if (taken_.size() > 1) {
            return; // the writer will come for the first of them
        }
    }
    const auto messages = std::make_shared<Messages>();
    const auto write = [this, messages](JournalDatabase& database, qint64 action) {
        WriteTaken(database, action, *messages);
    };
    Write(write, JournalWriter::Pace::Gather);
}

void JournalRecord::Finish() {
    const auto end = [](JournalDatabase& database, qint64 action) { database.EndAction(action); };
    {
        const QMutexLocker lock(&mutex_);
        if (announced_ == 0 && !hasTaken_) {
            return; // nothing was done
        }
    }
    Write(end, JournalWriter::Pace::AtOnce);
}

/// `job` gets the number of the action, and does not outlive this object.
void JournalRecord::Write(const std::function<void(JournalDatabase&, qint64 action)>& job, JournalWriter::Pace pace,
                          std::function<void()> done) {
    const auto self = shared_from_this();
    const auto database = std::make_shared<quint64>(0);
    writer_->Write(
        [self, job, database](JournalDatabase& journal) {
            *database = journal.Number();
            job(journal, self->Number(journal));
        },
        pace,
        [self, database, done = std::move(done)] {
            self->writtenTo_ = *database;
            if (done) {
                done();
            }
        });
}

/// Writes what has been taken by now. `messages` are those that a failed attempt has left.
void JournalRecord::WriteTaken(JournalDatabase& database, qint64 action, Messages& messages) {
    {
        const QMutexLocker lock(&mutex_);
        std::move(taken_.begin(), taken_.end(), std::back_inserter(messages));
        taken_.clear();
    }
    for (const HandledMessage& handled : messages) {
        database.AddEntry(action, EntryOf(handled));
        if (facts_.action == HistoryAction::Undo) {
            MarkEntry(database, handled);
        }
    }
}

/// What is not where the action had put it cannot be taken back by another attempt either.
void JournalRecord::MarkEntry(JournalDatabase& database, const HandledMessage& handled) const {
    const QString place = facts_.kept.isEmpty() ? facts_.pickup : facts_.kept;
    if (!handled.failure) {
        database.MarkUndone(handled.entry);
    } else if (handled.failure->problem == FileProblem::Missing && handled.failure->path.startsWith(place)) {
        database.MarkFinal(handled.entry);
    }
}

qint64 JournalRecord::Number(JournalDatabase& database) {
    const bool isWritten = writtenTo_ == database.Number();
    const bool isGiven = givenIn_ != 0 && givenIn_ == database.Transaction();
    if (!isWritten && !isGiven) {
        number_ = database.AddAction(facts_, writer_->Session());
        givenIn_ = database.Transaction();
    }
    return number_;
}

} // namespace quellbox
