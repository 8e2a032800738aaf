#include "history/Journal.h"

#include "tests/history/JournalFile.h"

#include <thread>

using namespace quellbox;

namespace {

TEST_F(JournalTest, GivesBackEverythingThatIsKnownOfAMessage) {
    Open();
    auto record = journal_->Begin({HistoryAction::Unblock, theArchive, thePickup});
    record->Announce({QStringLiteral("a.eml")});
    MessageTexts texts;
    texts.to = QStringLiteral("To");
    texts.from = QStringLiteral("From");
    texts.subject = QStringLiteral("Größe");
    texts.scl = QStringLiteral("7 53.21");
    texts.tag = QStringLiteral("env@example.com");
    record->Take({MessageRow(QStringLiteral("a.eml"), 1234, 0, texts), std::nullopt});
    record.reset();
    const std::vector<HistoryLine> lines = Lines();
    ASSERT_EQ(lines.size(), 1U);
    const HistoryLine& line = lines.front();
    EXPECT_EQ(line.facts.action, HistoryAction::Unblock);
    EXPECT_EQ(line.facts.timeMs, clock_.Now().toMSecsSinceEpoch());
    EXPECT_EQ(line.facts.account, QStringLiteral("Jo"));
    EXPECT_EQ(line.facts.computer, QStringLiteral("pc"));
    EXPECT_EQ(line.facts.archive, theArchive);
    EXPECT_EQ(line.facts.pickup, thePickup);
    EXPECT_EQ(line.entry.file, QStringLiteral("a.eml"));
    EXPECT_EQ(line.entry.sender, texts.tag);
    EXPECT_EQ(line.entry.from, texts.from);
    EXPECT_EQ(line.entry.to, texts.to);
    EXPECT_EQ(line.entry.subject, texts.subject);
    EXPECT_EQ(line.entry.size, 1234);
    EXPECT_EQ(line.entry.rating, texts.scl);
    EXPECT_EQ(line.entry.result, HistoryResult::Done);
}

TEST_F(JournalTest, KeepsTheReasonOfAFailure) {
    Open();
    auto record = journal_->Begin({HistoryAction::Delete, theArchive});
    record->Take(FailedMessage(QStringLiteral("a.eml"), QStringLiteral("Permission denied")));
    record.reset();
    const std::vector<HistoryLine> lines = Lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.front().entry.result, HistoryResult::Failed);
    EXPECT_EQ(lines.front().entry.reason, QStringLiteral("Permission denied"));
}

TEST_F(JournalTest, IsThereAgainAtTheNextStart) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a.eml")});
    Close();
    Open();
    EXPECT_EQ(Files(), QStringList({QStringLiteral("a.eml")}));
    EXPECT_EQ(told_, QStringList());
}

TEST_F(JournalTest, IsReadableForItsUserOnly) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a.eml")});
    Close();
#ifndef _WIN32
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_EQ(QFile::permissions(File()) & others, QFile::Permissions());
    EXPECT_EQ(QFile::permissions(QFileInfo(File()).absolutePath()) & others, QFile::Permissions());
#endif
    EXPECT_TRUE(QFile::exists(File()));
}

TEST_F(JournalTest, WritesNothingOfAnActionThatDealtWithNothing) {
    Open();
    journal_->Begin({HistoryAction::AutoTolerate, theArchive, thePickup}).reset();
    EXPECT_EQ(Answer([](JournalDatabase& database) { return database.SessionsWithOpenActions(); }), QStringList());
    EXPECT_EQ(Files(), QStringList());
}

TEST_F(JournalTest, GivesTheNewestFirst) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a"), QStringLiteral("b")});
    Act(HistoryAction::Unblock, {QStringLiteral("c")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}));
}

TEST_F(JournalTest, FindsTextInAnyCaseAndScript) {
    Open();
    auto record = journal_->Begin({HistoryAction::Delete, theArchive});
    record->Take(Handled(QStringLiteral("a"), QStringLiteral("Größe und ÄPFEL")));
    record->Take(Handled(QStringLiteral("b"), QStringLiteral("100% _off_")));
    record->Take(Handled(QStringLiteral("c"), QStringLiteral("Привет")));
    record.reset();
    EXPECT_EQ(Files({QStringLiteral("äpfel"), {}, {}}), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(Files({QStringLiteral("GRÖßE"), {}, {}}), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(Files({QStringLiteral("% _"), {}, {}}), QStringList({QStringLiteral("b")}));
    EXPECT_EQ(Files({QStringLiteral("ПРИВ"), {}, {}}), QStringList({QStringLiteral("c")}));
    EXPECT_EQ(Files({QStringLiteral("SENDER@"), {}, {}}).size(), 3);
    EXPECT_EQ(Files({QStringLiteral("nowhere"), {}, {}}), QStringList());
}

TEST_F(JournalTest, FindsByActionAndResult) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    Act(HistoryAction::Unblock, {QStringLiteral("b")});
    auto record = journal_->Begin({HistoryAction::Unblock, theArchive});
    record->Take(FailedMessage(QStringLiteral("c"), QStringLiteral("no")));
    record.reset();
    EXPECT_EQ(Files({{}, HistoryAction::Unblock, {}}), QStringList({QStringLiteral("c"), QStringLiteral("b")}));
    EXPECT_EQ(Files({{}, {}, HistoryResult::Failed}), QStringList({QStringLiteral("c")}));
    EXPECT_EQ(Files({{}, HistoryAction::Unblock, HistoryResult::Done}), QStringList({QStringLiteral("b")}));
}

TEST_F(JournalTest, ForgetsWhatIsOlderThanADay) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("old")});
    clock_.Set(clock_.Now().addDays(1));
    Act(HistoryAction::Delete, {QStringLiteral("new")});
    journal_->RemoveBefore(clock_.Now().date());
    EXPECT_EQ(Files(), QStringList({QStringLiteral("new")}));
}

