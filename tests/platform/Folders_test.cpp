#include "platform/RuntimeError.h"
#include "tests/support/RealFiles.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quellbox {

namespace {

class FoldersTest : public RealFilesTest {
protected:
    FileProblem ProblemOfMaking(const char* name) {
        try {
            files_->MakeFolder(Path(name));
        } catch (const FileError& error) {
            EXPECT_EQ(error.Path(), Path(name));
            return error.Problem();
        }
        ADD_FAILURE() << name << " was made";
        return FileProblem::Other;
    }

#ifndef _WIN32
    /// The permissions that new files do not get, while it lives.
    class Mask {
    public:
        explicit Mask(mode_t mask) : before_(::umask(mask)) {}
        ~Mask() { ::umask(before_); }
        Q_DISABLE_COPY_MOVE(Mask)

    private:
        mode_t before_;
    };

    mode_t ModeOf(const char* name) const {
        struct stat status {};
        EXPECT_EQ(::lstat(Native(name).constData(), &status), 0);
        return status.st_mode & 07777;
    }
#endif
};

} // namespace

TEST_F(FoldersTest, AFolderIsMadeOnceAndThereAfterwards) {
    for (const char* name : {".new", ".new/", ".new"}) {
        files_->MakeFolder(Path(name));
        EXPECT_TRUE(files_->FolderExists(Path(".new")));
    }
    files_->MakeFolder(Path(".new/sub/"));
    files_->WriteWhole(Path(".new/sub/a"), "x");
    files_->MakeFolder(Path(".new/sub"));
    EXPECT_EQ(ReadWhole(*files_, Path(".new/sub/a")), "x") << "what is there stays";
}

TEST_F(FoldersTest, UsersAreNotShownIt) {
    files_->MakeFolder(Path(".new"));
    const std::vector<FolderEntry> entries = files_->Entries(folder_.path());
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_TRUE(entries.front().hidden);
    EXPECT_EQ(entries.front().kind, EntryKind::Folder);
}

TEST_F(FoldersTest, WithoutTheFolderAboveItIsMissing) {
    EXPECT_EQ(ProblemOfMaking("none/.new"), FileProblem::Missing);
}

TEST_F(FoldersTest, AFileOfTheNameIsAnError) {
    files_->WriteWhole(Path(".new"), "x");
    EXPECT_EQ(ProblemOfMaking(".new"), FileProblem::Exists);
    EXPECT_EQ(ReadWhole(*files_, Path(".new")), "x");
}

TEST_F(FoldersTest, OnlyAnEmptyFolderIsRemoved) {
    EXPECT_FALSE(files_->RemoveFolder(Path("none")));
    EXPECT_FALSE(files_->RemoveFolder(Path("none/none/")));
    files_->MakeFolder(Path(".new"));
    files_->WriteWhole(Path(".new/a"), "x");
    EXPECT_FALSE(files_->RemoveFolder(Path(".new/")));
    EXPECT_TRUE(files_->FileExists(Path(".new/a")));
    files_->Remove(Path(".new/a"));
    EXPECT_TRUE(files_->RemoveFolder(Path(".new/")));
    EXPECT_FALSE(files_->FolderExists(Path(".new")));
    files_->WriteWhole(Path("file"), "x");
    EXPECT_THROW(files_->RemoveFolder(Path("file")), FileError);
    EXPECT_TRUE(files_->FileExists(Path("file")));
}

TEST_F(FoldersTest, OnlyAFolderItselfIsARealOne) {
    files_->MakeFolder(Path(".new"));
    files_->WriteWhole(Path("file"), "x");
    EXPECT_TRUE(files_->IsRealFolder(Path(".new")));
    EXPECT_TRUE(files_->IsRealFolder(Path(".new/")));
    EXPECT_FALSE(files_->IsRealFolder(Path("file")));
    EXPECT_FALSE(files_->IsRealFolder(Path("none")));
    EXPECT_FALSE(files_->IsRealFolder(QString()));
}

TEST_F(FoldersTest, RemovingEvenAReadOnlyFile) {
    files_->WriteWhole(Path("a"), "x");
    ASSERT_TRUE(QFile::setPermissions(Path("a"), QFile::ReadOwner));
    EXPECT_THROW(files_->Remove(Path("a")), FileError);
    EXPECT_TRUE(files_->RemoveEvenReadOnly(Path("a")));
    EXPECT_FALSE(files_->FileExists(Path("a")));
    EXPECT_FALSE(files_->RemoveEvenReadOnly(Path("a")));
    EXPECT_THROW(files_->RemoveEvenReadOnly(Path("none/a")), FileError);
    files_->MakeFolder(Path(".new"));
    EXPECT_FALSE(files_->RemoveEvenReadOnly(Path(".new")));
    EXPECT_TRUE(files_->FolderExists(Path(".new")));
}

