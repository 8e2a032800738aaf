#include "platform/PosixMove.h"
#include "platform/PosixRename.h"
#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <QDateTime>
#include <QDir>

#include <cerrno>
#include <functional>
#include <unistd.h>
#include <utility>

namespace quellbox {

namespace {

class MoveFaultTest : public RealFilesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("pickup")));
        files_->WriteWhole(from_, "message");
    }

    /// Brings the message back into the archive alone.
    void Restore() {
        calls_.answer = nullptr;
        for (const QString& folder : {Path("archive/"), Path("pickup/")}) {
            for (const QString& name : FileNames(*files_, folder)) {
                files_->Remove(folder + name);
            }
        }
        files_->WriteWhole(from_, "message");
        calls_.TakeCount();
    }

    void ExpectOnlyIn(const QString& path) const {
        EXPECT_EQ(files_->FileExists(from_), path == from_);
        EXPECT_EQ(files_->FileExists(to_), path == to_);
        EXPECT_EQ(ReadWhole(*files_, path), "message");
    }

    /// The first call of this name fails; with an effect, only its answer is lost.
    void FailFirst(const QByteArray& name, int error, bool takesEffect) {
        Restore();
        failed_ = false;
        calls_.answer = [this, name, error, takesEffect](const SystemCall& call) {
            if (failed_ || call.name != name) {
                return Answer();
            }
            failed_ = true;
            return Answer{error, takesEffect};
        };
    }

    /// Lets each call of the system that `move` makes fail in turn. `move` answers whether it says that it has moved.
    void FailEachCall(const std::function<bool()>& move) {
        int failing = 1;
        for (bool failed = true; failed; ++failing) {
            SCOPED_TRACE(failing);
            Restore();
            int countdown = failing;
            QByteArray name;
            calls_.answer = [&](const SystemCall& call) {
                if (--countdown != 0) {
                    return Answer();
                }
                name = call.name;
                return Answer{EIO, call.name == "close"}; // whatever it answers, the file is closed
            };
            const bool moved = move();
            calls_.answer = nullptr;
            failed = countdown <= 0;
            ExpectOnlyIn(moved ? to_ : from_);
            EXPECT_EQ(NamesIn(Path("archive")).size() + NamesIn(Path("pickup")).size(), 1)
                << "something was left behind by " << name.constData();
            EXPECT_TRUE(moved || failed);
        }
        EXPECT_GT(failing, 2) << "no call was made to fail";
    }

    bool Copies() {
        try {
            MoveByCopy(from_, to_, memory_);
            return true;
        } catch (const FileError&) {
            return false;
        }
    }

    QByteArray From() const { return Native(from_); }
    QByteArray To() const { return Native(to_); }

    const QString from_ = Path("archive/a.EML");
    const QString to_ = Path("pickup/a.EML");
    FolderMemory memory_;
    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
    bool failed_ = false;
};

} // namespace

TEST_F(MoveFaultTest, OfEachCallInTurnLeavesOneWholeMessage) {
    FailEachCall([this] { return RenameAtomically(From(), To()) == 0; });
    FailEachCall([this] { return RenameByLink(From(), To()) == 0; });
    FailEachCall([this] { return RenameChecked(From(), To(), std::nullopt) == 0; });
    for (const RenameMethod method : {RenameMethod::Atomic, RenameMethod::ByLink, RenameMethod::Checked}) {
        memory_.SetMethod(From(), method);
        memory_.SetMethod(To(), method);
        FailEachCall([this] { return RenameNoReplace(From(), To(), memory_) == 0; });
        FailEachCall([this] { return Copies(); });
    }
}

TEST_F(MoveFaultTest, OfEachCallInTurnLeavesTheOldOrTheNewFileWhole) {
    bool failed = true;
    for (int failing = 1; failed; ++failing) {
        SCOPED_TRACE(failing);
        Restore();
        int countdown = failing;
        calls_.answer = [&](const SystemCall& call) {
            return --countdown == 0 ? Answer{EIO, call.name == "close"} : Answer();
        };
        bool written = true;
        try {
            files_->WriteWhole(from_, "longer message");
        } catch (const FileError&) {
            written = false;
        }
        failed = countdown <= 0;
        calls_.answer = nullptr;
        EXPECT_TRUE(written || failed);
        const QByteArray bytes = ReadWhole(*files_, from_);
        EXPECT_TRUE(bytes == "longer message" || (bytes == "message" && !written)) << bytes.constData();
        EXPECT_EQ(NamesIn(Path("archive")), QStringList{Text("a.EML")});
    }
}

/// Somebody else has removed it, or the call was repeated after its answer was lost, or its answer was lost.
TEST_F(MoveFaultTest, ASourceThatIsGoneOnceItsContentsAreInPlaceHasMoved) {
    for (const int error : {ENOENT, EIO}) {
        FailFirst("unlink", error, true);
        EXPECT_EQ(RenameByLink(From(), To()), 0);
        EXPECT_TRUE(failed_);
        ExpectOnlyIn(to_);
        FailFirst("unlink", error, true);
        EXPECT_TRUE(Copies());
        EXPECT_TRUE(failed_);
        ExpectOnlyIn(to_);
    }
}

