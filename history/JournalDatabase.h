#pragma once

#include "history/HistoryTypes.h"
#include "history/JournalError.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <optional>
#include <vector>

namespace quellbox {

/// Numbers of entries.
using HistoryIds = std::vector<qint64>;

/// One message that can be put back where it was.
struct UndoItem {
    qint64 id = 0; ///< of the entry
    qint64 action = 0;
    HistoryActionFacts facts; ///< of the action that is taken back
    HistoryEntry entry;
};

/// The database of the history: what was done, to which messages, and with what result. Several programs may have it
/// open and write to it. Every method throws JournalError. An object belongs to the thread that has made it.
class JournalDatabase {
public:
    /// Opens the database, and makes it where there is none. An empty `file` is a database in memory.
    explicit JournalDatabase(const QString& file);
    ~JournalDatabase();
    JournalDatabase(const JournalDatabase&) = delete;
    JournalDatabase& operator=(const JournalDatabase&) = delete;

    /// What follows is written as a whole, or not at all.
    void BeginTransaction();
    void Commit();
    void Rollback() noexcept;

    /// Numbers of this object and of the latest transaction, which no other object and no other transaction have.
    quint64 Number() const { return number_; }
    quint64 Transaction() const { return transaction_; }

    /// Writes down that an action begins, by the program of that name; returns its number.
    qint64 AddAction(const HistoryActionFacts& facts, const QString& session);

    /// These files may be touched from now on. Forgotten when the action ends.
    void Announce(qint64 action, const QStringList& files);

    void AddEntry(qint64 action, const HistoryEntry& entry);

    void EndAction(qint64 action);

    /// A message was put back.
    void MarkUndone(qint64 entry);

    /// A message will never come back.
    void MarkFinal(qint64 entry);

    /// These messages of an action were put back.
    void MarkUndone(qint64 action, const QStringList& files);

    /// Removes what is older.
    void RemoveBefore(qint64 timeMs);

    /// The numbers of the entries that a filter lets through, the newest first.
    HistoryIds Find(const HistoryFilter& filter);

    /// The lines with these numbers, in that order; those that have gone are left out.
    std::vector<HistoryLine> Lines(const HistoryIds& ids);

    /// Whose messages were unblocked, in lower case, the most frequent first; equal ones by their names. Tolerated ones
    /// are no such.
    std::vector<UnblockedSender> UnblockedSenders();

    /// The latest action of the user on messages of an archive that was not taken back; empty when there is none, or
    /// when it cannot be taken back.
    std::optional<qint64> LatestToUndo(const QString& archive);

    /// What can be taken back of an action, or of entries.
    std::vector<UndoItem> ItemsToUndo(qint64 action);
    std::vector<UndoItem> ItemsToUndo(const HistoryIds& entries);

    /// The programs that have begun actions and not ended them.
    QStringList SessionsWithOpenActions();
    std::vector<InterruptedAction> OpenActions(const QString& session);

    /// What one program has begun is for another one to end.
    void Adopt(const QString& session, const QString& by);

    /// Whether everything can be read.
    bool IsWhole();

private:
    static constexpr int version = 1; // counts up with every change of the tables

    void Prepare();
    int Version();
    void MakeTables();
    std::vector<UndoItem> SelectItems(const QString& condition);
    QStringList UnwrittenFiles(qint64 action);
    void Execute(const QString& statement);
    QSqlQuery Prepared(const QString& statement);
    static void Run(QSqlQuery& query);
    [[noreturn]] static void Throw(const QSqlError& error);

    const quint64 number_;
    const QString connection_;
    quint64 transaction_ = 0;
    QSqlDatabase database_;
    std::optional<QSqlQuery> addEntry_;
};

} // namespace quellbox
