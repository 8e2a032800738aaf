#include "platform/PosixMove.h"
#include "platform/RuntimeError.h"
#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <QDir>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <unistd.h>

namespace {

/// The call of the system that fails.
struct Fault {
    const char* call = ""; ///< its name; empty for any of those below
    int countdown = 0;     ///< the n-th such call from now; 0 for none
    int error = 0;
    bool takesEffect = false; ///< it did what it should, and only its answer was lost
};

Fault fault;

template <typename... Arguments>
auto Real(const char* name, int (*)(Arguments...)) {
    return reinterpret_cast<int (*)(Arguments...)>(dlsym(RTLD_NEXT, name));
}

/// Makes a call of the system, unless it is the one that fails.
template <typename Call>
auto Pass(const char* name, Call call) -> decltype(call()) {
    if (fault.countdown > 0 && (*fault.call == '\0' || std::strcmp(fault.call, name) == 0)) {
        if (--fault.countdown == 0) {
            if (fault.takesEffect) {
                call();
            }
            errno = fault.error;
            return -1;
        }
    }
    return call();
}

} // namespace

// These stand before the system's own in this program.
extern "C" {

int link(const char* from, const char* to) noexcept {
    static const auto real = Real("link", static_cast<int (*)(const char*, const char*)>(nullptr));
    return Pass("link", [&] { return real(from, to); });
}

int unlink(const char* path) noexcept {
    static const auto real = Real("unlink", static_cast<int (*)(const char*)>(nullptr));
    return Pass("unlink", [&] { return real(path); });
}

int rename(const char* from, const char* to) noexcept {
    static const auto real = Real("rename", static_cast<int (*)(const char*, const char*)>(nullptr));
    return Pass("rename", [&] { return real(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) noexcept {
    static const auto real =
        Real("renameat2", static_cast<int (*)(int, const char*, int, const char*, unsigned int)>(nullptr));
    return Pass("renameat2", [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int fsync(int file) {
    static const auto real = Real("fsync", static_cast<int (*)(int)>(nullptr));
    return Pass("fsync", [&] { return real(file); });
}
}

namespace quellbox {

namespace {

class MoveFaultTest : public RealFilesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("pickup")));
        files_->WriteWhole(from_, "message");
    }

    void TearDown() override { fault = {}; }

    /// Brings the message back into the archive alone.
    void Restore() {
        fault = {};
        for (const QString& folder : {Text("/archive/"), Text("/pickup/")}) {
            for (const QString& name : FileNames(*files_, folder_.path() + folder)) {
                files_->Remove(folder_.path() + folder + name);
            }
        }
        files_->WriteWhole(from_, "message");
    }

    void ExpectOnlyIn(const QString& path) const {
        EXPECT_EQ(files_->FileExists(from_), path == from_);
        EXPECT_EQ(files_->FileExists(to_), path == to_);
        EXPECT_EQ(ReadWhole(*files_, path), "message");
    }

    /// Lets each call of the system that `move` makes fail in turn. `move` answers whether it says that it has moved.
    void FailEachCall(const std::function<bool()>& move) {
        int call = 1;
        for (;; ++call) {
            SCOPED_TRACE(call);
            Restore();
            fault = {"", call, EIO, false};
            const bool moved = move();
            const bool failed = fault.countdown == 0;
            fault = {};
            ExpectOnlyIn(moved ? to_ : from_);
            EXPECT_EQ(
                NamesIn(folder_.path() + Text("/archive")).size() + NamesIn(folder_.path() + Text("/pickup")).size(), 1)
                << "something was left behind";
            if (!failed) {
                EXPECT_TRUE(moved);
                break;
            }
        }
        EXPECT_GT(call, 1) << "no call was made to fail";
    }

    QByteArray From() const { return Native(from_); }
    QByteArray To() const { return Native(to_); }

    const QString from_ = folder_.path() + Text("/archive/a.EML");
    const QString to_ = folder_.path() + Text("/pickup/a.EML");
};

} // namespace

TEST_F(MoveFaultTest, OfEachCallInTurnLeavesOneWholeMessage) {
    for (const auto way : {&RenameNoReplace, &RenameByLink, &RenameByReservation}) {
        FailEachCall([&] { return way(From(), To()) == 0; });
    }
    const auto copy = [&] {
        try {
            MoveByCopy(from_, to_);
            return true;
        } catch (const FileError&) {
            return false;
        }
    };
    FailEachCall(copy);
}

TEST_F(MoveFaultTest, ASourceThatIsGoneOnceItIsLinkedHasMoved) {
    fault = {"unlink", 1, ENOENT, true};
    EXPECT_EQ(RenameByLink(From(), To()), 0);
    EXPECT_EQ(fault.countdown, 0);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ASourceThatIsGoneOnceItIsCopiedHasMoved) {
    fault = {"unlink", 1, ENOENT, true};
    EXPECT_NO_THROW(MoveByCopy(from_, to_));
    EXPECT_EQ(fault.countdown, 0);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ASourceThatIsGoneThoughItsRemovalFailedKeepsTheCopy) {
    fault = {"unlink", 1, EIO, true};
    EXPECT_THROW(MoveByCopy(from_, to_), FileError);
    ExpectOnlyIn(to_);
    Restore();
    fault = {"unlink", 1, EIO, true};
    EXPECT_EQ(RenameByLink(From(), To()), EIO);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ARenameWhoseAnswerWasLostKeepsTheMessage) {
    fault = {"rename", 1, ENOENT, true};
    EXPECT_EQ(RenameByReservation(From(), To()), 0) << "a second try finds no source any more";
    ExpectOnlyIn(to_);
    Restore();
    fault = {"rename", 1, EIO, true};
    EXPECT_EQ(RenameByReservation(From(), To()), EIO);
    ExpectOnlyIn(to_);
}

TEST_F(MoveFaultTest, ASourceThatWasNeverThereLeavesNoReservation) {
    files_->Remove(from_);
    EXPECT_EQ(RenameByReservation(From(), To()), ENOENT);
    EXPECT_FALSE(files_->FileExists(to_));
}

} // namespace quellbox

#endif
