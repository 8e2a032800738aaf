#include "history/JournalDatabase.h"

#include <QCoreApplication>
#include <QSet>
#include <QSqlError>
#include <QVariant>

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <utility>

namespace quellbox {

namespace {

// So long a program waits while another one writes.
constexpr int busyTimeoutMs = 3000;

// No name of a message has two in a row, also where it begins with a folder. Such a text has one more in front: earlier
// versions, which knew no folders, wrote only one between the names.
constexpr QLatin1String between("//");
constexpr QLatin1Char inFront('/');

QStringList AnnouncedNames(const QString& text) {
    return text.startsWith(inFront) ? text.mid(1).split(between, Qt::SkipEmptyParts)
                                    : text.split(inFront, Qt::SkipEmptyParts);
}

// What is done with the rows of one action needs only the index; newer actions have higher numbers. "folded" is what a
// search looks through, because SQLite knows upper and lower case of ASCII only.
constexpr std::array tables{
    "CREATE TABLE action (id INTEGER PRIMARY KEY AUTOINCREMENT, time INTEGER NOT NULL, kind INTEGER NOT NULL, account "
    "TEXT, "
    "computer TEXT, archive TEXT, pickup TEXT, kept TEXT, undoes INTEGER, detail TEXT, session TEXT)",
    "CREATE TABLE entry (id INTEGER PRIMARY KEY AUTOINCREMENT, action INTEGER NOT NULL, result INTEGER NOT NULL, "
    "final INTEGER NOT NULL DEFAULT 0, file TEXT, "
    "sender TEXT, author TEXT, recipient TEXT, subject TEXT, size INTEGER, rating TEXT, reason TEXT, detail TEXT, "
    "folded TEXT)",
    "CREATE INDEX entry_action ON entry (action, result, final)",
    "CREATE TABLE intent (action INTEGER NOT NULL, files TEXT)",
    "CREATE INDEX action_session ON action (session) WHERE session IS NOT NULL",
};

constexpr const char* lineColumns =
    "entry.id, action.id, time, kind, account, computer, archive, pickup, kept, undoes, action.detail, file, sender, "
    "author, recipient, subject, size, rating, result, reason, entry.detail, final";

/// Of SQLite's result codes, extended or not.
JournalProblem ProblemOf(int code) {
    switch (code & 0xff) {
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return JournalProblem::Busy;
    case 13: // SQLITE_FULL
        return JournalProblem::Full;
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return JournalProblem::Damaged;
    default:
        return JournalProblem::Other;
    }
}

QString Folded(const HistoryEntry& entry) {
    const QStringList texts{entry.sender, entry.from, entry.to, entry.subject, entry.file, entry.reason, entry.detail};
    return texts.join(QLatin1Char('\n')).toCaseFolded();
}

HistoryActionFacts FactsOf(const QSqlQuery& query, int first) {
    HistoryActionFacts facts;
    facts.timeMs = query.value(first).toLongLong();
    facts.action = static_cast<HistoryAction>(query.value(first + 1).toInt());
    facts.account = query.value(first + 2).toString();
    facts.computer = query.value(first + 3).toString();
    facts.archive = query.value(first + 4).toString();
    facts.pickup = query.value(first + 5).toString();
    facts.kept = query.value(first + 6).toString();
    facts.undoes = query.value(first + 7).toLongLong();
    facts.detail = query.value(first + 8).toString();
    return facts;
}

HistoryEntry EntryOf(const QSqlQuery& query, int first) {
    HistoryEntry entry;
    entry.file = query.value(first).toString();
    entry.sender = query.value(first + 1).toString();
    entry.from = query.value(first + 2).toString();
    entry.to = query.value(first + 3).toString();
    entry.subject = query.value(first + 4).toString();
    entry.size = query.value(first + 5).toLongLong();
    entry.rating = query.value(first + 6).toString();
    entry.result = static_cast<HistoryResult>(query.value(first + 7).toInt());
    entry.reason = query.value(first + 8).toString();
    entry.detail = query.value(first + 9).toString();
    entry.isFinal = query.value(first + 10).toBool();
    return entry;
}

quint64 NewNumber() {
    static std::atomic<quint64> number{0};
    return ++number;
}

QString List(const HistoryIds& ids) {
    QStringList numbers;
    numbers.reserve(static_cast<qsizetype>(ids.size()));
    for (const qint64 id : ids) {
        numbers.append(QString::number(id));
    }
    return numbers.join(QLatin1Char(','));
}

/// What an action can be taken back of at all.
QString CanBeUndone() {
    return QStringLiteral("result = %1 AND final = 0 AND (kind IN (%2, %3, %4) OR (kind IN (%5, %6) AND kept != ''))")
        .arg(static_cast<int>(HistoryResult::Done))
        .arg(static_cast<int>(HistoryAction::Unblock))
        .arg(static_cast<int>(HistoryAction::Tolerate))
        .arg(static_cast<int>(HistoryAction::AutoTolerate))
        .arg(static_cast<int>(HistoryAction::Delete))
        .arg(static_cast<int>(HistoryAction::Cleanse));
}

/// The most frequent first; equal ones stay in the order of their names.
std::vector<UnblockedSender> ByCount(const std::map<QString, UnblockedSender>& senders) {
    std::vector<UnblockedSender> sorted;
    sorted.reserve(senders.size());
    for (const auto& [name, sender] : senders) {
        sorted.push_back(sender);
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const UnblockedSender& one, const UnblockedSender& other) { return one.count > other.count; });
    return sorted;
}

} // namespace

