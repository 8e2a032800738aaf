#include "tests/archive/RefreshFixture.h"
#include "tests/support/NativePath.h"

namespace quellbox {

using namespace Qt::StringLiterals;

TEST_F(RefreshTaskTest, OfAnEmptyArchiveLeavesAnEmptyListAndCount) {
    model.Append(NumberedRows(5));
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(maximum, 1);
    EXPECT_EQ(state.LastAddedFile, QString());
    EXPECT_EQ(ends, 1);
}

TEST_F(RefreshTaskTest, FillsARowPerFileWhateverItsExtension) {
    AddMessage(u"b.EML"_s);
    AddMessage(u"a.txt"_s);
    AddMessage(u"noextension"_s);
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"b.EML"_s, u"a.txt"_s, u"noextension"_s}));
    EXPECT_EQ(maximum, 4);
    const MessageRow& row = model.Row(0);
    EXPECT_EQ(row.Cell(ColumnDate), u"2026-06-15 12:00:00"_s);
    EXPECT_EQ(row.Cell(ColumnTo), u"t"_s);
    EXPECT_EQ(row.Cell(ColumnFrom), u"f"_s);
    EXPECT_EQ(row.Cell(ColumnSubject), u"s"_s);
    EXPECT_EQ(row.Cell(ColumnSize), QString::number(files.Bytes(InArchive(u"b.EML"_s)).size()));
    EXPECT_EQ(row.Cell(ColumnBytes).size(), 8);
    EXPECT_EQ(row.Tag(), u"eve@spam.example"_s);
    EXPECT_FALSE(row.IsUnread());
}

TEST_F(RefreshTaskTest, WithoutALastFileRebuildsTheList) {
    model.Append(NumberedRows(5));
    AddMessages(2);
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"001.eml"_s);
}

TEST_F(RefreshTaskTest, WithALastFileOpensAndAddsOnlyWhatFollowsInBold) {
    AddMessages(20);
    Run();
    AddMessage(u"new.eml"_s);
    const int opened = files.OpenCount();
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    ASSERT_EQ(model.Count(), 21);
    EXPECT_EQ(model.Row(20).Key(), u"new.eml"_s);
    EXPECT_TRUE(model.Row(20).IsUnread());
    EXPECT_FALSE(model.Row(19).IsUnread());
    EXPECT_EQ(files.OpenCount(), opened + 1);
    EXPECT_EQ(state.LastAddedFile, u"new.eml"_s);
}

TEST_F(RefreshTaskTest, AddsNothingWhenTheLastFileHasVanished) {
    AddMessages(3);
    Run();
    files.Remove(InArchive(u"002.eml"_s));
    AddMessage(u"new.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 3);
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
    EXPECT_TRUE(result.cannotFollow);
    EXPECT_EQ(maximum, 4) << "the first refresh counted, this one had nothing to read";
}

TEST_F(RefreshTaskTest, FollowsALastFileOfAMaildirThatWasSeenMeanwhile) {
    state.ServerProfile = u"maildir"_s;
    AddMessage(u"new/1.a"_s);
    AddMessage(u"new/2.a"_s);
    Run();
    EXPECT_EQ(Keys(), (QStringList{NativePath(u"new/1.a"_s), NativePath(u"new/2.a"_s)}));
    files.AddFolder(InArchive(u"cur"_s));
    files.Move(InArchive(u"new/2.a"_s), InArchive(u"cur/2.a:2,S"_s));
    AddMessage(u"new/3.a"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_FALSE(result.cannotFollow);
    EXPECT_EQ(Keys(), (QStringList{NativePath(u"new/1.a"_s), NativePath(u"new/2.a"_s), NativePath(u"new/3.a"_s)}));
}

TEST_F(RefreshTaskTest, AddsAListedFileThatIsWrittenAgainNotTwice) {
    AddMessages(3);
    Run();
    AddMessage(u"new.eml"_s);
    AddMessage(u"001.eml"_s); // written again, so it comes last in the order now
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"002.eml"_s, u"new.eml"_s}));
    EXPECT_FALSE(model.Row(1).IsUnread());
    EXPECT_EQ(state.LastAddedFile, u"new.eml"_s);
}

