#include "tests/platform/SystemCalls.h"

#include "tests/support/RealFiles.h"

#ifndef _WIN32

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

SystemCalls* current = nullptr;

/// A test's own calls are not watched.
class Pause {
public:
    Pause() { current = nullptr; }
    ~Pause() { current = before_; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

private:
    SystemCalls* before_ = current;
};

template <typename Function>
Function* Real(const char* name, Function*) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Pass(const SystemCall& call, const std::function<int()>& real) {
    SystemCalls* const calls = SystemCalls::Current();
    const bool isWatched = calls != nullptr && (calls->Concerns(call.path) || calls->Concerns(call.target));
    return isWatched ? calls->Make(call, real) : real();
}

QByteArray PathOf(int number) {
    return current != nullptr ? current->PathOf(number) : QByteArray();
}

} // namespace

SystemCalls::SystemCalls(QByteArray folder) : folder_(std::move(folder)) {
    current = this;
}

SystemCalls::~SystemCalls() {
    current = nullptr;
}

SystemCalls* SystemCalls::Current() {
    return current;
}

int SystemCalls::TakeCount() {
    return std::exchange(count_, 0);
}

bool SystemCalls::IsOpen(const QByteArray& path) const {
    return std::any_of(open_.begin(), open_.end(),
                       [&path](const auto& file) { return file.second.path == path && !file.second.isFolder; });
}

QByteArray SystemCalls::PathOf(int number) const {
    const auto file = open_.find(number);
    return file != open_.end() ? file->second.path : QByteArray();
}

void SystemCalls::SetOpened(int number, const QByteArray& path, bool isFolder) {
    if (Concerns(path)) {
        open_[number] = {path, isFolder};
    }
}

void SystemCalls::SetClosed(int number) {
    open_.erase(number);
}

void SystemCalls::SetRenamed(const QByteArray& from, const QByteArray& to) {
    for (auto& [number, file] : open_) {
        if (file.path == from) {
            file.path = to;
        }
    }
}

int SystemCalls::Make(const SystemCall& call, const std::function<int()>& real) {
    ++count_;
    Answer said;
    if (answer) {
        const Pause pause;
        said = answer(call);
    }
    int result = -1;
    int error = said.error;
    if (error == 0 || said.takesEffect) {
        result = real();
        error = error != 0 ? error : errno;
    }
    if (after) {
        const Pause pause;
        after(call);
    }
    errno = error;
    return said.error != 0 ? -1 : result;
}

} // namespace quellbox

