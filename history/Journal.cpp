#include "history/Journal.h"

#include "history/JournalRecord.h"

#include <utility>

namespace quellbox {

Journal::Journal(WorkPool& pool, const Clock& clock, const Place& place)
    : clock_(clock), place_(place), mailbox_(std::make_shared<Mailbox>(*this)) {
    const auto tell = [mailbox = mailbox_](const QString& text) {
        mailbox->Post([text](Journal& journal) { Q_EMIT journal.Troubled(text); });
    };
    const auto written = [mailbox = mailbox_] { mailbox->Post([](Journal& journal) { Q_EMIT journal.Changed(); }); };
    writer_ = std::make_shared<JournalWriter>(pool, place.isKept ? place.file : QString(),
                                              JournalWriter::Listener{tell, written});
}

Journal::~Journal() {
    mailbox_->Close();
    writer_->Close();
}

std::shared_ptr<ActionRecord> Journal::Begin(const HistorySubject& subject) {
    auto record = std::make_shared<JournalRecord>(writer_, FactsOf(subject));
    JournalRecord* lent = record.get();
    return {lent, [record = std::move(record)](ActionRecord*) { record->Finish(); }};
}

void Journal::Note(const HistorySubject& subject, const HistoryEntry& entry) {
    const auto write = [facts = FactsOf(subject), entry, session = writer_->Session()](JournalDatabase& database) {
        const qint64 action = database.AddAction(facts, session);
        database.AddEntry(action, entry);
        database.EndAction(action);
    };
    writer_->Write(write, JournalWriter::Pace::AtOnce);
}

void Journal::SetKept(bool isKept) {
    if (isKept == place_.isKept) {
        return;
    }
    place_.isKept = isKept;
    writer_->SetFile(isKept ? place_.file : QString());
    writer_->Write([](JournalDatabase&) {}, JournalWriter::Pace::AtOnce); // which tells that the history is another one
}

void Journal::RemoveBefore(QDate day) {
    const qint64 moment = day.startOfDay().toMSecsSinceEpoch();
    writer_->Write([moment](JournalDatabase& database) { database.RemoveBefore(moment); }, JournalWriter::Pace::Gather);
}

HistoryActionFacts Journal::FactsOf(const HistorySubject& subject) const {
    return {subject.action,  clock_.Now().toMSecsSinceEpoch(),
            place_.account,  place_.computer,
            subject.archive, subject.pickup,
            subject.kept,    subject.undoes,
            subject.detail};
}

} // namespace quellbox
