#ifndef _WIN32

#include "platform/PosixRename.h"

#include "platform/PosixFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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

/// Whether link() has failed with `error` although the link was made, and only the server's reply was lost. Within one
/// folder that cannot be known for sure: `from` and `to` may be two spellings of the same name.
bool IsLinked(const QByteArray& from, const QByteArray& to, int error) {
    if (error == EEXIST || error == EXDEV || LacksLinks(error)) {
        return false;
    }
    struct stat source {};
    struct stat target {};
    if (::lstat(from.constData(), &source) != 0 || ::lstat(to.constData(), &target) != 0 ||
        !IsSameFile(source, target) || source.st_nlink < 2) {
        return false;
    }
    struct stat sourceFolder {};
    struct stat targetFolder {};
    return ::stat(FolderOf(from).constData(), &sourceFolder) == 0 &&
           ::stat(FolderOf(to).constData(), &targetFolder) == 0 && !IsSameFile(sourceFolder, targetFolder);
}

/// Opens a file to find out whether it exists: lstat() may report what this computer has cached of a share. Returns 0
/// or an errno value.
int TryToOpen(const QByteArray& path) {
    const Descriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
    return file.IsOpen() ? 0 : errno;
}

} // namespace

bool HasArrived(const QByteArray& from, const QByteArray& to, const struct stat& before) {
    struct stat present {};
    if (::lstat(from.constData(), &present) == 0 || errno != ENOENT) {
        return false;
    }
    return ::lstat(to.constData(), &present) == 0 && S_ISREG(present.st_mode) && IsUnchanged(before, present);
}

int RemoveSource(const QByteArray& from) {
    if (::unlink(from.constData()) == 0) {
        return 0;
    }
    // It may be gone all the same: another program has removed it, or only the reply of the server was lost.
    const int error = errno;
    return error == ENOENT || TryToOpen(from) == ENOENT ? 0 : error;
}

bool IsPresent(const QByteArray& path) {
    const int error = TryToOpen(path);
    // These errors are only reported for a file that exists; a link gives ELOOP.
    return error == 0 || error == EACCES || error == EPERM || error == EBUSY || error == ELOOP;
}

int RenameAtomically([[maybe_unused]] const QByteArray& from, [[maybe_unused]] const QByteArray& to) {
#ifdef RENAME_NOREPLACE
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0 ? 0 : errno;
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
    const int error = RemoveSource(from);
    // A message in both folders would be delivered and still be listed as blocked; a message in none is lost.
    if (error != 0 && IsPresent(from)) {
        ::unlink(to.constData());
    }
    return error;
}

int RenameChecked(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before) {
    struct stat source {};
    if (before) {
        source = *before;
    } else if (::lstat(from.constData(), &source) != 0) {
        return errno;
    }
    struct stat present {};
    if (::lstat(to.constData(), &present) == 0) {
        return EEXIST;
    }
    if (errno != ENOENT) {
        return errno;
    }
    if (::rename(from.constData(), to.constData()) == 0) {
        return 0;
    }
    const int error = errno;
    return HasArrived(from, to, source) ? 0 : error;
}

int RenameNoReplace(const QByteArray& from, const QByteArray& to, FolderMemory& memory,
                    const std::optional<struct stat>& before) {
    const RenameMethod known = memory.MethodFor(from);
    RenameMethod method = known;
    int error = 0;
    if (method == RenameMethod::Atomic) {
        error = RenameAtomically(from, to);
        if (!LacksAtomicRename(error)) {
            return error != 0 && before && HasArrived(from, to, *before) ? 0 : error;
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
