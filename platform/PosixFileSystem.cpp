#ifndef _WIN32

#include "platform/LocalFileSystem.h"
#include "platform/PathBytes.h"
#include "platform/PosixFile.h"
#include "platform/PosixFolder.h"
#include "platform/PosixFolderReader.h"
#include "platform/PosixMove.h"
#include "platform/PosixRename.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

EntryKind KindOf(const dirent& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return EntryKind::Folder;
    case DT_LNK:
    case DT_UNKNOWN:
        return EntryKind::Unknown;
    default:
        return EntryKind::Other;
    }
}

/// Reads the status of `path`, links followed; false when that fails.
bool GetStatus(const QString& path, struct stat& status) {
    const QByteArray bytes = PathBytes(path);
    return !bytes.contains('\0') && ::stat(bytes.constData(), &status) == 0;
}

bool FolderIsThere(const QByteArray& path) {
    struct stat status {};
    const QByteArray folder = FolderOf(path);
    return ::stat(folder.isEmpty() ? "." : folder.constData(), &status) == 0;
}

class PosixFileSystem : public FileSystem {
public:
    bool FolderExists(const QString& folder) const override {
        struct stat status {};
        return GetStatus(folder, status) && S_ISDIR(status.st_mode);
    }

    bool IsRealFolder(const QString& folder) const override { return quellbox::IsRealFolder(folder); }

    bool FileExists(const QString& path) const override {
        struct stat status {};
        return GetStatus(path, status) && S_ISREG(status.st_mode);
    }

    std::vector<FolderEntry> Entries(const QString& folder) const override { return VisitedEntries(folder); }

    void VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const override {
        List(folder, [&visit](QByteArrayView name, EntryKind kind) {
            visit(
                {PathText(QByteArray::fromRawData(name.data(), name.size())), kind, name.front() == '.', std::nullopt});
        });
    }

    std::optional<FileStatus> Status(const QString& path) const override {
        struct stat status {};
        if (!GetStatus(path, status) || !S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        return FileStatus{status.st_size, ModifiedNs(status)};
    }

    std::unique_ptr<InputFile> Open(const QString& path) const override {
        struct stat status {};
        return std::make_unique<PosixInputFile>(OpenRegular(path, status), path);
    }

    std::unique_ptr<FolderReader> ReadFolder(const QString& folder) const override { return OpenFolderReader(folder); }

    void PrepareMoves(const QString& folder) const override {
        if (memory_.IsListed(PathBytes(folder))) {
            return;
        }
        try {
            List(folder, [](QByteArrayView, EntryKind) {});
        } catch (const FileError&) {
            return; // as agreed
        }
    }

    void Move(const QString& from, const QString& to) override { MoveFile(from, to, memory_); }

    bool MoveUnless(const QString& from, const QString& to,
                    const std::function<bool(const FileStatus&)>& keep) override {
        const std::optional<struct stat> entry = EntryUnless(from, keep);
        if (entry) {
            MoveFile(from, to, memory_, entry);
        }
        return entry.has_value();
    }

    bool Remove(const QString& path) override { return RemoveFile(path, &RefuseReadOnly); }

    bool RemoveEvenReadOnly(const QString& path) override {
        return RemoveFile(path, [](const QString&, const struct stat&) {});
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        const std::optional<struct stat> entry = EntryUnless(path, keep);
        if (entry) {
            RefuseReadOnly(path, *entry);
            Unlink(path, SystemPath(path), *entry);
        }
        return entry.has_value();
    }

    void MakeFolder(const QString& folder) override {
        if (quellbox::MakeFolder(folder)) {
            memory_.SetListed(SystemPath(folder), {}, std::nullopt); // nothing is in it
        }
    }

    bool RemoveFolder(const QString& folder) override { return RemoveEmptyFolder(folder); }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        TemporaryFile fresh(path, 0666, memory_.Left());
        WriteAll(fresh.Number(), bytes.constData(), bytes.size(), path);
        struct stat status {};
        if (GetStatus(path, status)) {
            // What could read the file before can read it afterwards; a share may not know permissions.
            [[maybe_unused]] const int mode = ::fchmod(fresh.Number(), status.st_mode & 0777U);
        }
        fresh.Close();
        Replace(fresh, path);
        fresh.Keep();
        FlushFolderOf(path);
    }

private:
    /// Calls `take(name, kind)` for everything in a folder, and remembers what there is no regular file. Throws
    /// FileError.
    template <class Take>
    void List(const QString& folder, Take take) const {
        const QByteArray path = SystemPath(folder);
        const FolderStream stream(::opendir(path.constData()));
        if (!stream) {
            ThrowFileError(folder, errno);
        }
        QSet<QByteArray> others;
        errno = 0;
        while (const dirent* entry = ::readdir(stream.get())) {
            const QByteArrayView name(entry->d_name);
            if (name != "." && name != "..") {
                const EntryKind kind = KindOf(*entry);
                take(name, kind);
                if (kind != EntryKind::File && others.size() <= FolderMemory::mostOthers) {
                    others.insert(name.toByteArray());
                }
            }
            errno = 0;
        }
        if (errno != 0) {
            ThrowFileError(folder, errno);
        }
        struct stat status {};
        const bool isKnown = ::fstat(::dirfd(stream.get()), &status) == 0;
        memory_.SetListed(path, std::move(others), isKnown ? std::optional(status.st_dev) : std::nullopt);
    }

