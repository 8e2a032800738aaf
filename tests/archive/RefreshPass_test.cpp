#include "tests/archive/RefreshFixture.h"

namespace quellbox {

using namespace Qt::StringLiterals;

TEST_F(RefreshPassTest, OfAnEmptyArchiveLeavesAnEmptyListAndCount) {
    panels.SetCount(u"5 messages"_s);
    model.Append(NumberedRows(5));
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(panels.Count().text, QString());
    EXPECT_EQ(maximum, 1);
    EXPECT_EQ(state.LastAddedFile, QString());
    EXPECT_EQ(viewsCleared, 0);
}

TEST_F(RefreshPassTest, FillsARowPerFileWhateverItsExtension) {
    AddMessage(u"b.EML"_s);
    AddMessage(u"a.txt"_s);
    AddMessage(u"noextension"_s);
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"b.EML"_s, u"a.txt"_s, u"noextension"_s}));
    EXPECT_EQ(maximum, 4);
    const MessageRow& row = model.Row(0);
    EXPECT_EQ(row.cells[ColumnDate], u"2026-06-15 12:00:00"_s);
    EXPECT_EQ(row.cells[ColumnTo], u"t"_s);
    EXPECT_EQ(row.cells[ColumnFrom], u"f"_s);
    EXPECT_EQ(row.cells[ColumnSubject], u"s"_s);
    EXPECT_EQ(row.cells[ColumnSize], QString::number(files.Bytes(InArchive(u"b.EML"_s)).size()));
    EXPECT_EQ(row.cells[ColumnBytes].size(), 8);
    EXPECT_EQ(row.tag, u"eve@spam.example"_s);
    EXPECT_FALSE(row.unread);
}

TEST_F(RefreshPassTest, WithoutALastFileRebuildsTheList) {
    model.Append(NumberedRows(5));
    AddMessages(2);
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"001.eml"_s);
}

TEST_F(RefreshPassTest, WithALastFileOpensAndAddsOnlyWhatFollowsInBold) {
    AddMessages(20);
    Run();
    AddMessage(u"new.eml"_s);
    const int opened = files.OpenCount();
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    ASSERT_EQ(model.Count(), 21);
    EXPECT_EQ(model.Row(20).key, u"new.eml"_s);
    EXPECT_TRUE(model.Row(20).unread);
    EXPECT_FALSE(model.Row(19).unread);
    EXPECT_EQ(files.OpenCount(), opened + 1);
    EXPECT_EQ(state.LastAddedFile, u"new.eml"_s);
}

TEST_F(RefreshPassTest, AddsNothingWhenTheLastFileHasVanished) {
    AddMessages(3);
    Run();
    files.Remove(InArchive(u"002.eml"_s));
    AddMessage(u"new.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 3);
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
}

TEST_F(RefreshPassTest, AddsAListedFileThatIsWrittenAgainNotTwice) {
    AddMessages(3);
    Run();
    AddMessage(u"new.eml"_s);
    AddMessage(u"001.eml"_s); // written again, so it comes last in the order now
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"002.eml"_s, u"new.eml"_s}));
    EXPECT_FALSE(model.Row(1).unread);
    EXPECT_EQ(state.LastAddedFile, u"new.eml"_s);
}

TEST_F(RefreshPassTest, AddsWhatCameBeforeTheLastFileWasTouched) {
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

TEST_F(RefreshPassTest, AddsNothingOlderThanTheLastFileWasBeforeItWasTouched) {
    AddMessages(3);
    Run();
    model.Remove({0}); // its file stays, as after a delete that failed
    AddMessage(u"002.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"001.eml"_s, u"002.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
}

TEST_F(RefreshPassTest, ATouchedLastFileWhoseRowHasGoneIsNotAdded) {
    AddMessages(3);
    Run();
    model.Remove({2});
    AddMessage(u"new.eml"_s);
    AddMessage(u"002.eml"_s);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"new.eml"_s}));
}

TEST_F(RefreshPassTest, ComparesTheLastFileWithItsCase) {
    AddMessage(u"a.eml"_s);
    AddMessage(u"b.eml"_s);
    state.LastAddedFile = u"A.eml"_s;
    Run();
    EXPECT_EQ(model.Count(), 0);
}

TEST_F(RefreshPassTest, FindsTheLastFileThoughItIsTooOldForTheFilter) {
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

TEST_F(RefreshPassTest, ListsNothingOfYesterdayJustAfterMidnight) {
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

TEST_F(RefreshPassTest, ListsEveryFileWhileTheFilterIsReleased) {
    AddMessages(2);
    clock.Set(start.addYears(1));
    state.FilterDays = 7;
    state.ActiveFilterDays = u"0"_s;
    Run();
    EXPECT_EQ(model.Count(), 2);
}

TEST_F(RefreshPassTest, ListsFileNamesInBulkModeWithoutOpeningAny) {
    AddMessages(2);
    RefreshPass pass = Pass();
    EXPECT_EQ(pass.Run(true, true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Row(1).cells[ColumnSubject], u"001.eml"_s);
    EXPECT_EQ(model.Row(1).tag, QString());
    EXPECT_TRUE(model.Row(1).unread);
    EXPECT_EQ(state.LastAddedFile, u"001.eml"_s);
    EXPECT_FALSE(pass.LastMessageWasRead());
    EXPECT_EQ(files.OpenCount(), 0);
}

TEST_F(RefreshPassTest, CountsEveryTenthRow) {
    AddMessages(29);
    QStringList counts;
    QObject::connect(&panels, &StatusPanels::Changed, &panels, [&] { counts += panels.Count().text; });
    Run();
    EXPECT_EQ(progress, (std::vector<int>{10, 20}));
    EXPECT_EQ(counts, (QStringList{u"10"_s, u"20"_s}));
}

TEST_F(RefreshPassTest, CountsOnFromTheRowsAlreadyListedUpToTheMaximum) {
    AddMessages(5);
    state.LastAddedFile = u"001.eml"_s;
    model.Append(NumberedRows(17));
    Run();
    EXPECT_EQ(progress, std::vector<int>{6});
    EXPECT_EQ(panels.Count().text, u"20"_s);
}

TEST_F(RefreshPassTest, KeepsTheSenderOfTheLastMessageThatWasRead) {
    AddMessage(u"a.eml"_s, "First@spam.example");
    AddMessage(u"b.eml"_s, "Last@spam.example");
    RefreshPass pass = Pass();
    pass.Run(false, false);
    EXPECT_EQ(state.strXSender, u"Last@spam.example"_s);
    EXPECT_TRUE(pass.LastMessageWasRead());
    Run(false, true);
    files.Add(InArchive(u"c.eml"_s), "", start.addSecs(arrived).toMSecsSinceEpoch() * 1'000'000);
    Run();
    EXPECT_EQ(state.strXSender, u"Last@spam.example"_s);
}

} // namespace quellbox
