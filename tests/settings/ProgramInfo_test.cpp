#include "settings/ProgramInfo.h"

#include "tests/support/MemoryFileSystem.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

ProgramInfo Program() {
    ProgramInfo program = MakeProgramInfo(QStringLiteral("/prog/quellbox"));
    program.Major = 2;
    program.Minor = 1;
    program.Revision = 37;
    program.WebSite = QStringLiteral("http://www.quellbox.example");
    program.SupportAddress = QStringLiteral("support@quellbox.example");
    return program;
}

} // namespace

TEST(ProgramInfo, TheUpdatePageIsToldTheVersionInPlainDecimal) {
    EXPECT_EQ(Program().UpdatePage().toStdString(), "http://www.quellbox.example/quellbox/version.asp?client=2.1.37");
    ProgramInfo program = Program();
    program.Minor = 0;
    program.Revision = 1000;
    EXPECT_TRUE(program.UpdatePage().endsWith(QStringLiteral("client=2.0.1000")));
}

TEST(ProgramInfo, TheExecutableNamesTheSettingsWithoutFolderAndExtension) {
    EXPECT_EQ(MakeProgramInfo(QStringLiteral("/prog/quellbox")).ExecutableName.toStdString(), "quellbox");
    EXPECT_EQ(MakeProgramInfo(QStringLiteral("/prog.d/Second.exe")).ExecutableName.toStdString(), "Second");
}

TEST(ProgramInfo, FeedbackPageAndSupportLink) {
    EXPECT_EQ(Program().FeedbackPage().toStdString(), "http://www.quellbox.example/quellbox/feedback.htm");
    EXPECT_EQ(Program().SupportLink().toStdString(), "mailto:support@quellbox.example?subject=Quellbox");
}

TEST(ProgramInfo, TheWebPagesUsePlainHttp) {
    const ProgramInfo built = MakeProgramInfo(QStringLiteral("/prog/quellbox"));
    EXPECT_TRUE(built.UpdatePage().startsWith(QStringLiteral("http://")));
    EXPECT_TRUE(built.FeedbackPage().startsWith(QStringLiteral("http://")));
}

TEST(ProgramInfo, ItsPathsHaveTheSystemsSeparators) {
    const QString folder = QDir::tempPath() + QStringLiteral("/prog/");
    const ProgramInfo program = MakeProgramInfo(folder + QStringLiteral("quellbox.exe"));
    EXPECT_EQ(program.Directory, QDir::toNativeSeparators(folder));
    EXPECT_EQ(program.ExecutablePath, program.Directory + QStringLiteral("quellbox.exe"));
    EXPECT_EQ(program.HelpFile, program.Directory + QStringLiteral("Quellbox.chm"));
    EXPECT_EQ(program.ExecutableName, QStringLiteral("quellbox"));
}

TEST(ProgramInfo, ARootHasNoSecondSeparator) {
    const ProgramInfo program = MakeProgramInfo(QDir::rootPath() + QStringLiteral("quellbox.exe"));
    EXPECT_EQ(program.Directory, QDir::toNativeSeparators(QDir::rootPath()));
    EXPECT_EQ(program.HelpFile, program.Directory + QStringLiteral("Quellbox.chm"));
}

TEST(ProgramInfo, TheBuildDateIsTheDayOfTheExecutableAsAShortDate) {
    MemoryFileSystem files;
    const QDate day(2026, 3, 9);
    files.Add(Program().ExecutablePath, "x", QDateTime(day, QTime(23, 59)).toMSecsSinceEpoch() * 1'000'000);
    const QString expected = QLocale().toString(day, QLocale::ShortFormat);
    EXPECT_EQ(BuildDate(files, Program()).toStdString(), expected.toStdString());
    EXPECT_FALSE(expected.isEmpty());
}

TEST(ProgramInfo, AnExecutableThatCannotBeSeenHasNoBuildDate) {
    const MemoryFileSystem files;
    EXPECT_TRUE(BuildDate(files, Program()).isEmpty());
}