// These stand before the system's own in this program.
extern "C" {

int open(const char* path, int flags, ...) {
    static const auto real = quellbox::Real("open", static_cast<int (*)(const char*, int, ...)>(nullptr));
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return quellbox::Pass({"open", path, {}}, [&] {
        const int number = real(path, flags, mode);
        if (number >= 0 && quellbox::current != nullptr) {
            quellbox::current->SetOpened(number, path, (flags & O_DIRECTORY) != 0);
        }
        return number;
    });
}

int openat(int folder, const char* path, int flags, ...) {
    static const auto real = quellbox::Real("openat", static_cast<int (*)(int, const char*, int, ...)>(nullptr));
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const QByteArray whole = quellbox::PathOf(folder) + path;
    return quellbox::Pass({"openat", whole, {}}, [&] {
        const int number = real(folder, path, flags, mode);
        if (number >= 0 && quellbox::current != nullptr) {
            quellbox::current->SetOpened(number, whole, (flags & O_DIRECTORY) != 0);
        }
        return number;
    });
}

int close(int number) {
    static const auto real = quellbox::Real("close", static_cast<int (*)(int)>(nullptr));
    // Also called between vfork() and exec(), by a child that borrows its parent's memory and has hardly any stack.
    if (quellbox::current == nullptr) {
        return real(number);
    }
    return quellbox::Pass({"close", quellbox::PathOf(number), {}}, [number] {
        if (quellbox::current != nullptr) {
            quellbox::current->SetClosed(number);
        }
        return real(number);
    });
}

// QProcess closes files in a child that shares the memory of its parent, where it is too late to look up a function.
[[maybe_unused]] static const int lookedUpEarly = close(-1);

int fsync(int number) {
    static const auto real = quellbox::Real("fsync", static_cast<int (*)(int)>(nullptr));
    return quellbox::Pass({"fsync", quellbox::PathOf(number), {}}, [number] { return real(number); });
}

int fstat(int number, struct stat* status) noexcept {
    static const auto real = quellbox::Real("fstat", static_cast<int (*)(int, struct stat*)>(nullptr));
    return quellbox::Pass({"fstat", quellbox::PathOf(number), {}}, [&] { return real(number, status); });
}

int stat(const char* path, struct stat* status) noexcept {
    static const auto real = quellbox::Real("stat", static_cast<int (*)(const char*, struct stat*)>(nullptr));
    return quellbox::Pass({"stat", path, {}}, [&] { return real(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    static const auto real = quellbox::Real("lstat", static_cast<int (*)(const char*, struct stat*)>(nullptr));
    return quellbox::Pass({"lstat", path, {}}, [&] { return real(path, status); });
}

int unlink(const char* path) noexcept {
    static const auto real = quellbox::Real("unlink", static_cast<int (*)(const char*)>(nullptr));
    return quellbox::Pass({"unlink", path, {}}, [path] { return real(path); });
}

int link(const char* from, const char* to) noexcept {
    static const auto real = quellbox::Real("link", static_cast<int (*)(const char*, const char*)>(nullptr));
    return quellbox::Pass({"link", from, to}, [&] { return real(from, to); });
}

int rename(const char* from, const char* to) noexcept {
    static const auto real = quellbox::Real("rename", static_cast<int (*)(const char*, const char*)>(nullptr));
    return quellbox::Pass({"rename", from, to}, [&] {
        const int result = real(from, to);
        if (result == 0 && quellbox::current != nullptr) {
            quellbox::current->SetRenamed(from, to);
        }
        return result;
    });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) noexcept {
    static const auto real =
        quellbox::Real("renameat2", static_cast<int (*)(int, const char*, int, const char*, unsigned int)>(nullptr));
    return quellbox::Pass({"renameat2", from, to}, [&] {
        const int result = real(fromFolder, from, toFolder, to, flags);
        if (result == 0 && quellbox::current != nullptr) {
            quellbox::current->SetRenamed(from, to);
        }
        return result;
    });
}
}

namespace quellbox {

namespace {

class SystemCallsTest : public RealFilesTest {
protected:
    SystemCalls calls_{QFile::encodeName(folder_.path()) + '/'};
};

TEST_F(SystemCallsTest, AreCountedInTheFolderOnly) {
    const QTemporaryDir other;
    files_->WriteWhole(other.path() + Text("/a"), "x");
    EXPECT_EQ(calls_.TakeCount(), 0);
    files_->FileExists(Path("a"));
    EXPECT_EQ(calls_.TakeCount(), 1);
    EXPECT_EQ(calls_.TakeCount(), 0);
}

TEST_F(SystemCallsTest, TellWhichFilesAreOpen) {
    files_->WriteWhole(Path("a"), "x");
    EXPECT_FALSE(calls_.IsOpen(Native("a")));
    const std::unique_ptr<InputFile> file = files_->Open(Path("a"));
    EXPECT_TRUE(calls_.IsOpen(Native("a")));
    ASSERT_EQ(::rename(Native("a").constData(), Native("b").constData()), 0);
    EXPECT_FALSE(calls_.IsOpen(Native("a")));
    EXPECT_TRUE(calls_.IsOpen(Native("b")));
}

TEST_F(SystemCallsTest, FailWithOrWithoutEffect) {
    files_->WriteWhole(Path("a"), "x");
    for (const bool takesEffect : {false, true}) {
        calls_.answer = [takesEffect](const SystemCall& call) {
            return call.name == "unlink" ? Answer{EIO, takesEffect} : Answer();
        };
        errno = 0;
        EXPECT_EQ(::unlink(Native("a").constData()), -1);
        EXPECT_EQ(errno, EIO);
        EXPECT_EQ(files_->FileExists(Path("a")), !takesEffect);
    }
}

} // namespace

} // namespace quellbox

#endif