/// What is remembered of a share may be told where it is gone, so only opening the file counts.
TEST_F(MoveFaultTest, ASourceOfWhichNobodyCanTellKeepsTheCopy) {
    const auto answer = [](const SystemCall& call) {
        if (call.name == "unlink" && call.path.contains("/archive/")) {
            return Answer{EIO, true};
        }
        const bool asksAgain = (call.name == "open" || call.name == "openat") && call.path.contains("/archive/a") &&
                               !QFile::exists(QFile::decodeName(call.path));
        return asksAgain ? Answer{ETIMEDOUT} : Answer();
    };
    calls_.answer = answer;
    EXPECT_EQ(RenameByLink(From(), To()), EIO);
    ExpectOnlyIn(to_);
    Restore();
    calls_.answer = answer;
    EXPECT_FALSE(Copies());
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ALinkWhoseAnswerWasLostIsGoneOnWith) {
    FailFirst("link", EIO, true);
    EXPECT_EQ(RenameByLink(From(), To()), 0);
    EXPECT_TRUE(failed_);
    ExpectOnlyIn(to_);
}

/// The client of a share has repeated the call by itself.
TEST_F(MoveFaultTest, ALinkThatIsThereAlreadySinceItsAnswerWasLostIsGoneOnWith) {
    FailFirst("link", EEXIST, true);
    EXPECT_EQ(RenameByLink(From(), To()), 0);
    EXPECT_TRUE(failed_);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, AnotherFileInTheWayOfALinkStays) {
    files_->WriteWhole(to_, "somebody else's");
    EXPECT_EQ(RenameByLink(From(), To()), EEXIST);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "somebody else's");
}

/// Nothing is known of the source, which costs no call as long as all is well.
TEST_F(MoveFaultTest, AnAtomicRenameWhoseAnswerWasLostHasMoved) {
    for (const int error : {ENOENT, EIO, ETIMEDOUT, EEXIST}) {
        FailFirst("renameat2", error, true);
        EXPECT_EQ(RenameNoReplace(From(), To(), memory_), 0);
        EXPECT_TRUE(failed_);
        ExpectOnlyIn(to_);
    }
}

/// The share of the source is not mounted any more: the message is there as well, and that has to be told.
TEST_F(MoveFaultTest, ASourceWhoseFolderIsGoneWasNotRemoved) {
    const QByteArray aside = Native("aside");
    calls_.answer = [&](const SystemCall& call) {
        if (call.name == "unlink" && call.path == From()) {
            EXPECT_EQ(::rename(Native("archive").constData(), aside.constData()), 0);
        }
        return Answer();
    };
    EXPECT_FALSE(Copies());
    calls_.answer = nullptr;
    EXPECT_EQ(ReadWhole(*files_, Path("aside/a.EML")), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "message");
}

TEST_F(MoveFaultTest, ATemporaryFileThatCannotBeRemovedIsRemovedWithTheNextMove) {
    calls_.answer = [](const SystemCall& call) {
        const bool fails = call.name == "fsync" || (call.name == "unlink" && call.path.endsWith(".part"));
        return fails ? Answer{EIO} : Answer();
    };
    EXPECT_FALSE(Copies());
    calls_.answer = nullptr;
    const QStringList left = NamesIn(Path("pickup"));
    ASSERT_EQ(left.size(), 1);
    EXPECT_FALSE(left.front().endsWith(Text(".EML"), Qt::CaseInsensitive));
    EXPECT_TRUE(Copies());
    EXPECT_EQ(NamesIn(Path("pickup")), QStringList{Text("a.EML")});
}

TEST_F(MoveFaultTest, ATemporaryFileThatWasMadeAlthoughNobodySaidSoIsRemovedWithTheNextMove) {
    for (const int error : {EIO, EEXIST}) {
        Restore();
        int created = 0;
        calls_.answer = [&](const SystemCall& call) {
            const bool creates =
                call.name == "open" && call.path.endsWith(".part") && !QFile::exists(QFile::decodeName(call.path));
            created += creates ? 1 : 0;
            return creates ? Answer{error, true} : Answer();
        };
        EXPECT_FALSE(Copies()) << "and it does not try for ever";
        calls_.answer = nullptr;
        EXPECT_EQ(NamesIn(Path("pickup")).size(), created);
        EXPECT_GT(created, 0);
        EXPECT_TRUE(Copies());
        EXPECT_EQ(NamesIn(Path("pickup")), QStringList{Text("a.EML")});
    }
}

