#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <QDir>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

/// What a file system knows.
enum class Knows { AtomicRename, LinksOnly, Neither };

QByteArray FolderOfPath(const QByteArray& path) {
    return path.left(path.lastIndexOf('/'));
}

/// Moves from one folder into another in a file system of each kind, which refuses to rename or remove what is open.
class MoveCallsTest : public RealFilesTest, public testing::WithParamInterface<Knows> {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("pickup")));
        files_->WriteWhole(from_, message_);
        calls_.answer = [this](const SystemCall& call) { return AnswerOf(call); };
    }

    Answer AnswerOf(const SystemCall& call) {
        if (call.name == "renameat2" && GetParam() != Knows::AtomicRename) {
            return {EINVAL};
        }
        if (call.name == "link" && GetParam() == Knows::Neither) {
            return {EPERM};
        }
        if (areTwoFileSystems_ && !call.target.isEmpty() && FolderOfPath(call.path) != FolderOfPath(call.target)) {
            return {EXDEV};
        }
        const bool changesNames = !call.target.isEmpty() || call.name == "unlink";
        if (changesNames && (calls_.IsOpen(call.path) || calls_.IsOpen(call.target))) {
            ++refusals_;
            return {EBUSY};
        }
        return {};
    }

    /// Looks after each call at what the final name has.
    void WatchFinalName(qint64 size) {
        calls_.after = [this, size](const SystemCall& call) {
            struct stat status {};
            if (::lstat(Native(to_).constData(), &status) == 0) {
                EXPECT_EQ(status.st_size, size) << "after " << call.name.constData();
            }
        };
    }

    /// How many calls it takes to move a new message.
    int CallsOfAMove(int number, bool isListed) {
        const QString name = QString::number(number) + Text(".EML");
        calls_.answer = nullptr;
        files_->WriteWhole(Path("archive/") + name, message_);
        if (isListed) {
            FileNames(*files_, Path("archive/"));
        }
        calls_.answer = [this](const SystemCall& call) { return AnswerOf(call); };
        calls_.TakeCount();
        files_->Move(Path("archive/") + name, Path("pickup/") + name);
        const int count = calls_.TakeCount();
        EXPECT_EQ(ReadWhole(*files_, Path("pickup/") + name), message_);
        EXPECT_FALSE(files_->FileExists(Path("archive/") + name));
        return count;
    }

    void ExpectMoved() const {
        EXPECT_EQ(refusals_, 0) << "something open was to be renamed or removed";
        EXPECT_EQ(NamesIn(Path("archive")), QStringList());
        EXPECT_EQ(NamesIn(Path("pickup")), QStringList{Text("a.EML")});
        EXPECT_EQ(ReadWhole(*files_, to_), message_);
    }

    const QByteArray message_ = QByteArray(300'000, 'x');
    const QString from_ = Path("archive/a.EML");
    const QString to_ = Path("pickup/a.EML");
    bool areTwoFileSystems_ = false;
    int refusals_ = 0;
    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
};

} // namespace

TEST_P(MoveCallsTest, TheFinalNameAlwaysHasTheWholeMessage) {
    WatchFinalName(message_.size());
    files_->Move(from_, to_);
    ExpectMoved();
}

TEST_P(MoveCallsTest, BetweenFileSystemsNothingOpenIsRenamedOrRemoved) {
    areTwoFileSystems_ = true;
    WatchFinalName(message_.size());
    files_->Move(from_, to_);
    ExpectMoved();
}

TEST_P(MoveCallsTest, AFileIsClosedBeforeItTakesThePlaceOfAnother) {
    files_->WriteWhole(to_, "shorter");
    EXPECT_EQ(ReadWhole(*files_, to_), "shorter");
    files_->WriteWhole(to_, message_);
    files_->Remove(from_);
    ExpectMoved();
}

TEST_P(MoveCallsTest, AnExistingTargetIsNeverOverwritten) {
    for (const bool two : {false, true}) {
        areTwoFileSystems_ = two;
        files_->WriteWhole(to_, "other");
        EXPECT_THROW(files_->Move(from_, to_), FileError);
        EXPECT_EQ(refusals_, 0);
        EXPECT_EQ(ReadWhole(*files_, from_), message_);
        EXPECT_EQ(ReadWhole(*files_, to_), "other");
        EXPECT_EQ(NamesIn(Path("pickup")), QStringList{Text("a.EML")});
    }
}

