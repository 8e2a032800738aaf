#include "platform/LocalFileSystem.h"
#include "platform/PosixMove.h"
#include "platform/RuntimeError.h"
#include "platform/WindowsMove.h"
#include "tests/support/RealFiles.h"

#include <QDir>

#ifndef _WIN32
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quellbox {

namespace {

class MoveTest : public RealFilesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("pickup")));
        files_->WriteWhole(from_, "message");
    }

    const QString from_ = folder_.path() + Text("/archive/a.EML");
    const QString to_ = folder_.path() + Text("/pickup/a.EML");
};

TEST_F(MoveTest, FileIsInTheOtherFolderOnly) {
    const qint64 modifiedNs = files_->Status(from_)->modifiedNs;
    files_->Move(from_, to_);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, to_), "message");
    EXPECT_EQ(files_->Status(to_)->modifiedNs, modifiedNs);
}

TEST_F(MoveTest, ExistingTargetIsNeverOverwritten) {
    files_->WriteWhole(to_, "other");
    EXPECT_THROW(files_->Move(from_, to_), FileError);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
}

TEST_F(MoveTest, MissingTargetFolderLeavesTheSource) {
    const QString target = folder_.path() + Text("/none/a.EML");
    try {
        files_->Move(from_, target);
        FAIL() << "the file was moved";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), target);
    }
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

TEST_F(MoveTest, FileMovedOntoItselfStays) {
    EXPECT_THROW(files_->Move(from_, from_), FileError);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

#ifndef _WIN32

/// The ways of a rename that never overwrites; each must do the same as the others.
class RenameTest : public MoveTest,
                   public testing::WithParamInterface<int (*)(const QByteArray&, const QByteArray&)> {};

TEST_P(RenameTest, Renames) {
    EXPECT_EQ(GetParam()(Native(from_), Native(to_)), 0);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, to_), "message");
}

TEST_P(RenameTest, RefusesAnExistingTarget) {
    files_->WriteWhole(to_, "other");
    EXPECT_EQ(GetParam()(Native(from_), Native(to_)), EEXIST);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
}

TEST_P(RenameTest, RefusesADanglingLinkAsTarget) {
    ASSERT_EQ(::symlink("nowhere", Native(to_).constData()), 0);
    EXPECT_EQ(GetParam()(Native(from_), Native(to_)), EEXIST);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

TEST_P(RenameTest, LeavesNothingBehindWithoutASource) {
    EXPECT_EQ(GetParam()(Native(from_) + ".none", Native(to_)), ENOENT);
    EXPECT_FALSE(files_->FileExists(to_));
}

INSTANTIATE_TEST_SUITE_P(Ways, RenameTest, testing::Values(&RenameNoReplace, &RenameByLink, &RenameByReservation));

TEST_F(MoveTest, CopiedMoveKeepsContentsTimeAndPermissions) {
    const QByteArray bytes(500'000, 'x');
    files_->WriteWhole(from_, bytes);
    ASSERT_EQ(::chmod(Native(from_).constData(), 0440), 0);
    const qint64 modifiedNs = files_->Status(from_)->modifiedNs;
    MoveByCopy(from_, to_);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, to_), bytes);
    EXPECT_EQ(files_->Status(to_)->modifiedNs, modifiedNs);
    struct stat status {};
    ASSERT_EQ(::stat(Native(to_).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0440U);
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
}

TEST_F(MoveTest, CopiedMoveNeverOverwritesAndCleansUp) {
    files_->WriteWhole(to_, "other");
    EXPECT_THROW(MoveByCopy(from_, to_), FileError);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
}

TEST_F(MoveTest, SourceThatCannotBeRemovedStaysAlone) {
    // Nothing can be removed from the process folder, not even by the superuser.
    const QString irremovable = Text("/proc/self/status");
    ASSERT_TRUE(files_->FileExists(irremovable));
    try {
        files_->Move(irremovable, to_);
        FAIL() << "the file was moved";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), irremovable);
        EXPECT_EQ(error.Reason(), qt_error_string(EPERM));
    }
    EXPECT_TRUE(FileNames(*files_, folder_.path() + Text("/pickup")).isEmpty());
}

TEST_F(MoveTest, MovedLinkArrivesAsTheFileThatItNames) {
    const QString link = folder_.path() + Text("/archive/link.EML");
    ASSERT_EQ(::symlink("a.EML", Native(link).constData()), 0);
    files_->Move(link, to_);
    EXPECT_EQ(ReadWhole(*files_, to_), "message");
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/archive")), QStringList{Text("a.EML")});
}

