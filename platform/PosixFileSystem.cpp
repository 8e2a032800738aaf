#ifndef _WIN32

#include "platform/LocalFileSystem.h"
#include "platform/PathBytes.h"
#include "platform/PosixFile.h"
#include "platform/PosixMove.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

class PosixInputFile : public InputFile {
public:
    PosixInputFile(int number, QString path) : descriptor_(number), path_(std::move(path)) {}

    qint64 Read(char* buffer, qint64 capacity) override {
        return ReadSome(descriptor_.Number(), buffer, capacity, path_);
    }

private:
    Descriptor descriptor_;
    QString path_;
};

struct FolderCloser {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// False for what the folder itself says is no regular file. Some file systems do not say.
bool MayBeRegular(const dirent& entry) {
    return entry.d_type == DT_REG || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
}

/// True for what is not hidden and, links followed, of the type `mode` (as S_IFDIR), which `type` (as DT_DIR) stands
/// for. Only what the folder itself does not tell is looked at.
bool IsVisible(const dirent& entry, int folder, unsigned char type, mode_t mode) {
    if (entry.d_name[0] == '.') {
        return false;
    }
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
        return entry.d_type == type;
    }
    struct stat status {};
    return ::fstatat(folder, entry.d_name, &status, 0) == 0 && (status.st_mode & S_IFMT) == mode;
}

/// The names of a folder's entries that `isWanted(entry, descriptor of the folder)`. Throws FileError.
template <class Predicate>
QStringList EntryNames(const QString& folder, Predicate isWanted) {
    const std::unique_ptr<DIR, FolderCloser> stream(::opendir(SystemPath(folder).constData()));
    if (!stream) {
        ThrowFileError(folder, errno);
    }
    QStringList names;
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
        if (isWanted(*entry, ::dirfd(stream.get()))) {
            const QByteArrayView name(entry->d_name);
            names += PathText(QByteArray::fromRawData(name.data(), name.size()));
        }
        errno = 0;
    }
    if (errno != 0) {
        ThrowFileError(folder, errno);
    }
    return names;
}

/// What the system tells of `path`, links followed; false when there is nothing.
bool Look(const QString& path, struct stat& status) {
    const QByteArray bytes = PathBytes(path);
    return !bytes.contains('\0') && ::stat(bytes.constData(), &status) == 0;
}

/// True when a rename of an existing file can have failed so only because of the new name or its folder.
bool ConcernsTarget(int error) {
    return error == EEXIST || error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ENOSPC ||
           error == EDQUOT;
}

class PosixFileSystem : public FileSystem {
public:
    bool FolderExists(const QString& folder) const override {
        struct stat status {};
        return Look(folder, status) && S_ISDIR(status.st_mode);
    }

    bool FileExists(const QString& path) const override {
        struct stat status {};
        return Look(path, status) && S_ISREG(status.st_mode);
    }

    std::vector<FolderEntry> FileEntries(const QString& folder) const override {
        QStringList names = EntryNames(folder, [](const dirent& entry, int) {
            const QByteArrayView name(entry.d_name);
            return MayBeRegular(entry) && name != "." && name != "..";
        });
        std::vector<FolderEntry> entries;
        entries.reserve(static_cast<size_t>(names.size()));
        for (QString& name : names) {
            entries.push_back({std::move(name), std::nullopt});
        }
        return entries;
    }

    QStringList VisibleFileNames(const QString& folder) const override {
        return EntryNames(
            folder, [](const dirent& entry, int descriptor) { return IsVisible(entry, descriptor, DT_REG, S_IFREG); });
    }

    QStringList FolderNames(const QString& folder) const override {
        return EntryNames(
            folder, [](const dirent& entry, int descriptor) { return IsVisible(entry, descriptor, DT_DIR, S_IFDIR); });
    }

    std::optional<FileStatus> Status(const QString& path) const override {
        struct stat status {};
        if (!Look(path, status) || !S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        return FileStatus{status.st_size, ModifiedNs(status)};
    }

    std::unique_ptr<InputFile> Open(const QString& path) const override {
        struct stat status {};
        return std::make_unique<PosixInputFile>(OpenRegular(path, status), path);
    }

    void Move(const QString& from, const QString& to) override {
        struct stat status {};
        const QByteArray source = SystemPath(from);
        const QByteArray target = SystemPath(to);
        if (::lstat(source.constData(), &status) != 0) {
            ThrowFileError(from, errno);
        }
        // A link that moved would name another file, or none, from its new folder.
        if (S_ISLNK(status.st_mode)) {
            return MoveByCopy(from, to);
        }
        if (!S_ISREG(status.st_mode)) {
            ThrowFileError(from, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        }
        const int error = RenameNoReplace(source, target);
        if (error == EXDEV) {
            return MoveByCopy(from, to);
        }
        if (error != 0) {
            ThrowFileError(ConcernsTarget(error) ? to : from, error);
        }
    }

    void Remove(const QString& path) override {
        struct stat status {};
        const QByteArray bytes = SystemPath(path);
        if (::lstat(bytes.constData(), &status) != 0) {
            ThrowFileError(path, errno);
        }
        Unlink(path, bytes, status.st_mode);
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        struct stat status {};
        const QByteArray bytes = SystemPath(path);
        if (::lstat(bytes.constData(), &status) != 0) {
            ThrowFileError(path, errno);
        }
        const mode_t mode = status.st_mode;
        if (S_ISLNK(mode) && ::stat(bytes.constData(), &status) != 0) {
            ThrowFileError(path, errno);
        }
        if (!S_ISREG(status.st_mode)) {
            ThrowFileError(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        }
        if (keep({status.st_size, ModifiedNs(status)})) {
            return false;
        }
        Unlink(path, bytes, mode);
        return true;
    }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        TemporaryFile fresh(path, 0666);
        WriteAll(fresh.Number(), bytes.constData(), bytes.size(), path);
        struct stat status {};
        if (Look(path, status)) {
            // What could read the file before can read it afterwards; a share may not know permissions.
            [[maybe_unused]] const int mode = ::fchmod(fresh.Number(), status.st_mode & 0777U);
        }
        fresh.Flush();
        if (::rename(fresh.Path().constData(), SystemPath(path).constData()) != 0) {
            ThrowFileError(path, errno);
        }
        fresh.Keep();
        FlushFolderOf(path);
    }

private:
    /// Removes a file of that mode, unless it is read-only.
    static void Unlink(const QString& path, const QByteArray& bytes, mode_t mode) {
        // The system itself asks only for the right to write the folder.
        if (S_ISREG(mode) && (mode & 0222U) == 0) {
            throw FileError(path, QCoreApplication::translate("quellbox", "The file is read-only."));
        }
        if (::unlink(bytes.constData()) != 0) {
            ThrowFileError(path, errno);
        }
    }
};

} // namespace

std::unique_ptr<FileSystem> MakeLocalFileSystem() {
    return std::make_unique<PosixFileSystem>();
}

} // namespace quellbox

#endif
