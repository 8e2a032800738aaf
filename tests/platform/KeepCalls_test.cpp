#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <QDir>

namespace quellbox {

namespace {

/// An archive that has been listed, with a folder that was made in it.
class KeepCallsTest : public RealFilesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        files_->WriteWhole(from_, "x");
        FileNames(*files_, Path("archive/"));
        files_->MakeFolder(Path("archive/.kept/"));
        calls_.TakeCount();
    }

    const QString from_ = Path("archive/a.EML");
    const QString kept_ = Path("archive/.kept/a.EML");
    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
};

} // namespace

TEST_F(KeepCallsTest, KeepingAMessageIsOneCallAndPuttingItBackAnother) {
    files_->Move(from_, kept_);
    EXPECT_EQ(calls_.TakeCount(), 1) << "renameat2";
    files_->Move(kept_, from_);
    EXPECT_EQ(calls_.TakeCount(), 1) << "what lies in a folder that was made here is known";
}

TEST_F(KeepCallsTest, KeepingByTheStatusOfAMessageCostsTheStatusBesides) {
    const auto never = [](const FileStatus&) { return false; };
    EXPECT_TRUE(files_->MoveUnless(from_, kept_, never));
    EXPECT_EQ(calls_.TakeCount(), 2) << "lstat, renameat2";
    const auto always = [](const FileStatus&) { return true; };
    EXPECT_FALSE(files_->MoveUnless(kept_, from_, always));
    EXPECT_EQ(calls_.TakeCount(), 1) << "lstat";
}

TEST_F(KeepCallsTest, InAnotherSessionAListingTellsWhatLiesInTheFolder) {
    files_->Move(from_, kept_);
    const std::unique_ptr<FileSystem> later = MakeLocalFileSystem();
    calls_.TakeCount();
    later->Move(kept_, from_);
    EXPECT_EQ(calls_.TakeCount(), 2) << "lstat, renameat2";
    later->Move(from_, kept_);
    later->PrepareMoves(Path("archive/.kept/"));
    calls_.TakeCount();
    later->Move(kept_, from_);
    EXPECT_EQ(calls_.TakeCount(), 1);
}

TEST_F(KeepCallsTest, AFolderThatIsMissingIsToldByTheMoves) {
    EXPECT_NO_THROW(files_->PrepareMoves(Path("archive/.gone/")));
    EXPECT_THROW(files_->Move(Path("archive/.gone/a.EML"), from_), FileError);
    EXPECT_TRUE(files_->FileExists(from_));
}

} // namespace quellbox

#endif
