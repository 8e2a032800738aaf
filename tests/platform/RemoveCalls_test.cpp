#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <sys/stat.h>

namespace quellbox {

namespace {

class RemoveCallsTest : public RealFilesTest {
protected:
    /// The user is told to look anew, in words that the window shows.
    void ExpectUnsure(const QString& path) {
        try {
            files_->Remove(path);
            ADD_FAILURE() << "it counts as deleted";
        } catch (const FileError& error) {
            EXPECT_EQ(error.Problem(), FileProblem::Other);
            EXPECT_TRUE(QString::fromUtf8(error.what()).contains(QStringLiteral("Refresh the list."))) << error.what();
        }
    }

    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
};

} // namespace

TEST_F(RemoveCallsTest, AFileCostsTwoAndOneThatIsMissingFour) {
    for (const char* name : {"a", "b"}) {
        files_->WriteWhole(Path(name), "x");
    }
    calls_.TakeCount();
    EXPECT_TRUE(files_->Remove(Path("a")));
    EXPECT_EQ(calls_.TakeCount(), 2) << "lstat, unlink";
    EXPECT_FALSE(files_->Remove(Path("a")));
    EXPECT_EQ(calls_.TakeCount(), 4) << "lstat, open and close the folder, openat";
    EXPECT_TRUE(files_->RemoveUnless(Path("b"), [](const FileStatus&) { return false; }));
    EXPECT_EQ(calls_.TakeCount(), 2);
}

TEST_F(RemoveCallsTest, AFileWhoseRemovalWasNotAnsweredIsGone) {
    for (const int error : {ENOENT, EIO, ETIMEDOUT}) { // a second try finds no file any more
        files_->WriteWhole(Path("a"), "x");
        calls_.answer = [error](const SystemCall& call) {
            return call.name == "unlink" ? Answer{error, true} : Answer();
        };
        EXPECT_TRUE(files_->Remove(Path("a"))) << error;
        calls_.answer = nullptr;
        EXPECT_FALSE(files_->FileExists(Path("a")));
    }
}

TEST_F(RemoveCallsTest, AFileIsNotGoneWithItsFolder) {
    EXPECT_THROW(files_->Remove(Path("none/a")), FileError) << "the share may not be mounted any more";
}

/// While a share is mounted anew, what is in it cannot be found for a moment.
TEST_F(RemoveCallsTest, AFileThatCouldNotBeFoundForAMomentIsNotGone) {
    files_->WriteWhole(Path("a"), "x");
    calls_.answer = [](const SystemCall& call) { return call.name == "lstat" ? Answer{ENOENT} : Answer(); };
    ExpectUnsure(Path("a"));
    calls_.answer = nullptr;
    EXPECT_TRUE(files_->FileExists(Path("a")));
}

TEST_F(RemoveCallsTest, AFileIsNotGoneWhereAnotherFileSystemIsInPlaceOfItsFolder) {
    const QTemporaryDir elsewhere(QStringLiteral("/dev/shm/quellbox-XXXXXX"));
    struct stat here {};
    struct stat there {};
    if (!elsewhere.isValid()) {
        GTEST_SKIP() << "there is no other folder";
    }
    ASSERT_EQ(::stat(QFile::encodeName(folder_.path()).constData(), &here), 0);
    ASSERT_EQ(::stat(QFile::encodeName(elsewhere.path()).constData(), &there), 0);
    if (here.st_dev == there.st_dev) {
        GTEST_SKIP() << "both folders are on one file system";
    }
    ASSERT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("real")));
    ASSERT_TRUE(QFile::link(Path("real"), Path("archive")));
    files_->WriteWhole(Path("archive/a"), "x");
    files_->Entries(Path("archive/"));
    ASSERT_TRUE(QFile::remove(Path("archive")));
    ASSERT_TRUE(QFile::link(elsewhere.path(), Path("archive")));
    ExpectUnsure(Path("archive/a"));
    files_->Entries(Path("archive/"));
    EXPECT_FALSE(files_->Remove(Path("archive/a"))) << "the new one has been listed";
}

TEST_F(RemoveCallsTest, AFileOfWhichNobodyCanTellIsAnError) {
    files_->WriteWhole(Path("a"), "x");
    for (const char* failing : {"lstat", "unlink"}) {
        calls_.answer = [failing](const SystemCall& call) { return call.name == failing ? Answer{EIO} : Answer(); };
        EXPECT_THROW(files_->Remove(Path("a")), FileError) << failing;
    }
    calls_.answer = nullptr;
    EXPECT_TRUE(files_->FileExists(Path("a")));
}

} // namespace quellbox

#endif