/// The first message pays for finding out what the file system knows.
TEST_P(MoveCallsTest, AMessageOfAListedFolderCostsFewCalls) {
    const int first = CallsOfAMove(0, true);
    const int next = CallsOfAMove(1, false);
    switch (GetParam()) {
    case Knows::AtomicRename:
        EXPECT_EQ(first, 1);
        EXPECT_EQ(next, 1);
        break;
    case Knows::LinksOnly:
        EXPECT_EQ(first, 3) << "renameat2, link, unlink";
        EXPECT_EQ(next, 2) << "link, unlink";
        break;
    case Knows::Neither:
        EXPECT_EQ(first, 4) << "renameat2, link, lstat, rename";
        EXPECT_EQ(next, 2) << "lstat, rename";
        break;
    }
}

/// Whether it is a link has to be asked then.
TEST_P(MoveCallsTest, AMessageOfAnUnlistedFolderCostsOneMoreUnlessItIsLookedAtAnyway) {
    CallsOfAMove(0, false);
    const int next = CallsOfAMove(1, false);
    EXPECT_EQ(next, GetParam() == Knows::AtomicRename ? 2 : 3);
}

TEST_P(MoveCallsTest, AListingForgetsWhatTheFileSystemDidNotKnow) {
    const int first = CallsOfAMove(0, true);
    CallsOfAMove(1, false);
    EXPECT_EQ(CallsOfAMove(2, true), first);
}

TEST_P(MoveCallsTest, WhatIsNoRegularFileIsTreatedTheSameListedOrNot) {
    ASSERT_EQ(::symlink("a.EML", Native("archive/link.EML").constData()), 0);
    ASSERT_EQ(::mkdir(Native("archive/folder.EML").constData(), 0700), 0);
    ASSERT_EQ(::mkfifo(Native("archive/fifo.EML").constData(), 0600), 0);
    for (const bool isListed : {false, true}) {
        if (isListed) {
            FileNames(*files_, Path("archive/"));
        }
        EXPECT_THROW(files_->Move(Path("archive/folder.EML"), to_), FileError);
        EXPECT_THROW(files_->Move(Path("archive/fifo.EML"), to_), FileError);
        EXPECT_EQ(NamesIn(Path("pickup")), QStringList());
    }
    files_->Move(Path("archive/link.EML"), to_);
    struct stat status {};
    ASSERT_EQ(::lstat(Native(to_).constData(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(ReadWhole(*files_, to_), message_);
    EXPECT_EQ(NamesIn(Path("archive")), QStringList{Text("a.EML")});
}

TEST_P(MoveCallsTest, AnErrorNamesThePathThatIsMissing) {
    for (const bool isListed : {false, true}) {
        if (isListed) {
            FileNames(*files_, Path("archive/"));
        }
        const auto pathOfError = [this](const QString& from, const QString& to) {
            try {
                files_->Move(from, to);
                return QString();
            } catch (const FileError& error) {
                return error.Path();
            }
        };
        EXPECT_EQ(pathOfError(Path("archive/none.EML"), to_), Path("archive/none.EML"));
        EXPECT_EQ(pathOfError(from_, Path("none/a.EML")), Path("none/a.EML"));
        EXPECT_EQ(ReadWhole(*files_, from_), message_);
    }
}

TEST_P(MoveCallsTest, ASourceThatIsWrittenToMeanwhileStaysAlone) {
    areTwoFileSystems_ = true;
    bool isPlaced = false;
    calls_.after = [&](const SystemCall&) {
        if (!isPlaced && files_->FileExists(to_)) {
            isPlaced = true;
            const int file = ::open(Native(from_).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
            EXPECT_EQ(::write(file, "more", 4), 4);
            ::close(file);
        }
    };
    EXPECT_THROW(files_->Move(from_, to_), FileError);
    EXPECT_TRUE(isPlaced);
    EXPECT_EQ(ReadWhole(*files_, from_), message_ + "more");
    EXPECT_EQ(NamesIn(Path("pickup")), QStringList());
}

INSTANTIATE_TEST_SUITE_P(FileSystems, MoveCallsTest,
                         testing::Values(Knows::AtomicRename, Knows::LinksOnly, Knows::Neither));

} // namespace quellbox

#endif
