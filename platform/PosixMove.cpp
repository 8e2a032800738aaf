#ifndef _WIN32

#include "platform/PosixMove.h"

#include "platform/PosixFile.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace quellbox {

namespace {

void CopyContents(const Descriptor& source, const QString& from, const TemporaryFile& copy, const QString& to) {
    std::array<char, 128 * 1024> buffer;
    while (const qint64 count = ReadSome(source.Number(), buffer.data(), buffer.size(), from)) {
        WriteAll(copy.Number(), buffer.data(), count, to);
    }
}

/// A share may refuse owner, permissions or time; the message itself is what must not be lost.
void CopyAttributes(const struct stat& status, const TemporaryFile& copy) {
    [[maybe_unused]] const int owner = ::fchown(copy.Number(), status.st_uid, status.st_gid);
    [[maybe_unused]] const int mode = ::fchmod(copy.Number(), status.st_mode & 0777U);
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    [[maybe_unused]] const int time = ::futimens(copy.Number(), times.data());
}

void RefuseChangedSource(const Descriptor& source, const struct stat& before, const QString& from) {
    struct stat after {};
    if (::fstat(source.Number(), &after) != 0) {
        ThrowFileError(from, errno);
    }
    if (after.st_size != before.st_size || ModifiedNs(after) != ModifiedNs(before)) {
        throw FileError(from,
                        QCoreApplication::translate("quellbox", "The file was changed while it was being moved."));
    }
}

// After a failed removal of the source: only while the source is still there may its new name go again.
bool SourceRemains(const QByteArray& from) {
    struct stat status {};
    return ::lstat(from.constData(), &status) == 0;
}

} // namespace

int RenameByLink(const QByteArray& from, const QByteArray& to) {
    if (::link(from.constData(), to.constData()) != 0) {
        return errno;
    }
    if (::unlink(from.constData()) == 0) {
        return 0;
    }
    const int error = errno;
    // A source that is gone already, as after a lost answer of a share, leaves the new name as the only one.
    if (error == ENOENT) {
        return 0;
    }
    if (SourceRemains(from)) {
        ::unlink(to.constData());
    }
    return error;
}

int RenameByReservation(const QByteArray& from, const QByteArray& to) {
    struct stat reserved {};
    {
        const Descriptor reservation(::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!reservation.IsOpen()) {
            return errno;
        }
        if (::fstat(reservation.Number(), &reserved) != 0) {
            return errno;
        }
    } // Some shares refuse to replace a file that is open.
    if (::rename(from.constData(), to.constData()) == 0) {
        return 0;
    }
    const int error = errno;
    // A share may have renamed the file although its answer was lost: only the empty reservation may go.
    struct stat present {};
    if (::lstat(to.constData(), &present) != 0) {
        return error;
    }
    if (reserved.st_dev != present.st_dev || reserved.st_ino != present.st_ino || present.st_size != 0) {
        return error == ENOENT ? 0 : error;
    }
    ::unlink(to.constData());
    return error;
}

int RenameNoReplace(const QByteArray& from, const QByteArray& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
#endif
    const int error = RenameByLink(from, to);
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS ? RenameByReservation(from, to) : error;
}

void MoveByCopy(const QString& from, const QString& to) {
    struct stat status {};
    const Descriptor source(OpenRegular(from, status));
    TemporaryFile copy(to, 0600);
    CopyContents(source, from, copy, to);
    RefuseChangedSource(source, status, from);
    CopyAttributes(status, copy);
    copy.Flush();
    const QByteArray target = SystemPath(to);
    if (const int error = RenameNoReplace(copy.Path(), target); error != 0) {
        ThrowFileError(to, error);
    }
    copy.Keep();
    const QByteArray origin = SystemPath(from);
    try {
        FlushFolderOf(to);
        if (::unlink(origin.constData()) != 0 && errno != ENOENT) {
            ThrowFileError(from, errno);
        }
    } catch (...) {
        // A message in both folders would be delivered and still be listed as blocked.
        if (SourceRemains(origin)) {
            ::unlink(target.constData());
        }
        throw;
    }
}

} // namespace quellbox

#endif
