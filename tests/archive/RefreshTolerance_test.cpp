#include "tests/archive/RefreshFixture.h"
#include "tests/support/Gzip.h"

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

class RefreshToleranceTest : public RefreshTaskTest {
protected:
    RefreshToleranceTest() {
        state.TolerationLevel = 2;
        Tolerate(u"@friend.example"_s);
    }
};

} // namespace

TEST_F(RefreshToleranceTest, MovesTheMessageAndListsItNot) {
    AddMessage(u"a.eml"_s);
    AddMessage(u"b.eml"_s, "Bob@FRIEND.example");
    AddMessage(u"c.eml"_s);
    const QByteArray bytes = files.Bytes(InArchive(u"b.eml"_s));
    Run();
    EXPECT_EQ(Keys(), (QStringList{u"a.eml"_s, u"c.eml"_s}));
    EXPECT_EQ(files.Paths(), (QStringList{u"/Archive/a.eml"_s, u"/Archive/c.eml"_s, u"/pickup/b.eml"_s}));
    EXPECT_EQ(files.Bytes(u"/pickup/b.eml"_s), bytes);
}

TEST_F(RefreshToleranceTest, KeepsTheNameOfAMovedFileAsTheLastOne) {
    AddMessage(u"a.eml"_s);
    AddMessage(u"b.eml"_s, "bob@friend.example");
    Run();
    EXPECT_EQ(Keys(), QStringList{u"a.eml"_s});
    EXPECT_EQ(state.LastAddedFile, u"b.eml"_s);
}

TEST_F(RefreshToleranceTest, LeavesTheRowWhenTheMoveFailsAndGoesOn) {
    AddMessage(u"a.eml"_s, "bob@friend.example");
    AddMessage(u"b.eml"_s, "bob@friend.example");
    files.Add(u"/pickup/a.eml"_s, "already there");
    Run();
    EXPECT_EQ(Keys(), QStringList{u"a.eml"_s});
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].path, u"/pickup/a.eml"_s);
    EXPECT_EQ(files.Paths(), (QStringList{u"/Archive/a.eml"_s, u"/pickup/a.eml"_s, u"/pickup/b.eml"_s}));
    EXPECT_EQ(files.Bytes(u"/pickup/a.eml"_s), "already there");
}

TEST_F(RefreshToleranceTest, LeavesWhatIsPackedAndSaysSo) {
    const QByteArray message = "X-Envelope-From: <Bob@friend.example>\r\nSubject: s\r\n\r\nbody";
    files.Add(InArchive(u"banned-a"_s), message, 1);
    files.Add(InArchive(u"spam-b.gz"_s), Gzip(message), 2);
    state.ServerProfile = u"amavis"_s;
    Run();
    ASSERT_EQ(Keys(), QStringList{u"spam-b.gz"_s});
    EXPECT_EQ(model.Row(0).Cell(ColumnSubject), u"s"_s);
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].problem, FileProblem::Packed);
    EXPECT_EQ(result.failures[0].path, InArchive(u"spam-b.gz"_s));
    EXPECT_EQ(files.Paths(), (QStringList{u"/Archive/spam-b.gz"_s, u"/pickup/banned-a"_s}));
}

TEST_F(RefreshToleranceTest, GoesByTheSenderOfTheServersProfile) {
    const QByteArray message = "X-Sender: eve@spam.example\r\nReturn-Path: <Bob@friend.example>\r\nX-Spam-Status: Yes, "
                               "score=7.5 required=5\r\nSubject: s\r\n\r\nbody";
    files.Add(InArchive(u"a.eml"_s), message, 1);
    Run();
    EXPECT_EQ(Keys(), QStringList{u"a.eml"_s}) << "to the default, the sender is another one";
    state.ServerProfile = u"spamassassin"_s;
    state.TolerationLevel = 0;
    state.LastAddedFile.clear();
    Run();
    ASSERT_EQ(Keys(), QStringList{u"a.eml"_s});
    EXPECT_EQ(model.Row(0).Cell(ColumnScl), u"7.5"_s);
    EXPECT_EQ(model.Row(0).Tag(), u"Bob@friend.example"_s);
    state.TolerationLevel = 2;
    state.LastAddedFile.clear();
    Run();
    EXPECT_EQ(files.Paths(), QStringList{u"/pickup/a.eml"_s});
}

TEST_F(RefreshToleranceTest, IsAutomaticOnlyAtLevelTwo) {
    AddMessage(u"a.eml"_s, "bob@friend.example");
    for (const qint16 level : {qint16{0}, qint16{1}, qint16{3}}) {
        state.TolerationLevel = level;
        state.LastAddedFile.clear();
        Run();
        EXPECT_EQ(model.Count(), 1) << level;
    }
    EXPECT_EQ(files.Paths(), QStringList{u"/Archive/a.eml"_s});
}

TEST_F(RefreshToleranceTest, ReadsTheWhitelistAfreshForEveryPass) {
    AddMessage(u"a.eml"_s, "ann@new.example");
    Run();
    EXPECT_EQ(model.Count(), 1);
    Tolerate(u"@new.example"_s);
    state.LastAddedFile.clear();
    Run();
    EXPECT_EQ(model.Count(), 0);
    EXPECT_TRUE(files.FileExists(u"/pickup/a.eml"_s));
}

TEST_F(RefreshToleranceTest, MovesNothingInBulkModeWhereNoSenderIsKnown) {
    AddMessage(u"a.eml"_s, "bob@friend.example");
    Run(false, true);
    EXPECT_EQ(Keys(), QStringList{u"a.eml"_s});
    EXPECT_TRUE(files.FileExists(u"/Archive/a.eml"_s));
}

TEST_F(RefreshToleranceTest, MovesNothingThatTheDayFilterSkips) {
    AddMessage(u"a.eml"_s, "bob@friend.example");
    clock.Set(start.addDays(1));
    state.ActiveFilterDays = u"1"_s;
    Run();
    EXPECT_EQ(model.Count(), 0);
    EXPECT_TRUE(files.FileExists(u"/Archive/a.eml"_s));
}

} // namespace quellbox
