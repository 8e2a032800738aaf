#ifndef _WIN32

#include "platform/PosixRename.h"

#include "platform/PosixFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace quellbox {

namespace {

/// The file system or the kernel does not support the call at all.
bool IsUnknownCall(int error) {
    return error == ENOSYS || error == EOPNOTSUPP;
}

/// Many file systems report the flag as an invalid argument.
bool LacksAtomicRename(int error) {
    return error == EINVAL || IsUnknownCall(error);
}

/// A file system without hard links forbids them, or limits their number to one.
bool LacksLinks(int error) {
    return error == EPERM || error == EMLINK || IsUnknownCall(error);
}

bool IsSameFile(const struct stat& left, const struct stat& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

/// Whether a folder lists a name, which the server is asked for.
bool IsListed(const QByteArray& path) {
    const QByteArray folder = FolderOf(path);
    const FolderStream stream(::opendir(folder.isEmpty() ? "." : folder.constData()));
    while (const dirent* entry = stream ? ::readdir(stream.get()) : nullptr) {
        if (path.mid(folder.size()) == entry->d_name) {
            return true;
        }
    }
    return false;
}

/// lstat() for a name that may be new: this computer may remember of a share that there was none. The answer is true
/// for what exists.
bool GetNewStatus(const QByteArray& path, struct stat& status) {
    if (::lstat(path.constData(), &status) == 0) {
        return true;
    }
    return errno == ENOENT && IsListed(path) && ::lstat(path.constData(), &status) == 0;
}

/// Whether link() has failed with `error` although the link was made, and only the server's reply was lost. Within one
/// folder that cannot be known for sure: `from` and `to` may be two spellings of the same name.
bool IsLinked(const QByteArray& from, const QByteArray& to, int error) {
    if (error == EXDEV || LacksLinks(error)) {
        return false;
    }
    struct stat source {};
    struct stat target {};
    if (::lstat(from.constData(), &source) != 0 || !GetNewStatus(to, target) || !IsSameFile(source, target) ||
        std::max(source.st_nlink, target.st_nlink) < 2) {
        return false;
    }
    struct stat sourceFolder {};
    struct stat targetFolder {};
    return ::stat(FolderOf(from).constData(), &sourceFolder) == 0 &&
           ::stat(FolderOf(to).constData(), &targetFolder) == 0 && !IsSameFile(sourceFolder, targetFolder);
}

} // namespace

bool HasArrived(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before) {
    struct stat present {};
    return IsGone(from) && GetNewStatus(to, present) && S_ISREG(present.st_mode) &&
           (!before || IsUnchanged(*before, present));
}

bool IsPresent(const QByteArray& path) {
    const int error = TryToOpen(path);
    // These errors are only reported for a file that exists; a link gives ELOOP.
    return error == 0 || error == EACCES || error == EPERM || error == EBUSY || error == ELOOP;
}

namespace {

/// Calls `rename`, which returns an error or 0, and once more when a share denies that there is the file or its new
/// folder: the desktop's mount has been seen to do so, on a computer that was very busy. What was done all the same
/// cannot be done twice.
template <class Rename>
int RenameThoughDenied(const QByteArray& from, const QByteArray& to, Rename rename) {
    constexpr auto pause = std::chrono::milliseconds(20);
    const int error = rename();
    struct stat present {};
    if (error != ENOENT || ::lstat(from.constData(), &present) != 0 || !IsPresent(FolderOf(to))) {
        return error;
    }
    std::this_thread::sleep_for(pause);
    return rename();
}

/// Asks whether there is such a file before it renames, and renames over one that comes in between.
int RenameIfFree(const QByteArray& from, const QByteArray& to) {
    struct stat present {};
    if (::lstat(to.constData(), &present) == 0) {
        return EEXIST;
    }
    if (errno != ENOENT) {
        return errno;
    }
    return ErrorUnlessInUse([&] { return ::rename(from.constData(), to.constData()); });
}

} // namespace

int RenameAtomically([[maybe_unused]] const QByteArray& from, [[maybe_unused]] const QByteArray& to) {
#ifdef RENAME_NOREPLACE
    return RenameThoughDenied(from, to, [&] {
        return ErrorUnlessInUse(
            [&] { return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE); });
    });
#else
    return ENOSYS;
#endif
}

int RenameByLink(const QByteArray& from, const QByteArray& to) {
    if (::link(from.constData(), to.constData()) != 0) {
        const int error = errno;
        if (!IsLinked(from, to, error)) {
            return error;
        }
    }
    const int error = RemoveForGood(from);
    // A message in both folders would be delivered and still be listed as blocked; a message in none is lost.
    if (error != 0 && IsPresent(from)) {
        ::unlink(to.constData());
    }
    return error;
}

int RenameChecked(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before) {
    const int error = RenameThoughDenied(from, to, [&] { return RenameIfFree(from, to); });
    return error == 0 || HasArrived(from, to, before) ? 0 : error;
}

int RenameNoReplace(const QByteArray& from, const QByteArray& to, FolderMemory& memory,
                    const std::optional<struct stat>& before) {
    const RenameMethod known = memory.MethodFor(from);
    RenameMethod method = known;
    int error = 0;
    if (method == RenameMethod::Atomic) {
        error = RenameAtomically(from, to);
        if (!LacksAtomicRename(error)) {
            return error != 0 && error != EXDEV && HasArrived(from, to, before) ? 0 : error;
        }
        method = RenameMethod::ByLink;
    }
    if (method == RenameMethod::ByLink) {
        error = RenameByLink(from, to);
        method = LacksLinks(error) ? RenameMethod::Checked : method;
    }
    if (method == RenameMethod::Checked) {
        error = RenameChecked(from, to, before);
    }
    // Where every method fails, the reason may be the name and not the folder.
    if (error == 0 && method != known) {
        memory.SetMethod(from, method);
    }
    return error;
}

} // namespace quellbox

#endif