TEST_F(FoldersTest, MovingUnlessTheStatusSaysOtherwise) {
    files_->MakeFolder(Path(".new"));
    files_->WriteWhole(Path("a"), "four");
    qint64 size = 0;
    const auto stays = [&size](bool yes) {
        return [&size, yes](const FileStatus& status) {
            size = status.size;
            return yes;
        };
    };
    EXPECT_FALSE(files_->MoveUnless(Path("a"), Path(".new/a"), stays(true)));
    EXPECT_EQ(size, 4);
    EXPECT_TRUE(files_->FileExists(Path("a")));
    EXPECT_TRUE(files_->MoveUnless(Path("a"), Path(".new/a"), stays(false)));
    EXPECT_EQ(ReadWhole(*files_, Path(".new/a")), "four");
    EXPECT_FALSE(files_->FileExists(Path("a")));
    EXPECT_THROW(files_->MoveUnless(Path("a"), Path(".new/b"), stays(false)), FileError);
    EXPECT_THROW(files_->MoveUnless(Path(".new"), Path("other"), stays(false)), FileError);
    files_->WriteWhole(Path("a"), "other");
    EXPECT_THROW(files_->MoveUnless(Path("a"), Path(".new/a"), stays(false)), FileError) << "the name is taken";
    EXPECT_EQ(ReadWhole(*files_, Path(".new/a")), "four");
}

TEST_F(FoldersTest, WhatTheQuestionThrowsLeavesTheFile) {
    files_->WriteWhole(Path("a"), "x");
    const auto refuses = [](const FileStatus&) -> bool { throw FileError(QStringLiteral("b"), QStringLiteral("no")); };
    EXPECT_THROW(files_->MoveUnless(Path("a"), Path("b"), refuses), FileError);
    EXPECT_TRUE(files_->FileExists(Path("a")));
}

#ifndef _WIN32
TEST_F(FoldersTest, ALinkIsNoFolderOfItsOwn) {
    ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("target")));
    ASSERT_TRUE(QFile::link(Path("target"), Path(".link")));
    ASSERT_TRUE(QFile::link(Path("nowhere"), Path(".dangling")));
    for (const char* name : {".link", ".link/", ".dangling"}) {
        EXPECT_EQ(ProblemOfMaking(name), FileProblem::Exists);
        EXPECT_FALSE(files_->IsRealFolder(Path(name)));
        EXPECT_THROW(files_->RemoveFolder(Path(name)), FileError);
    }
    EXPECT_FALSE(files_->FolderExists(Path("nowhere")));
    EXPECT_TRUE(files_->FolderExists(Path("target")));
}

TEST_F(FoldersTest, WhoeverMayUseTheFolderAboveMayUseIt) {
    const Mask mask(077);
    int number = 0;
    for (const mode_t mode : {0700U, 0750U, 0770U, 0777U, 02775U, 01777U}) {
        const QByteArray above = "above" + QByteArray::number(++number);
        const QByteArray made = above + "/.new";
        ASSERT_TRUE(QDir(folder_.path()).mkdir(QString::fromLatin1(above)));
        ASSERT_EQ(::chmod(Native(above.constData()).constData(), mode), 0);
        files_->MakeFolder(Path(made.constData()));
        EXPECT_EQ(ModeOf(made.constData()), mode);
    }
}

TEST_F(FoldersTest, AFolderThatIsThereKeepsItsPermissions) {
    ASSERT_EQ(::mkdir(Native(".new").constData(), 0700), 0);
    ASSERT_EQ(::chmod(Native(folder_.path()).constData(), 0755), 0);
    files_->MakeFolder(Path(".new"));
    EXPECT_EQ(ModeOf(".new"), 0700U);
}

TEST_F(FoldersTest, ItHasTheGroupOfTheFolderAbove) {
    constexpr gid_t other = 12'345;
    if (::chown(Native(folder_.path()).constData(), static_cast<uid_t>(-1), other) != 0) {
        GTEST_SKIP() << "only a privileged user may give a folder to any group";
    }
    ASSERT_EQ(::chmod(Native(folder_.path()).constData(), 0770), 0);
    files_->MakeFolder(Path(".new"));
    struct stat status {};
    ASSERT_EQ(::stat(Native(".new").constData(), &status), 0);
    EXPECT_EQ(status.st_gid, other);
    EXPECT_EQ(status.st_mode & 07777U, 0770U);
}
#else
TEST_F(FoldersTest, ItHasTheAttributeHidden) {
    files_->MakeFolder(Path(".new"));
    const DWORD attributes = GetFileAttributesW(QDir::toNativeSeparators(Path(".new")).toStdWString().c_str());
    ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(attributes & FILE_ATTRIBUTE_HIDDEN, 0U);
}
#endif

} // namespace quellbox