    /// Renames a closed file to `path`, which is replaced. Throws FileError.
    static void Replace(const TemporaryFile& fresh, const QString& path) {
        struct stat written {};
        const QByteArray target = SystemPath(path);
        if (::lstat(fresh.Path().constData(), &written) != 0) {
            ThrowFileError(path, errno);
        }
        if (::rename(fresh.Path().constData(), target.constData()) == 0) {
            return;
        }
        const int error = errno;
        if (!HasArrived(fresh.Path(), target, written)) {
            ThrowFileError(path, error);
        }
    }

    /// The status of a regular file, or of the link to one, unless `keep` returns true for the status of the file.
    /// Throws FileError.
    static std::optional<struct stat> EntryUnless(const QString& path,
                                                  const std::function<bool(const FileStatus&)>& keep) {
        struct stat status {};
        const QByteArray bytes = SystemPath(path);
        if (::lstat(bytes.constData(), &status) != 0) {
            ThrowFileError(path, errno);
        }
        const struct stat entry = status;
        if (S_ISLNK(entry.st_mode) && ::stat(bytes.constData(), &status) != 0) {
            ThrowFileError(path, errno);
        }
        if (!S_ISREG(status.st_mode)) {
            ThrowFileError(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        }
        return keep({status.st_size, ModifiedNs(status)}) ? std::nullopt : std::optional(entry);
    }

    /// Removes a regular file, or a link to one, that `check` does not refuse by throwing. False when there is none.
    template <class Check>
    bool RemoveFile(const QString& path, Check check) const {
        struct stat status {};
        const QByteArray bytes = SystemPath(path);
        if (::lstat(bytes.constData(), &status) != 0) {
            RequireGone(path, bytes, errno);
            return false;
        }
        if (!S_ISREG(status.st_mode) && !(S_ISLNK(status.st_mode) && FileExists(path))) {
            return false;
        }
        check(path, status);
        Unlink(path, bytes, status);
        return true;
    }

    /// Throws FileError unless a file that could not be found is certainly gone. Without its folder, or with another
    /// one in its place, nobody knows: the share may not be mounted any more, or is being mounted anew.
    void RequireGone(const QString& path, const QByteArray& bytes, int error) const {
        if (error == ENOTDIR || (error == ENOENT && IsGone(bytes, memory_.DeviceOf(bytes)))) {
            return;
        }
        if (error != ENOENT || !FolderIsThere(bytes)) {
            ThrowFileError(path, error);
        }
        throw FileError(path, QCoreApplication::translate("quellbox",
                                                          "The file cannot be found, but its folder may not be the "
                                                          "one that was listed. Refresh the list."));
    }

    // For the system it is enough that the folder may be written.
    static void RefuseReadOnly(const QString& path, const struct stat& status) {
        if (S_ISREG(status.st_mode) && (status.st_mode & 0222U) == 0) {
            throw FileError(path, QCoreApplication::translate("quellbox", "The file is read-only."),
                            FileProblem::NoRight);
        }
    }

    /// Removes a file of that status. Throws FileError.
    static void Unlink(const QString& path, const QByteArray& bytes, const struct stat& status) {
        if (const int error = RemoveForGood(bytes, status.st_dev); error != 0) {
            ThrowFileError(path, error);
        }
    }

    mutable FolderMemory memory_;
};

} // namespace

std::unique_ptr<FileSystem> MakeLocalFileSystem() {
    return std::make_unique<PosixFileSystem>();
}

} // namespace quellbox

#endif