TEST_F(RefreshTaskTest, AddsWhatCameBeforeTheLastFileWasTouched) {
    AddMessages(3);
    Run();
    AddMessage(u"new.eml"_s);
    AddMessage(u"002.eml"_s); // the last file, touched after another one came
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"002.eml"_s, u"new.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"new.eml"_s);
    AddMessage(u"newer.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys().mid(3), (QStringList{u"new.eml"_s, u"newer.eml"_s}));
}

TEST_F(RefreshTaskTest, AddsNothingOlderThanTheLastFileWasBeforeItWasTouched) {
    AddMessages(3);
    Run();
    model.Remove({0}); // its file stays, as after a delete that failed
    AddMessage(u"002.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"001.eml"_s, u"002.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
}

TEST_F(RefreshTaskTest, ATouchedLastFileWhoseRowHasGoneIsNotAdded) {
    AddMessages(3);
    Run();
    model.Remove({2});
    AddMessage(u"new.eml"_s);
    AddMessage(u"002.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"new.eml"_s}));
}

TEST_F(RefreshTaskTest, ComparesTheLastFileWithItsCase) {
    AddMessage(u"a.eml"_s);
    AddMessage(u"b.eml"_s);
    state.LastAddedFile = u"A.eml"_s;
    Run();
    EXPECT_EQ(model.Count(), 0);
}

TEST_F(RefreshTaskTest, FindsTheLastFileThoughItIsTooOldForTheFilter) {
    AddMessages(2);
    state.LastAddedFile = u"000.eml"_s;
    clock.Set(start.addDays(3));
    AddMessage(u"old.eml"_s);
    arrived = 3 * 86400;
    AddMessage(u"new.eml"_s);
    state.ActiveFilterDays = u"1"_s;
    Run();
    EXPECT_EQ(Keys(), QStringList{u"new.eml"_s});
}

TEST_F(RefreshTaskTest, ListsNothingOfYesterdayJustAfterMidnight) {
    arrived = 12 * 3600 - 60;
    AddMessage(u"at 23:59.eml"_s);
    arrived = 12 * 3600 + 30;
    AddMessage(u"at 0:00:30.eml"_s);
    clock.Set(start.addSecs(12 * 3600 + 60));
    state.ActiveFilterDays = u"1"_s;
    Run();
    EXPECT_EQ(Keys(), QStringList{u"at 0:00:30.eml"_s});
    EXPECT_EQ(maximum, 3) << "the progress counts all files";
}

TEST_F(RefreshTaskTest, ListsEveryFileWhileTheFilterIsReleased) {
    AddMessages(2);
    clock.Set(start.addYears(1));
    state.FilterDays = 7;
    state.ActiveFilterDays = u"0"_s;
    Run();
    EXPECT_EQ(model.Count(), 2);
}

TEST_F(RefreshTaskTest, ListsFileNamesInBulkModeWithoutOpeningAny) {
    AddMessages(2);
    EXPECT_EQ(Run(true, true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Row(1).Cell(ColumnSubject), u"001.eml"_s);
    EXPECT_EQ(model.Row(1).Tag(), QString());
    EXPECT_TRUE(model.Row(1).IsUnread());
    EXPECT_EQ(state.LastAddedFile, u"001.eml"_s);
    EXPECT_FALSE(result.lastMessageWasRead);
    EXPECT_EQ(files.OpenCount(), 0);
}

TEST_F(RefreshTaskTest, CountsEveryTenthRow) {
    AddMessages(29);
    Run();
    EXPECT_EQ(progress, (std::vector<int>{10, 20}));
}

TEST_F(RefreshTaskTest, CountsOnFromTheRowsAlreadyListed) {
    AddMessages(5);
    state.LastAddedFile = u"001.eml"_s;
    model.Append(NumberedRows(17));
    Run();
    EXPECT_EQ(progress, std::vector<int>{20});
}

TEST_F(RefreshTaskTest, KeepsTheSenderOfTheLastMessageThatWasRead) {
    AddMessage(u"a.eml"_s, "First@spam.example");
    AddMessage(u"b.eml"_s, "Last@spam.example");
    Run();
    EXPECT_EQ(state.strXSender, u"Last@spam.example"_s);
    EXPECT_TRUE(result.lastMessageWasRead);
    Run(false, true);
    files.Add(InArchive(u"c.eml"_s), "", start.addSecs(arrived).toMSecsSinceEpoch() * 1'000'000);
    Run();
    EXPECT_EQ(state.strXSender, u"Last@spam.example"_s);
}

TEST_F(RefreshTaskTest, SortsRatingsAsNumbersWhereTheServerWritesNumbers) {
    state.ServerProfile = u"spamassassin"_s;
    int number = 0;
    for (const char* score : {"9.5", "10", "-1", "none", "9.25"}) {
        ++number;
        files.Add(InArchive(QString::number(number)),
                  QByteArray("X-Spam-Status: Yes, score=") + score + "\r\nSubject: s\r\n\r\n", number);
    }
    Run();
    model.sort(ColumnScl, Qt::AscendingOrder);
    EXPECT_EQ(Keys(), (QStringList{u"4"_s, u"3"_s, u"5"_s, u"1"_s, u"2"_s}));
}

TEST_F(RefreshTaskTest, SortsRatingsAsTextsWhereTheyAreTexts) {
    int number = 0;
    for (const char* score : {"9.5", "10", "8"}) {
        ++number;
        files.Add(InArchive(QString::number(number)), QByteArray("X-SCL: ") + score + "%\r\nSubject: s\r\n\r\n",
                  number);
    }
    Run();
    model.sort(ColumnScl, Qt::AscendingOrder);
    EXPECT_EQ(Keys(), (QStringList{u"2"_s, u"3"_s, u"1"_s}));
}

} // namespace quellbox
