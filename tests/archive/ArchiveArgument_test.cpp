#include "archive/ArchiveArgument.h"
#include "tests/support/MemoryFileSystem.h"

#include <QDir>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class ArchiveArgumentTest : public testing::Test {
protected:
    ArchiveArgumentTest() {
        files_.AddFolder(srv_ + QStringLiteral("/archive"));
        files_.Add(srv_ + QStringLiteral("/archive/a.eml"), "Subject: a\n\n");
    }

    ArchiveArgument Read(const QStringList& arguments) const { return ReadArchiveArgument(arguments, files_, srv_); }

    /// The archive's folder as the user sees it.
    QString Archive() const { return QDir::toNativeSeparators(srv_ + QStringLiteral("/archive/")); }

    const QString srv_ = QDir::rootPath() + QStringLiteral("srv");

    MemoryFileSystem files_;
};

TEST_F(ArchiveArgumentTest, NoArgumentLeavesTheChoiceToTheSettings) {
    const ArchiveArgument argument = Read({});
    EXPECT_TRUE(argument.Folder.IsEmpty());
    EXPECT_TRUE(argument.Error.isEmpty());
}

TEST_F(ArchiveArgumentTest, AFolderGetsASeparatorAtItsEndAndKeepsTheOneItHas) {
    EXPECT_EQ(Read({srv_ + QStringLiteral("/archive")}).Folder, Archive());
    EXPECT_EQ(Read({srv_ + QStringLiteral("/archive/")}).Folder, Archive());
}

TEST_F(ArchiveArgumentTest, ARelativeFolderStartsFromTheWorkingFolder) {
    EXPECT_EQ(Read({QStringLiteral("archive")}).Folder, Archive());
}

TEST_F(ArchiveArgumentTest, AFileIsNoDirectory) {
    const ArchiveArgument argument = Read({QStringLiteral("archive/a.eml")});
    EXPECT_TRUE(argument.Folder.IsEmpty());
    EXPECT_EQ(argument.Error.toStdString(), "\"archive/a.eml\" is no directory that can be opened.");
}

TEST_F(ArchiveArgumentTest, AnAbsentFolderIsNamedAsItWasGiven) {
    EXPECT_EQ(Read({QStringLiteral("/nowhere")}).Error.toStdString(),
              "\"/nowhere\" is no directory that can be opened.");
}

TEST_F(ArchiveArgumentTest, AnEmptyArgumentIsNotTheWorkingFolder) {
    const ArchiveArgument argument = Read({QString()});
    EXPECT_TRUE(argument.Folder.IsEmpty());
    EXPECT_EQ(argument.Error.toStdString(), "\"\" is no directory that can be opened.");
}

TEST_F(ArchiveArgumentTest, TwoDirectoriesAreRefused) {
    const ArchiveArgument argument = Read({QStringLiteral("/srv/archive"), QStringLiteral("/srv/archive")});
    EXPECT_TRUE(argument.Folder.IsEmpty());
    EXPECT_EQ(argument.Error.toStdString(), "Only one directory can be opened at a time.");
}

TEST_F(ArchiveArgumentTest, ASharePathIsTakenAsItIs) {
    const ArchiveArgument argument = Read({QStringLiteral("\\\\server\\share")});
    EXPECT_EQ(argument.Error.toStdString(), "\"\\\\server\\share\" is no directory that can be opened.");
}

} // namespace
} // namespace quellbox