TEST_F(MoveTest, MoveToAnotherFileSystem) {
    const QTemporaryDir other(Text("/dev/shm/quellbox-XXXXXX"));
    struct stat here {};
    struct stat there {};
    if (!other.isValid() || ::stat(Native(folder_.path()).constData(), &here) != 0 ||
        ::stat(Native(other.path()).constData(), &there) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "there is only one file system";
    }
    const QString target = other.path() + Text("/a.EML");
    files_->WriteWhole(target, "other");
    EXPECT_THROW(files_->Move(from_, target), FileError);
    EXPECT_EQ(ReadWhole(*files_, target), "other");
    files_->Remove(target);
    const qint64 modifiedNs = files_->Status(from_)->modifiedNs;
    files_->Move(from_, target);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, target), "message");
    EXPECT_EQ(files_->Status(target)->modifiedNs, modifiedNs);
    EXPECT_EQ(FileNames(*files_, other.path()), QStringList{Text("a.EML")});
}

#else

bool IsReadOnly(const QString& path) {
    return (GetFileAttributesW(QDir::toNativeSeparators(path).toStdWString().c_str()) & FILE_ATTRIBUTE_READONLY) != 0;
}

void SetReadOnly(const QString& path) {
    ASSERT_NE(SetFileAttributesW(QDir::toNativeSeparators(path).toStdWString().c_str(), FILE_ATTRIBUTE_READONLY), 0);
}

TEST_F(MoveTest, CopiedMoveKeepsContentsTimeAndAttributes) {
    const QByteArray bytes(500'000, 'x');
    files_->WriteWhole(from_, bytes);
    SetReadOnly(from_);
    const qint64 modifiedNs = files_->Status(from_)->modifiedNs;
    MoveByCopy(from_, to_);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, to_), bytes);
    EXPECT_EQ(files_->Status(to_)->modifiedNs, modifiedNs);
    EXPECT_TRUE(IsReadOnly(to_));
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
    QFile::setPermissions(to_, QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(MoveTest, CopiedMoveNeverOverwritesAndCleansUp) {
    SetReadOnly(from_);
    files_->WriteWhole(to_, "other");
    EXPECT_THROW(MoveByCopy(from_, to_), FileError);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_TRUE(IsReadOnly(from_));
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
    QFile::setPermissions(from_, QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(MoveTest, CopiedMoveRefusesAFileThatIsBeingWritten) {
    QFile writer(from_);
    ASSERT_TRUE(writer.open(QIODevice::ReadWrite));
    EXPECT_THROW(MoveByCopy(from_, to_), FileError);
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList());
    writer.close();
    MoveByCopy(from_, to_);
    EXPECT_EQ(ReadWhole(*files_, to_), "message");
}

TEST_F(MoveTest, SourceThatCannotBeRemovedStaysAlone) {
    const HANDLE reader = CreateFileW(QDir::toNativeSeparators(from_).toStdWString().c_str(), GENERIC_READ,
                                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    try {
        MoveByCopy(from_, to_);
        FAIL() << "the file was moved";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), from_);
        EXPECT_EQ(error.Reason(), qt_error_string(ERROR_SHARING_VIOLATION));
    }
    CloseHandle(reader);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(FileNames(*files_, folder_.path() + Text("/pickup")), QStringList());
}

/// QUELLBOX_OTHER_VOLUME names a folder on another volume than the one of temporary files.
TEST_F(MoveTest, MoveToAnotherVolume) {
    const QString volume = qEnvironmentVariable("QUELLBOX_OTHER_VOLUME");
    if (volume.isEmpty()) {
        GTEST_SKIP() << "QUELLBOX_OTHER_VOLUME is not set";
    }
    const QTemporaryDir other(volume + Text("/quellbox-XXXXXX"));
    ASSERT_TRUE(other.isValid());
    const QString target = other.path() + Text("/a.EML");
    ASSERT_EQ(RenameNoReplace(from_, target), static_cast<DWORD>(ERROR_NOT_SAME_DEVICE));
    files_->WriteWhole(target, "other");
    EXPECT_THROW(files_->Move(from_, target), FileError);
    EXPECT_EQ(ReadWhole(*files_, target), "other");
    files_->Remove(target);
    const qint64 modifiedNs = files_->Status(from_)->modifiedNs;
    files_->Move(from_, target);
    EXPECT_FALSE(files_->FileExists(from_));
    EXPECT_EQ(ReadWhole(*files_, target), "message");
    EXPECT_EQ(files_->Status(target)->modifiedNs, modifiedNs);
    EXPECT_EQ(FileNames(*files_, other.path()), QStringList{Text("a.EML")});
}

#endif

} // namespace

} // namespace quellbox
