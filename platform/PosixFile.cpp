#ifndef _WIN32

#include "platform/PosixFile.h"

#include "platform/PathBytes.h"
#include "platform/PosixLeftovers.h"
#include "platform/RuntimeError.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <unistd.h>
#include <utility>

namespace quellbox {

namespace {

constexpr int mostTries = 4; // to create a file

} // namespace

Descriptor::~Descriptor() {
    if (IsOpen()) {
        ::close(number_);
    }
}

const int readOnlyFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

qint64 PosixInputFile::Read(char* buffer, qint64 capacity) {
    return ReadSome(descriptor_.Number(), buffer, capacity, path_);
}

FileProblem ProblemOf(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return FileProblem::Missing;
    case EEXIST:
        return FileProblem::Exists;
    case EACCES:
    case EPERM:
    case EROFS:
        return FileProblem::NoRight;
    case ENOSPC:
    case EDQUOT:
        return FileProblem::NoRoom;
    case EBUSY:
    case ETXTBSY:
        return FileProblem::InUse;
    case ETIMEDOUT:
    case ENOTCONN:
    case ECONNABORTED:
    case ECONNREFUSED:
    case ECONNRESET:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETDOWN:
    case ENETUNREACH:
    case ESTALE:
        return FileProblem::NoAnswer;
    default:
        return FileProblem::Other;
    }
}

void ThrowFileError(const QString& path, int error) {
    throw FileError(path, qt_error_string(error), ProblemOf(error));
}

QByteArray SystemPath(const QString& path) {
    QByteArray bytes = PathBytes(path);
    if (bytes.contains('\0')) {
        ThrowFileError(path, EINVAL);
    }
    return bytes;
}

QByteArray FolderOf(const QByteArray& path) {
    return path.left(path.lastIndexOf('/') + 1);
}

qint64 ModifiedNs(const struct stat& status) {
    constexpr qint64 second = 1'000'000'000;
    constexpr qint64 first = std::numeric_limits<qint64>::min();
    constexpr qint64 last = std::numeric_limits<qint64>::max();
    const qint64 seconds = status.st_mtim.tv_sec;
    // The nanoseconds always count forwards, also from a second before 1970.
    if (seconds < first / second) {
        return first;
    }
    if (seconds > last / second || (seconds == last / second && status.st_mtim.tv_nsec > last % second)) {
        return last;
    }
    return seconds * second + status.st_mtim.tv_nsec;
}

bool IsUnchanged(const struct stat& before, const struct stat& after) {
    return before.st_size == after.st_size && ModifiedNs(before) == ModifiedNs(after);
}

int OpenRegular(const QString& path, struct stat& status) {
    const int number = ::open(SystemPath(path).constData(), readOnlyFlags);
    if (number < 0) {
        ThrowFileError(path, errno);
    }
    int error = ::fstat(number, &status) == 0 ? 0 : errno;
    if (error == 0 && !S_ISREG(status.st_mode)) {
        error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    }
    if (error != 0) {
        ::close(number);
        ThrowFileError(path, error);
    }
    return number;
}

qint64 ReadSome(int descriptor, char* buffer, qint64 capacity, const QString& path) {
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, static_cast<size_t>(capacity));
        if (count >= 0) {
            return count;
        }
        if (errno != EINTR) {
            ThrowFileError(path, errno);
        }
    }
}

void WriteAll(int descriptor, const char* bytes, qint64 count, const QString& path) {
    while (count > 0) {
        const ssize_t written = ::write(descriptor, bytes, static_cast<size_t>(count));
        if (written < 0 && errno != EINTR) {
            ThrowFileError(path, errno);
        }
        if (written > 0) {
            bytes += written;
            count -= written;
        }
    }
}

TemporaryFile::TemporaryFile(const QString& target, mode_t mode, Leftovers& leftovers)
    : target_(target), leftovers_(leftovers) {
    const QByteArray folder = FolderOf(SystemPath(target));
    leftovers_.RemoveIn(folder);
    for (int tries = mostTries; number_ < 0 && tries > 0; --tries) {
        path_ = folder + Leftovers::NewName();
        number_ = ::open(path_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (number_ < 0) {
            // Two names are never the same by chance: one that exists is ours, and the answer to creating it was lost.
            const int error = errno;
            leftovers_.Add(path_);
            if (error != EEXIST || tries == 1) {
                ThrowFileError(target, error);
            }
        }
    }
}

TemporaryFile::~TemporaryFile() {
    if (number_ >= 0) {
        ::close(number_);
    }
    if (!kept_ && RemoveForGood(path_) != 0) {
        leftovers_.Add(path_);
    }
}

void TemporaryFile::Close() {
    if (::fsync(number_) != 0) {
        ThrowFileError(target_, errno);
    }
    // The number is free even after an error, and may be another file's by now. EINTR is no failed write.
    if (::close(std::exchange(number_, -1)) != 0 && errno != EINTR) {
        ThrowFileError(target_, errno);
    }
}

int TryToOpen(const QByteArray& path) {
    const Descriptor file(::open(path.constData(), readOnlyFlags | O_NOFOLLOW));
    return file.IsOpen() ? 0 : errno;
}

bool IsGone(const QByteArray& path, const std::optional<dev_t>& device) {
    // What is asked about the opened folder cannot be about another one that is mounted in its place meanwhile.
    const QByteArray name = FolderOf(path);
    const Descriptor folder(::open(name.isEmpty() ? "." : name.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!folder.IsOpen() || (device && (::fstat(folder.Number(), &status) != 0 || status.st_dev != *device))) {
        return false;
    }
    const Descriptor file(::openat(folder.Number(), path.constData() + name.size(), readOnlyFlags | O_NOFOLLOW));
    return !file.IsOpen() && errno == ENOENT;
}

int RemoveForGood(const QByteArray& path, const std::optional<dev_t>& device) {
    const int error = ErrorUnlessInUse([&path] { return ::unlink(path.constData()); });
    return error == 0 || IsGone(path, device) ? 0 : error;
}

void FlushFolderOf(const QString& path) {
    const QByteArray folder = FolderOf(SystemPath(path));
    const Descriptor descriptor(
        ::open(folder.isEmpty() ? "." : folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be written but not read, or a share whose folders cannot be flushed, is no reason to fail.
    if (descriptor.IsOpen() && ::fsync(descriptor.Number()) != 0 && (errno == EIO || errno == ENOSPC)) {
        ThrowFileError(path, errno);
    }
}

} // namespace quellbox

#endif
