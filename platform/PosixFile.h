#pragma once

#ifndef _WIN32

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"

#include <QByteArray>
#include <QString>

#include <cerrno>
#include <chrono>
#include <dirent.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <thread>

namespace quellbox {

/// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }

private:
    int number_;
};

struct FolderCloser {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// A folder that is open for reading its names, if it could be opened.
using FolderStream = std::unique_ptr<DIR, FolderCloser>;

/// A file that was opened by its descriptor, which it owns; `path` is for errors.
class PosixInputFile : public InputFile {
public:
    PosixInputFile(int number, QString path) : descriptor_(number), path_(std::move(path)) {}

    qint64 Read(char* buffer, qint64 capacity) override;

private:
    Descriptor descriptor_;
    QString path_;
};

/// What is the matter with a call that failed with `error`, an errno value.
FileProblem ProblemOf(int error);

/// Makes a call of the system that returns 0, or -1 and errno, and gives back 0 or the error. Where it is refused
/// because the file is in use, it is made again for about a second: a share hears that a file was closed only a
/// moment after the program has closed it.
template <class Call>
int ErrorUnlessInUse(Call call) {
    constexpr std::chrono::milliseconds longest(512);
    for (std::chrono::milliseconds wait(1);; wait *= 2) {
        const int error = call() == 0 ? 0 : errno;
        if (error != EBUSY || wait > longest) {
            return error;
        }
        std::this_thread::sleep_for(wait);
    }
}

/// Throws the FileError for `path` with the system's text for `error`, an errno value.
[[noreturn]] void ThrowFileError(const QString& path, int error);

/// The bytes of a path for a system call. Throws FileError for a path that holds a NUL, which the call would take for
/// the end of a shorter path.
QByteArray SystemPath(const QString& path);

/// The folder of a path with its separator; empty when the path is a bare name.
QByteArray FolderOf(const QByteArray& path);

/// The time of last modification in nanoseconds since 1970; the first or last one that can be told (of the years 1677
/// and 2262) for one beyond.
qint64 ModifiedNs(const struct stat& status);

/// Whether a file has the same size and time of last modification as before. Inode numbers are not compared, since the
/// client of a share may invent new ones each time.
bool IsUnchanged(const struct stat& before, const struct stat& after);

/// The flags to open a file for reading, which may turn out to be none: a FIFO or a device neither blocks nor becomes
/// the terminal of this process.
extern const int readOnlyFlags;

/// Opens a regular file for reading; a FIFO or a device neither blocks nor is accepted. `status` receives
/// the status of the file. Throws FileError. The caller owns the number that is returned.
int OpenRegular(const QString& path, struct stat& status);

/// read() that repeats itself after a signal. Throws FileError.
qint64 ReadSome(int descriptor, char* buffer, qint64 capacity, const QString& path);

/// Writes all bytes. Throws FileError.
void WriteAll(int descriptor, const char* bytes, qint64 count, const QString& path);

class Leftovers;

/// A new file beside its later place, under a name that no mail server picks up. Unless Keep() says that it has been
/// renamed, the destructor removes it, or notes it as left behind. It has to be closed before it is renamed, since some
/// shares refuse to rename an open file.
class TemporaryFile {
public:
    /// Creates the file in the folder of `target`, with the permissions `mode` less the user's mask, and removes there
    /// what was left behind. `leftovers` has to outlive this object. Throws FileError.
    TemporaryFile(const QString& target, mode_t mode, Leftovers& leftovers);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int Number() const { return number_; }
    const QByteArray& Path() const { return path_; }

    /// Brings the contents to the disk and closes the file. Throws FileError, also where a failed write is reported by
    /// close() only.
    void Close();
    void Keep() { kept_ = true; }

private:
    QString target_;
    Leftovers& leftovers_;
    QByteArray path_;
    int number_ = -1;
    bool kept_ = false;
};

/// Opens a file to find out whether it exists: lstat() may report what this computer has cached of a share. Returns 0
/// or an errno value.
int TryToOpen(const QByteArray& path);

/// Whether a file that was there before is gone from its folder, which is not the case when the folder itself has gone,
/// because its share is not mounted any more. `device` is the file system in which it was, where that is known.
bool IsGone(const QByteArray& path, const std::optional<dev_t>& device = std::nullopt);

/// Removes a file. Returns 0 when it is gone, also where another program has removed it, or where only the reply of the
/// server was lost; else an errno value. For `device` see IsGone().
int RemoveForGood(const QByteArray& path, const std::optional<dev_t>& device = std::nullopt);

/// Brings the names in the folder of `path` to the disk, where the file system supports that. Throws FileError.
void FlushFolderOf(const QString& path);

} // namespace quellbox

#endif
