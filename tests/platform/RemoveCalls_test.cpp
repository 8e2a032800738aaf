#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <cerrno>

namespace quellbox {

namespace {

class RemoveCallsTest : public RealFilesTest {
protected:
    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
};

} // namespace

TEST_F(RemoveCallsTest, AFileCostsTwoAlsoOneThatIsMissing) {
    for (const char* name : {"a", "b"}) {
        files_->WriteWhole(Path(name), "x");
    }
    calls_.TakeCount();
    EXPECT_TRUE(files_->Remove(Path("a")));
    EXPECT_EQ(calls_.TakeCount(), 2) << "lstat, unlink";
    EXPECT_FALSE(files_->Remove(Path("a")));
    EXPECT_EQ(calls_.TakeCount(), 2) << "lstat, stat of the folder";
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
