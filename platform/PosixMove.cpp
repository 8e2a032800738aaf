#ifndef _WIN32

#include "platform/PosixMove.h"

#include "platform/MountTable.h"
#include "platform/PosixFile.h"
#include "platform/PosixRename.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace quellbox {

namespace {

void CopyContents(const Descriptor& source, const QString& from, const TemporaryFile& copy, const QString& to) {
    std::array<char, 128 * 1024> buffer;
    while (const qint64 count = ReadSome(source.Number(), buffer.data(), buffer.size(), from)) {
        WriteAll(copy.Number(), buffer.data(), count, to);
    }
}

/// A share may refuse owner, permissions or time; the message itself is what must not be lost. Where the server sets
/// the first two itself, trying costs several of its calls.
void CopyAttributes(const struct stat& status, const TemporaryFile& copy, bool withPermissions) {
    if (withPermissions) {
        [[maybe_unused]] const int owner = ::fchown(copy.Number(), status.st_uid, status.st_gid);
        [[maybe_unused]] const int mode = ::fchmod(copy.Number(), status.st_mode & 0777U);
    }
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    [[maybe_unused]] const int time = ::futimens(copy.Number(), times.data());
}

void RefuseChanged(const struct stat& before, const struct stat& after, const QString& from) {
    if (!IsUnchanged(before, after)) {
        throw FileError(from,
                        QCoreApplication::translate("quellbox", "The file was changed while it was being moved."));
    }
}

/// Copies the file at `from` (links followed) to a new file beside `to`. Both are closed afterwards. Throws FileError.
void TryToMakeCopy(std::optional<TemporaryFile>& copy, const QString& from, const QString& to, bool withPermissions,
                   Leftovers& leftovers) {
    struct stat before {};
    const Descriptor source(OpenRegular(from, before));
    copy.emplace(to, 0600, leftovers);
    CopyContents(source, from, *copy, to);
    struct stat after {};
    if (::fstat(source.Number(), &after) != 0) {
        ThrowFileError(from, errno);
    }
    RefuseChanged(before, after, from);
    CopyAttributes(before, *copy, withPermissions);
    copy->Close();
}

/// The status of a file by `call`, which is lstat() or stat(). Throws FileError for `path`.
struct stat StatusOf(const QByteArray& bytes, int (*call)(const char*, struct stat*), const QString& path) {
    struct stat status {};
    if (call(bytes.constData(), &status) != 0) {
        ThrowFileError(path, errno);
    }
    return status;
}

/// The copy and its status by name. The desktop's mount of a share has been seen to deny, on a computer that was very
/// busy, that there is a file which it had just made; another copy is made then. Throws FileError.
struct stat MakeCopy(std::optional<TemporaryFile>& copy, const QString& from, const QString& to, bool withPermissions,
                     Leftovers& leftovers) {
    for (bool isFirst = true;; isFirst = false) {
        try {
            TryToMakeCopy(copy, from, to, withPermissions, leftovers);
            return StatusOf(copy->Path(), &::lstat, to);
        } catch (const FileError& error) {
            const bool isDenied = error.Problem() == FileProblem::Missing && error.Path() == to;
            if (!isFirst || !isDenied || !IsPresent(FolderOf(SystemPath(to)))) {
                throw;
            }
        }
    }
}

/// Removes the source, unless it was written to since `before`. Throws FileError.
void RemoveUnchanged(const QByteArray& source, const struct stat& before, const QString& from) {
    struct stat present {};
    if (::stat(source.constData(), &present) == 0) {
        RefuseChanged(before, present, from);
    } else if (errno != ENOENT) {
        ThrowFileError(from, errno);
    }
    if (const int error = RemoveForGood(source, before.st_dev); error != 0) {
        ThrowFileError(from, error);
    }
}

/// The device of a file, as the mount table writes it.
QString DeviceOf(const struct stat& status) {
    return QStringLiteral("%1:%2").arg(major(status.st_dev)).arg(minor(status.st_dev));
}

/// Removes the copy from its place, unless something else is there by now.
void Withdraw(const QByteArray& target, const struct stat& copied) {
    struct stat present {};
    if (::lstat(target.constData(), &present) == 0 && IsUnchanged(copied, present)) {
        ::unlink(target.constData());
    }
}

/// Whether the error of renaming an existing file is about the new name or its folder.
bool ConcernsTarget(int error) {
    return error == EEXIST || error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ENOSPC ||
           error == EDQUOT;
}

} // namespace

void MoveByCopy(const QString& from, const QString& to, FolderMemory& memory) {
    const QByteArray source = SystemPath(from);
    const QByteArray target = SystemPath(to);
    // By name, as it is compared later: for an open file a share may report other values.
    const struct stat before = StatusOf(source, &::stat, from);
    std::optional<TemporaryFile> copy;
    const struct stat copied = MakeCopy(copy, from, to, !memory.IsOnUsersShare(target), memory.Left());
    const bool isOnUsersShare = IsUsersShare(ParseMountTable(MountTableText()), DeviceOf(copied));
    memory.SetOnUsersShare(target, isOnUsersShare);
    if (const int error = RenameNoReplace(copy->Path(), target, memory, copied); error != 0) {
        ThrowFileError(to, error);
    }
    copy->Keep();
    try {
        if (!isOnUsersShare) {
            FlushFolderOf(to);
        }
        RemoveUnchanged(source, before, from);
    } catch (...) {
        // A message in both folders would be delivered and still be listed as blocked; a message in none is lost.
        if (IsPresent(source)) {
            Withdraw(target, copied);
        }
        throw;
    }
}

void MoveFile(const QString& from, const QString& to, FolderMemory& memory, std::optional<struct stat> before) {
    const QByteArray source = SystemPath(from);
    const QByteArray target = SystemPath(to);
    if (!before && !memory.IsRegularFile(source)) {
        before = StatusOf(source, &::lstat, from);
    }
    if (before) {
        // A relative link would point to another file, or to none, from its new folder.
        if (S_ISLNK(before->st_mode)) {
            return MoveByCopy(from, to, memory);
        }
        if (!S_ISREG(before->st_mode)) {
            ThrowFileError(from, S_ISDIR(before->st_mode) ? EISDIR : EINVAL);
        }
    }
    if (memory.MustBeCopied(source, target)) {
        return MoveByCopy(from, to, memory);
    }
    const int error = RenameNoReplace(source, target, memory, before);
    if (error == EXDEV) {
        memory.SetMustBeCopied(source, target, true);
        return MoveByCopy(from, to, memory);
    }
    if (error != 0) {
        // The source may be what is missing.
        if (error == ENOENT || error == ENOTDIR) {
            StatusOf(source, &::lstat, from);
        }
        ThrowFileError(ConcernsTarget(error) ? to : from, error);
    }
}

} // namespace quellbox

#endif
