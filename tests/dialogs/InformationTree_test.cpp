#include "dialogs/InformationTree.h"

#include "mail/MailMessage.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"

#include <QDateTime>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

class Information : public testing::Test {
protected:
    Information() {
        program.Major = 3;
        program.Minor = 14;
        program.Revision = 159;
        state.ArchiveDir = QStringLiteral("/mail/archive/");
        state.PickupDir = QStringLiteral("\\\\server\\share\\pickup\\");
    }

    void Build(const QDateTime& moment) {
        files.Add(program.ExecutablePath, "binary", moment.toMSecsSinceEpoch() * 1'000'000);
    }

    std::vector<InformationNode> Tree(const QLocale& locale = QLocale::c()) const {
        return BuildInformationTree(program, state, files, locale);
    }

    MemoryFileSystem files;
    ProgramInfo program = TestProgram(QStringLiteral("/opt/quellbox/"), QStringLiteral("quellbox.v2.exe"));
    AppState state;
};

} // namespace

TEST_F(Information, HasTwoRootsWithTheirLines) {
    Build(QDateTime(QDate(2026, 3, 9), QTime(12, 0)));
    const std::vector<InformationNode> tree = Tree(QLocale(QLocale::German, QLocale::Germany));
    ASSERT_EQ(tree.size(), 2U);
    EXPECT_EQ(tree[0].key, QStringLiteral("program"));
    EXPECT_EQ(tree[0].text, QStringLiteral("quellbox.v2"));
    ASSERT_EQ(tree[0].children.size(), 3U);
    EXPECT_EQ(tree[0].children[0].text, QStringLiteral("Version: 3.14.159"));
    EXPECT_EQ(tree[0].children[1].text, QStringLiteral("Build: 09.03.26"));
    EXPECT_EQ(tree[0].children[2].text, QStringLiteral("SocketTools: ") + MailMessage::VersionText());
    EXPECT_EQ(tree[1].key, QStringLiteral("directories"));
    EXPECT_EQ(tree[1].text, QStringLiteral("Directories"));
    ASSERT_EQ(tree[1].children.size(), 3U);
    EXPECT_EQ(tree[1].children[0].text, QStringLiteral("Program: ") + program.Directory.Text().chopped(1));
    EXPECT_EQ(tree[1].children[1].text, QStringLiteral("Archive: /mail/archive/"));
    EXPECT_EQ(tree[1].children[2].text, QStringLiteral("Pickup: \\\\server\\share\\pickup\\"));
    for (const InformationNode& root : tree) {
        for (const InformationNode& line : root.children) {
            EXPECT_TRUE(line.key.isEmpty());
            EXPECT_TRUE(line.children.empty());
        }
    }
}

TEST_F(Information, TheBuildIsDatedByTheLocalDay) {
    Build(QDateTime(QDate(2026, 3, 9), QTime(0, 0)));
    EXPECT_EQ(Tree()[0].children[1].text,
              QStringLiteral("Build: ") + QLocale::c().toString(QDate(2026, 3, 9), QLocale::ShortFormat));
    Build(QDateTime(QDate(2026, 3, 9), QTime(23, 59, 59)));
    EXPECT_EQ(Tree()[0].children[1].text,
              QStringLiteral("Build: ") + QLocale::c().toString(QDate(2026, 3, 9), QLocale::ShortFormat));
}

TEST_F(Information, AnUnknownExecutableLeavesTheBuildEmpty) {
    EXPECT_EQ(Tree()[0].children[1].text, QStringLiteral("Build: "));
}

TEST_F(Information, TheParserNamesItsVersion) {
    static const QRegularExpression form(QStringLiteral("^GMime [0-9]+\\.[0-9]+\\.[0-9]+$"));
    EXPECT_TRUE(form.match(MailMessage::VersionText()).hasMatch()) << MailMessage::VersionText().toStdString();
}