JournalDatabase::JournalDatabase(const QString& file)
    : number_(NewNumber()), connection_(QStringLiteral("quellbox-history-%1").arg(number_)),
      database_(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection_)) {
    database_.setDatabaseName(file.isEmpty() ? QStringLiteral(":memory:") : file);
    database_.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    try {
        if (!database_.open()) {
            Throw(database_.lastError());
        }
        Prepare();
    } catch (...) {
        database_ = {};
        QSqlDatabase::removeDatabase(connection_);
        throw;
    }
}

JournalDatabase::~JournalDatabase() {
    addEntry_.reset();
    database_ = {};
    QSqlDatabase::removeDatabase(connection_);
}

// What a newer version has made is not touched. A program that ends in the middle leaves a whole database behind; only
// what was written just before a power failure may be missing then.
void JournalDatabase::Prepare() {
    int present = Version();
    Execute(QStringLiteral("PRAGMA synchronous = NORMAL"));
    if (present == version) {
        return;
    }
    Execute(QStringLiteral("PRAGMA auto_vacuum = INCREMENTAL"));
    Execute(QStringLiteral("PRAGMA journal_mode = WAL"));
    BeginTransaction();
    try {
        present = Version(); // another program may have been quicker
        if (present == 0) {
            MakeTables();
        }
        Commit();
    } catch (...) {
        Rollback();
        throw;
    }
}

int JournalDatabase::Version() {
    QSqlQuery found = Prepared(QStringLiteral("PRAGMA user_version"));
    Run(found);
    const int present = found.next() ? found.value(0).toInt() : 0;
    if (present > version) {
        throw JournalError(JournalProblem::Newer,
                           QCoreApplication::translate("quellbox", "A newer version of the program has made it."));
    }
    return present;
}

void JournalDatabase::MakeTables() {
    for (const char* table : tables) {
        Execute(QString::fromLatin1(table));
    }
    Execute(QStringLiteral("PRAGMA user_version = %1").arg(version));
}

void JournalDatabase::BeginTransaction() {
    Execute(QStringLiteral("BEGIN IMMEDIATE"));
    transaction_ = NewNumber();
}

void JournalDatabase::Commit() {
    Execute(QStringLiteral("COMMIT"));
}

void JournalDatabase::Rollback() noexcept {
    // There is nothing to roll back where the database has done so already.
    [[maybe_unused]] const bool isDone = QSqlQuery(database_).exec(QStringLiteral("ROLLBACK"));
}