TEST_F(JournalTest, NamesTheFilesThatAnInterruptedActionMayHaveTouched) {
    Open();
    auto record = journal_->Begin({HistoryAction::Delete, theArchive});
    record->Announce({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    record->AwaitAnnounced();
    record->Take(Handled(QStringLiteral("b")));
    const QString session = journal_->Writer()->Session();
    EXPECT_EQ(Files(), QStringList({QStringLiteral("b")}));
    const auto open = Answer([session](JournalDatabase& database) { return database.OpenActions(session); });
    ASSERT_EQ(open.size(), 1U);
    EXPECT_EQ(open.front().files, QStringList({QStringLiteral("a"), QStringLiteral("c")}));
    EXPECT_EQ(open.front().facts.archive, theArchive);
}

TEST_F(JournalTest, KnowsNothingToEndOfAnActionThatHasEnded) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    const QString session = journal_->Writer()->Session();
    EXPECT_TRUE(Answer([session](JournalDatabase& database) { return database.OpenActions(session); }).empty());
}

TEST_F(JournalTest, TellsAProgramThatRunsFromOneThatHasEnded) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    const QString mine = journal_->Writer()->Session();
    Files();
    EXPECT_FALSE(journal_->Writer()->IsAbandoned(mine));
    Journal other(*pool_, clock_, {File()});
    std::optional<bool> isAbandoned;
    const auto ask = [&other, mine](JournalDatabase& /*database*/) { return other.Writer()->IsAbandoned(mine); };
    const auto take = [&isAbandoned](bool answer) { isAbandoned = answer; };
    other.AskFor(Journal::Question::Writes, &other, ask, take);
    ASSERT_TRUE(RunUntil([&isAbandoned] { return isAbandoned.has_value(); }));
    EXPECT_FALSE(*isAbandoned);
    journal_.reset();
    pool_->WaitForDone(); // it closes its database beside its owner
    isAbandoned.reset();
    other.AskFor(Journal::Question::Writes, &other, ask, take);
    ASSERT_TRUE(RunUntil([&isAbandoned] { return isAbandoned.has_value(); }));
    EXPECT_TRUE(*isAbandoned);
}

TEST_F(JournalTest, LetsTwoProgramsWriteAtOnce) {
    constexpr int count = 500;
    const auto write = [this](const QString& name) {
        ThreadWorkPool pool;
        const auto writer =
            std::make_shared<JournalWriter>(pool, File(), JournalWriter::Listener{[](const QString&) {}, [] {}});
        for (int number = 0; number < count; ++number) {
            const auto add = [name, number](JournalDatabase& database) {
                const qint64 action = database.AddAction({HistoryAction::Delete}, name);
                HistoryEntry entry;
                entry.file = name + QString::number(number);
                database.AddEntry(action, entry);
            };
            writer->Write(add, JournalWriter::Pace::AtOnce);
        }
        writer->Close();
        pool.WaitForDone();
    };
    std::thread one([&write] { write(QStringLiteral("one")); });
    std::thread two([&write] { write(QStringLiteral("two")); });
    one.join();
    two.join();
    Open();
    QStringList files = Files();
    EXPECT_EQ(files.removeDuplicates(), 0);
    EXPECT_EQ(files.size(), 2 * count);
}

TEST_F(JournalTest, PutsADamagedDatabaseAsideAndBeginsANewOne) {
    QDir().mkpath(QFileInfo(File()).absolutePath());
    QFile damaged(File());
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write(QByteArray(4096, 'x'));
    damaged.close();
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("a")}));
    ASSERT_EQ(told_.size(), 1);
    const QStringList aside =
        QFileInfo(File()).dir().entryList({QStringLiteral("history.sqlite.damaged-*")}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(told_.front().contains(aside.front()));
    QFile kept(QFileInfo(File()).dir().filePath(aside.front()));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray(4096, 'x'));
}