/// A program that was killed has left it there.
TEST_F(MoveFaultTest, AnOldTemporaryFileIsRemovedAndAFreshOneStays) {
    for (const char* name : {"pickup/.quellbox-1.part", "pickup/.quellbox-2.part", "pickup/other.part"}) {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("half");
        const int days = QByteArray(name).contains("-2") ? 0 : 2;
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addDays(-days), QFileDevice::FileModificationTime);
    }
    EXPECT_TRUE(Copies());
    EXPECT_EQ(NamesIn(Path("pickup")).join(QLatin1Char(' ')), Text(".quellbox-2.part a.EML other.part"));
}

/// Its two names may be one, by two paths.
TEST_F(MoveFaultTest, AnUnsureLinkWithinOneFolderRemovesNothing) {
    ASSERT_EQ(::link(From().constData(), Native("other").constData()), 0);
    ASSERT_EQ(::symlink("archive", Native("again").constData()), 0);
    calls_.answer = [](const SystemCall& call) { return call.name == "link" ? Answer{EIO} : Answer(); };
    EXPECT_EQ(RenameByLink(From(), Native("again/a.EML")), EIO);
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

TEST_F(MoveFaultTest, ARenameWhoseAnswerWasLostHasMoved) {
    for (const int error : {ENOENT, EIO}) { // a second try finds no source any more
        FailFirst("rename", error, true);
        EXPECT_EQ(RenameChecked(From(), To(), std::nullopt), 0);
        EXPECT_TRUE(failed_);
        ExpectOnlyIn(to_);
        FailFirst("renameat2", error, true);
        EXPECT_TRUE(Copies());
        EXPECT_TRUE(failed_);
        ExpectOnlyIn(to_);
        FailFirst("rename", error, true);
        EXPECT_NO_THROW(files_->WriteWhole(from_, "shorter"));
        EXPECT_TRUE(failed_);
        EXPECT_EQ(ReadWhole(*files_, from_), "shorter");
    }
}

/// A busy share may deny for a moment what it has.
TEST_F(MoveFaultTest, ARenameThatIsDeniedOnceIsDoneTheSecondTime) {
    FailFirst("renameat2", ENOENT, false);
    EXPECT_EQ(RenameAtomically(From(), To()), 0);
    EXPECT_TRUE(failed_);
    ExpectOnlyIn(to_);
    FailFirst("rename", ENOENT, false);
    EXPECT_EQ(RenameChecked(From(), To(), std::nullopt), 0);
    EXPECT_TRUE(failed_);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ACopyThatIsDeniedOnceIsMadeASecondTime) {
    bool isDenied = false;
    calls_.answer = [&isDenied](const SystemCall& call) {
        const bool isStatusOfCopy = call.name == "lstat" && call.path.endsWith(".part");
        return isStatusOfCopy && !std::exchange(isDenied, true) ? Answer{ENOENT} : Answer();
    };
    EXPECT_TRUE(Copies());
    EXPECT_TRUE(isDenied);
    ExpectOnlyIn(to_);
}

/// The second time it is looked again whether somebody else has taken the name.
TEST_F(MoveFaultTest, ARenameThatIsDeniedNeverReplacesWhatHasComeSince) {
    FailFirst("rename", ENOENT, false);
    calls_.after = [this](const SystemCall& call) {
        if (call.name == "rename") {
            files_->WriteWhole(to_, "somebody else's");
        }
    };
    EXPECT_EQ(RenameChecked(From(), To(), std::nullopt), EEXIST);
    EXPECT_EQ(ReadWhole(*files_, to_), "somebody else's");
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

TEST_F(MoveFaultTest, AFailedRenameIsNoMoveWhereTheTargetIsAnotherFile) {
    struct stat before {};
    ASSERT_EQ(::lstat(From().constData(), &before), 0);
    FailFirst("rename", EIO, false);
    calls_.after = [this](const SystemCall& call) {
        if (call.name == "rename") {
            files_->Remove(from_);
            files_->WriteWhole(to_, "somebody else's");
        }
    };
    EXPECT_EQ(RenameChecked(From(), To(), before), EIO);
    EXPECT_EQ(ReadWhole(*files_, to_), "somebody else's");
}

TEST_F(MoveFaultTest, ACopyInWhosePlaceAnotherFileIsByNowIsNotRemoved) {
    FailFirst("unlink", EACCES, false);
    calls_.after = [this](const SystemCall& call) {
        if (call.name == "unlink" && call.path == From()) {
            files_->WriteWhole(to_, "somebody else's");
        }
    };
    EXPECT_FALSE(Copies());
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
    EXPECT_EQ(ReadWhole(*files_, to_), "somebody else's");
}

TEST_F(MoveFaultTest, ASourceThatWasNeverThereLeavesNothing) {
    files_->Remove(from_);
    EXPECT_EQ(RenameChecked(From(), To(), std::nullopt), ENOENT);
    EXPECT_FALSE(files_->FileExists(to_));
}

} // namespace quellbox

#endif