qint64 JournalDatabase::AddAction(const HistoryActionFacts& facts, const QString& session) {
    QSqlQuery query =
        Prepared(QStringLiteral("INSERT INTO action (time, kind, account, computer, archive, pickup, kept, "
                                "undoes, detail, session) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    query.addBindValue(facts.timeMs);
    query.addBindValue(static_cast<int>(facts.action));
    query.addBindValue(facts.account);
    query.addBindValue(facts.computer);
    query.addBindValue(facts.archive);
    query.addBindValue(facts.pickup);
    query.addBindValue(facts.kept.isNull() ? QStringLiteral("") : facts.kept);
    query.addBindValue(facts.undoes);
    query.addBindValue(facts.detail);
    query.addBindValue(session);
    Run(query);
    return query.lastInsertId().toLongLong();
}

void JournalDatabase::Announce(qint64 action, const QStringList& files) {
    QSqlQuery query = Prepared(QStringLiteral("INSERT INTO intent (action, files) VALUES (?, ?)"));
    query.addBindValue(action);
    query.addBindValue(inFront + files.join(between));
    Run(query);
}

void JournalDatabase::AddEntry(qint64 action, const HistoryEntry& entry) {
    if (!addEntry_) {
        addEntry_ = Prepared(
            QStringLiteral("INSERT INTO entry (action, result, final, file, sender, author, recipient, subject, "
                           "size, rating, reason, detail, folded) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    }
    int place = 0;
    const auto bind = [&](const QVariant& value) { addEntry_->bindValue(place++, value); };
    bind(action);
    bind(static_cast<int>(entry.result));
    bind(entry.isFinal ? 1 : 0);
    for (const QString& text : {entry.file, entry.sender, entry.from, entry.to, entry.subject}) {
        bind(text);
    }
    bind(entry.size);
    for (const QString& text : {entry.rating, entry.reason, entry.detail, Folded(entry)}) {
        bind(text);
    }
    Run(*addEntry_);
}

void JournalDatabase::EndAction(qint64 action) {
    Execute(QStringLiteral("DELETE FROM intent WHERE action = %1").arg(action));
    Execute(QStringLiteral("UPDATE action SET session = NULL WHERE id = %1").arg(action));
}

void JournalDatabase::MarkUndone(qint64 entry) {
    Execute(QStringLiteral("UPDATE entry SET result = %1 WHERE id = %2 AND result = %3")
                .arg(static_cast<int>(HistoryResult::Undone))
                .arg(entry)
                .arg(static_cast<int>(HistoryResult::Done)));
}

void JournalDatabase::MarkUndone(qint64 action, const QStringList& files) {
    const QSet<QString> undone(files.begin(), files.end());
    QSqlQuery query = Prepared(QStringLiteral("SELECT id, file FROM entry WHERE action = %1").arg(action));
    Run(query);
    HistoryIds entries;
    while (query.next()) {
        if (undone.contains(query.value(1).toString())) {
            entries.push_back(query.value(0).toLongLong());
        }
    }
    for (const qint64 entry : entries) {
        MarkUndone(entry);
    }
}

void JournalDatabase::MarkFinal(qint64 entry) {
    Execute(QStringLiteral("UPDATE entry SET final = 1 WHERE id = %1").arg(entry));
}

void JournalDatabase::RemoveBefore(qint64 timeMs) {
    const QString old = QStringLiteral("SELECT id FROM action WHERE time < %1").arg(timeMs);
    for (const char* table : {"entry", "intent"}) {
        Execute(QStringLiteral("DELETE FROM %1 WHERE action IN (%2)").arg(QString::fromLatin1(table), old));
    }
    Execute(QStringLiteral("DELETE FROM action WHERE time < %1").arg(timeMs));
    Execute(QStringLiteral("PRAGMA incremental_vacuum"));
}

HistoryIds JournalDatabase::Find(const HistoryFilter& filter) {
    QStringList conditions;
    if (filter.action) {
        conditions.append(
            QStringLiteral("action IN (SELECT id FROM action WHERE kind = %1)").arg(static_cast<int>(*filter.action)));
    }
    if (filter.result) {
        conditions.append(QStringLiteral("result = %1").arg(static_cast<int>(*filter.result)));
    }
    if (!filter.text.isEmpty()) {
        conditions.append(QStringLiteral("instr(folded, ?) > 0"));
    }
    const QString where =
        conditions.isEmpty() ? QString() : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    QSqlQuery query = Prepared(QStringLiteral("SELECT id FROM entry INDEXED BY entry_action") + where +
                               QStringLiteral(" ORDER BY action DESC, id DESC"));
    if (!filter.text.isEmpty()) {
        query.addBindValue(filter.text.toCaseFolded());
    }
    Run(query);
    HistoryIds ids;
    while (query.next()) {
        ids.push_back(query.value(0).toLongLong());
    }
    return ids;
}

// SQLite folds the case of ASCII only.
std::vector<UnblockedSender> JournalDatabase::UnblockedSenders() {
    QSqlQuery query = Prepared(QStringLiteral("SELECT sender, count(*), max(time) FROM entry "
                                              "JOIN action ON action.id = entry.action WHERE kind = %1 AND result = %2 "
                                              "AND sender != '' GROUP BY sender")
                                   .arg(static_cast<int>(HistoryAction::Unblock))
                                   .arg(static_cast<int>(HistoryResult::Done)));
    Run(query);
    std::map<QString, UnblockedSender> senders;
    while (query.next()) {
        const QString folded = query.value(0).toString().toLower();
        UnblockedSender& sender = senders.try_emplace(folded, UnblockedSender{folded, 0, 0}).first->second;
        sender.count += query.value(1).toLongLong();
        sender.lastMs = std::max(sender.lastMs, query.value(2).toLongLong());
    }
    return ByCount(senders);
}

std::vector<HistoryLine> JournalDatabase::Lines(const HistoryIds& ids) {
    QSqlQuery query = Prepared(QStringLiteral("SELECT %1 FROM entry JOIN action ON action.id = entry.action "
                                              "WHERE entry.id IN (%2) ORDER BY entry.action DESC, entry.id DESC")
                                   .arg(QLatin1String(lineColumns), List(ids)));
    Run(query);
    std::vector<HistoryLine> lines;
    lines.reserve(ids.size());
    while (query.next()) {
        lines.push_back(
            {query.value(0).toLongLong(), query.value(1).toLongLong(), FactsOf(query, 2), EntryOf(query, 11)});
    }
    return lines;
}

std::optional<qint64> JournalDatabase::LatestToUndo(const QString& archive) {
    const QString kinds = QStringLiteral("%1, %2, %3, %4")
                              .arg(static_cast<int>(HistoryAction::Unblock))
                              .arg(static_cast<int>(HistoryAction::Delete))
                              .arg(static_cast<int>(HistoryAction::Tolerate))
                              .arg(static_cast<int>(HistoryAction::Cleanse));
    // Of an action that cannot be taken back, none before it can be either: it would not be what the user expects.
    QSqlQuery query =
        Prepared(QStringLiteral("SELECT id, kind, kept FROM action WHERE archive = ? AND kind IN (%1) AND EXISTS "
                                "(SELECT 1 FROM entry WHERE entry.action = action.id AND result = %2 AND final = 0) "
                                "ORDER BY id DESC LIMIT 1")
                     .arg(kinds)
                     .arg(static_cast<int>(HistoryResult::Done)));
    query.addBindValue(archive);
    Run(query);
    if (!query.next()) {
        return std::nullopt;
    }
    const auto kind = static_cast<HistoryAction>(query.value(1).toInt());
    const bool deletes = kind == HistoryAction::Delete || kind == HistoryAction::Cleanse;
    if (deletes && query.value(2).toString().isEmpty()) {
        return std::nullopt;
    }
    return query.value(0).toLongLong();
}

std::vector<UndoItem> JournalDatabase::ItemsToUndo(qint64 action) {
    return SelectItems(QStringLiteral("entry.action = %1").arg(action));
}

std::vector<UndoItem> JournalDatabase::ItemsToUndo(const HistoryIds& entries) {
    return SelectItems(QStringLiteral("entry.id IN (%1)").arg(List(entries)));
}

std::vector<UndoItem> JournalDatabase::SelectItems(const QString& condition) {
    QSqlQuery query = Prepared(QStringLiteral("SELECT %1 FROM entry JOIN action ON action.id = entry.action "
                                              "WHERE %2 AND %3 ORDER BY entry.action DESC, entry.id")
                                   .arg(QLatin1String(lineColumns), condition, CanBeUndone()));
    Run(query);
    std::vector<UndoItem> items;
    while (query.next()) {
        items.push_back(
            {query.value(0).toLongLong(), query.value(1).toLongLong(), FactsOf(query, 2), EntryOf(query, 11)});
    }
    return items;
}

QStringList JournalDatabase::SessionsWithOpenActions() {
    QSqlQuery query = Prepared(QStringLiteral("SELECT DISTINCT session FROM action WHERE session IS NOT NULL"));
    Run(query);
    QStringList sessions;
    while (query.next()) {
        sessions.append(query.value(0).toString());
    }
    return sessions;
}

std::vector<InterruptedAction> JournalDatabase::OpenActions(const QString& session) {
    QSqlQuery query =
        Prepared(QStringLiteral("SELECT id, time, kind, account, computer, archive, pickup, kept, undoes, detail "
                                "FROM action WHERE session = ? ORDER BY id"));
    query.addBindValue(session);
    Run(query);
    std::vector<InterruptedAction> actions;
    while (query.next()) {
        actions.push_back({query.value(0).toLongLong(), FactsOf(query, 1), {}});
    }
    for (InterruptedAction& action : actions) {
        action.files = UnwrittenFiles(action.id);
    }
    return actions;
}

/// The files that were announced, and of which there is no entry.
QStringList JournalDatabase::UnwrittenFiles(qint64 action) {
    QSqlQuery announced = Prepared(QStringLiteral("SELECT files FROM intent WHERE action = %1").arg(action));
    Run(announced);
    QStringList files;
    while (announced.next()) {
        files += AnnouncedNames(announced.value(0).toString());
    }
    QSqlQuery written = Prepared(QStringLiteral("SELECT file FROM entry WHERE action = %1").arg(action));
    Run(written);
    QSet<QString> known;
    while (written.next()) {
        known.insert(written.value(0).toString());
    }
    files.removeIf([&known](const QString& file) { return known.contains(file); });
    return files;
}

void JournalDatabase::Adopt(const QString& session, const QString& by) {
    QSqlQuery query = Prepared(QStringLiteral("UPDATE action SET session = ? WHERE session = ?"));
    query.addBindValue(by);
    query.addBindValue(session);
    Run(query);
}

bool JournalDatabase::IsWhole() {
    QSqlQuery query = Prepared(QStringLiteral("PRAGMA quick_check(1)"));
    Run(query);
    return query.next() && query.value(0).toString() == QLatin1String("ok");
}

void JournalDatabase::Execute(const QString& statement) {
    QSqlQuery query(database_);
    if (!query.exec(statement)) {
        Throw(query.lastError());
    }
}

QSqlQuery JournalDatabase::Prepared(const QString& statement) {
    QSqlQuery query(database_);
    query.setForwardOnly(true);
    if (!query.prepare(statement)) {
        Throw(query.lastError());
    }
    return query;
}

void JournalDatabase::Run(QSqlQuery& query) {
    if (!query.exec()) {
        Throw(query.lastError());
    }
}

void JournalDatabase::Throw(const QSqlError& error) {
    throw JournalError(ProblemOf(error.nativeErrorCode().toInt()), error.databaseText());
}

} // namespace quellbox