TEST_F(JournalTest, FindsDamageInTheMiddleWhileItRuns) {
    Open();
    QStringList names;
    for (int number = 0; number < 3000; ++number) {
        names.append(QStringLiteral("message-%1.eml").arg(number));
    }
    Act(HistoryAction::Delete, names);
    Close();
    QFile file(File());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qint64 size = file.size();
    for (qint64 page = 4096; page < size; page += 4096) {
        file.seek(page);
        file.write(QByteArray(64, '\xff'));
    }
    file.close();
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    ASSERT_TRUE(RunUntil([this] { return !told_.isEmpty(); }));
    EXPECT_EQ(Files(), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(told_.size(), 1);
}

TEST_F(JournalTest, LeavesADatabaseOfANewerVersionAlone) {
    {
        Open();
        Act(HistoryAction::Delete, {QStringLiteral("a")});
        Close();
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("newer"));
        database.setDatabaseName(File());
        ASSERT_TRUE(database.open());
        ASSERT_TRUE(QSqlQuery(database).exec(QStringLiteral("PRAGMA user_version = 99")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("newer"));
    QFile file(File());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("b")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("b")})) << "as long as the program runs";
    EXPECT_EQ(told_.size(), 1);
    Close();
    file.seek(0);
    EXPECT_EQ(file.readAll(), before);
}

TEST_F(JournalTest, KeepsItInMemoryWhereNoFileCanBeMade) {
    QFile inTheWay(folder_.filePath(QStringLiteral("quellbox")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(told_.size(), 1);
}

TEST_F(JournalTest, WritesNoFileWithoutAName) {
    journal_.emplace(*pool_, clock_, Journal::Place{});
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("a")}));
    EXPECT_TRUE(QDir(folder_.path()).isEmpty());
}

TEST_F(JournalTest, WritesLaterWhatALockedDatabaseDoesNotTake) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    Files();
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("lock"));
        database.setDatabaseName(File());
        ASSERT_TRUE(database.open());
        ASSERT_TRUE(QSqlQuery(database).exec(QStringLiteral("BEGIN EXCLUSIVE")));
        auto record = journal_->Begin({HistoryAction::Delete, theArchive});
        record->Announce({QStringLiteral("b")});
        record->AwaitAnnounced(); // which gives up
        record->Take(Handled(QStringLiteral("b")));
        record.reset();
        ASSERT_TRUE(RunUntil([this] { return !told_.isEmpty(); }));
        ASSERT_TRUE(QSqlQuery(database).exec(QStringLiteral("COMMIT")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    const QStringList both{QStringLiteral("b"), QStringLiteral("a")};
    EXPECT_TRUE(RunUntil([this, both] { return Files() == both; }));
    EXPECT_EQ(told_.size(), 1);
}

TEST_F(JournalTest, KnowsTheLatestActionThatCanBeTakenBack) {
    Open();
    const auto latest = [](JournalDatabase& database) { return database.LatestToUndo(theArchive); };
    EXPECT_EQ(Answer(latest), std::nullopt);
    Act(HistoryAction::Unblock, {QStringLiteral("a")});
    const std::optional<qint64> unblocked = Answer(latest);
    ASSERT_TRUE(unblocked);
    Act(HistoryAction::AutoTolerate, {QStringLiteral("b")});
    EXPECT_EQ(Answer(latest), unblocked) << "only what the user has done";
    Act(HistoryAction::Delete, {QStringLiteral("c")}, QStringLiteral("/archive/.kept/1/"));
    const std::optional<qint64> kept = Answer(latest);
    EXPECT_GT(kept.value_or(0), *unblocked);
    Act(HistoryAction::Delete, {QStringLiteral("d")});
    EXPECT_EQ(Answer(latest), std::nullopt) << "what is gone for good hides what was done before";
}

TEST_F(JournalTest, TakesBackNoMoreThanOnce) {
    Open();
    Act(HistoryAction::Unblock, {QStringLiteral("a"), QStringLiteral("b")});
    const auto latest = Answer([](JournalDatabase& database) { return database.LatestToUndo(theArchive); });
    ASSERT_TRUE(latest);
    const auto items = [action = *latest](JournalDatabase& database) { return database.ItemsToUndo(action); };
    EXPECT_EQ(Answer(items).size(), 2U);
    auto undo = journal_->Begin({HistoryAction::Undo, theArchive, thePickup, {}, *latest});
    HandledMessage first = Handled(QStringLiteral("a"));
    first.entry = Answer(items).front().id;
    undo->Take(std::move(first));
    undo->Take(FailedMessage(QStringLiteral("b"), QStringLiteral("no")));
    undo.reset();
    const std::vector<UndoItem> left = Answer(items);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.front().entry.file, QStringLiteral("b"));
    EXPECT_EQ(Files({{}, HistoryAction::Unblock, HistoryResult::Undone}), QStringList({QStringLiteral("a")}));
}

} // namespace
