#pragma once

#include "history/JournalWriter.h"
#include "messages/ActionRecord.h"

#include <QMutex>
#include <QWaitCondition>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace quellbox {

/// The record of an action in the database of the history.
class JournalRecord : public ActionRecord, public std::enable_shared_from_this<JournalRecord> {
public:
    /// `facts` are those of an action that begins now.
    JournalRecord(std::shared_ptr<JournalWriter> writer, HistoryActionFacts facts);

    void Announce(const QStringList& files) override;
    void AwaitAnnounced() override;
    void Take(HandledMessage handled) override;

    /// Nothing that was announced will be touched any more.
    void Finish();

private:
    using Messages = std::vector<HandledMessage>;

    void Write(const std::function<void(JournalDatabase&, qint64 action)>& job, JournalWriter::Pace pace,
               std::function<void()> done = {});
    void WriteTaken(JournalDatabase& database, qint64 action, Messages& messages);
    void MarkEntry(JournalDatabase& database, const HandledMessage& handled) const;
    qint64 Number(JournalDatabase& database);

    const std::shared_ptr<JournalWriter> writer_;
    const HistoryActionFacts facts_;

    QMutex mutex_; // of what follows
    QWaitCondition written_;
    std::atomic<int> announced_ = 0; // calls of Announce()
    std::atomic<int> onRecord_ = 0;  // those of them that are written down
    bool waitsNoMore_ = false;
    bool hasTaken_ = false;
    Messages taken_; // which the writer will come for

    // Used by jobs only. The number that an action has in the database counts when it was given in the transaction
    // under way, or when it is written for good.
    qint64 number_ = 0;
    quint64 givenIn_ = 0;
    quint64 writtenTo_ = 0;
};

/// What the history says of a message.
HistoryEntry EntryOf(const HandledMessage& handled);

} // namespace quellbox
