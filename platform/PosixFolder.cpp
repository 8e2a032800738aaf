#ifndef _WIN32

#include "platform/PosixFolder.h"

#include "platform/PosixFile.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

/// The path of a folder itself: with a separator at its end, the system would go on to where a link leads.
QByteArray PathOfItself(const QString& folder) {
    QByteArray path = SystemPath(folder);
    while (path.size() > 1 && path.endsWith('/')) {
        path.chop(1);
    }
    return path;
}

bool IsRealFolder(const QByteArray& path) {
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Gives a new folder the group and the permissions of the one that it is in. Where the group cannot be given, it gets
/// no permissions either: they would be those of another group. A share may refuse all that.
void TakePermissions(const QByteArray& path, const struct stat& above) {
    const Descriptor folder(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat fresh {};
    if (!folder.IsOpen() || ::fstat(folder.Number(), &fresh) != 0) {
        return;
    }
    constexpr mode_t permissions = 07777;
    constexpr mode_t ofGroup = S_IRWXG | S_ISGID;
    mode_t mode = (above.st_mode & permissions) | S_IRWXU;
    if (fresh.st_gid != above.st_gid && ::fchown(folder.Number(), static_cast<uid_t>(-1), above.st_gid) != 0) {
        mode &= ~ofGroup;
    }
    if ((fresh.st_mode & permissions) != mode) {
        [[maybe_unused]] const int failed = ::fchmod(folder.Number(), mode);
    }
}

} // namespace

bool IsRealFolder(const QString& folder) {
    return IsRealFolder(PathOfItself(folder));
}

bool MakeFolder(const QString& folder) {
    const QByteArray path = PathOfItself(folder);
    // Until the permissions are known nobody else shall look into it.
    if (::mkdir(path.constData(), S_IRWXU) != 0) {
        const int error = errno;
        if (IsRealFolder(path)) {
            return false; // also where only the server's reply was lost
        }
        if (error == EEXIST) {
            throw FileError(folder,
                            QCoreApplication::translate("quellbox", "A file or a link has the name of the folder."),
                            FileProblem::Exists);
        }
        ThrowFileError(folder, error);
    }
    struct stat above {};
    const QByteArray parent = FolderOf(path);
    if (::stat(parent.isEmpty() ? "." : parent.constData(), &above) == 0) {
        TakePermissions(path, above);
    }
    return true;
}

bool RemoveEmptyFolder(const QString& folder) {
    if (::rmdir(PathOfItself(folder).constData()) == 0) {
        return true;
    }
    if (errno != ENOTEMPTY && errno != EEXIST && errno != ENOENT) {
        ThrowFileError(folder, errno);
    }
    return false;
}

} // namespace quellbox

#endif
