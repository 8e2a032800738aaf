#ifdef _WIN32

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/WindowsFile.h"
#include "platform/WindowsFolder.h"
#include "platform/WindowsMove.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

class WindowsInputFile : public InputFile {
public:
    WindowsInputFile(HANDLE file, QString path) : file_(file), path_(std::move(path)) {}

    const Handle& File() const { return file_; }

    qint64 Read(char* buffer, qint64 capacity) override { return ReadSome(file_, buffer, capacity, path_); }

private:
    Handle file_;
    QString path_;
};

/// Whether the error of renaming an existing file is about the new name or its folder.
bool ConcernsTarget(DWORD error) {
    switch (error) {
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return true;
    default:
        return false;
    }
}

/// Of the attributes of a file, or of a folder's entry.
template <class Data>
FileStatus StatusOf(const Data& data) {
    const qint64 size = (static_cast<qint64>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return {size, UnixNs(data.ftLastWriteTime)};
}

bool IsLink(const WIN32_FIND_DATAW& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Whether size and time in the folder are up to date. They are updated when the program that writes the file closes
/// it.
bool IsSettled(const FileStatus& status) {
    constexpr qint64 settledNs = 2 * 60 * 1'000'000'000LL; // with room for the server's clock
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return status.size > 0 && status.modifiedNs < UnixNs(now) - settledNs;
}

/// Takes the attribute ReadOnly from a file while it lives, and gives it back to one that is still there.
class WritableFor {
public:
    explicit WritableFor(std::wstring name) : name_(std::move(name)), attributes_(GetFileAttributesW(name_.c_str())) {
        if (IsReadOnlyFile()) {
            SetFileAttributesW(name_.c_str(), attributes_ & ~DWORD{FILE_ATTRIBUTE_READONLY});
        }
    }
    ~WritableFor() {
        if (IsReadOnlyFile()) {
            SetFileAttributesW(name_.c_str(), attributes_);
        }
    }
    Q_DISABLE_COPY_MOVE(WritableFor)

private:
    bool IsReadOnlyFile() const {
        return attributes_ != INVALID_FILE_ATTRIBUTES && !IsFolder(attributes_) &&
               (attributes_ & FILE_ATTRIBUTE_READONLY) != 0;
    }

    std::wstring name_;
    DWORD attributes_;
};

EntryKind KindOf(const WIN32_FIND_DATAW& entry) {
    if (IsFolder(entry.dwFileAttributes)) {
        return EntryKind::Folder;
    }
    return IsLink(entry) ? EntryKind::Unknown : EntryKind::File;
}

bool IsHidden(const WIN32_FIND_DATAW& entry) {
    const DWORD hiding = IsFolder(entry.dwFileAttributes) ? DWORD{FILE_ATTRIBUTE_HIDDEN}
                                                          : DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM};
    return (entry.dwFileAttributes & hiding) != 0;
}

class WindowsFileSystem : public FileSystem {
public:
    bool FolderExists(const QString& folder) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        return GetStatus(folder, data) && IsFolder(data.dwFileAttributes);
    }

    bool IsRealFolder(const QString& folder) const override { return quellbox::IsRealFolder(folder); }

    bool FileExists(const QString& path) const override { return Status(path).has_value(); }

    std::vector<FolderEntry> Entries(const QString& folder) const override { return VisitedEntries(folder); }

    void VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const override {
        quellbox::VisitEntries(folder, [&visit](const WIN32_FIND_DATAW& entry) {
            const EntryKind kind = KindOf(entry);
            // For a link the folder reports the size and time of the link itself.
            const bool isKnown = kind == EntryKind::File && IsSettled(StatusOf(entry));
            visit({NameOf(entry), kind, IsHidden(entry), isKnown ? std::optional(StatusOf(entry)) : std::nullopt});
        });
    }

    std::optional<FileStatus> Status(const QString& path) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetStatus(path, data) || IsFolder(data.dwFileAttributes)) {
            return std::nullopt;
        }
        return StatusOf(data);
    }

    std::unique_ptr<InputFile> Open(const QString& path) const override {
        const HANDLE file =
            CreateFileW(SystemPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            ThrowFileError(path, GetLastError());
        }
        auto opened = std::make_unique<WindowsInputFile>(file, path);
        // A device or a pipe could keep a reader waiting for ever.
        if (GetFileType(opened->File().Value()) != FILE_TYPE_DISK) {
            ThrowFileError(path, ERROR_INVALID_NAME);
        }
        return opened;
    }

    void Move(const QString& from, const QString& to) override {
        const std::wstring source = SystemPath(from);
        const DWORD attributes = GetFileAttributesW(source.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            ThrowFileError(from, GetLastError());
        }
        if (IsFolder(attributes)) {
            ThrowFileError(from, ERROR_ACCESS_DENIED);
        }
        // A relative link would point to another file, or to none, from its new folder.
        if (IsSymbolicLink(source)) {
            return MoveByCopy(from, to);
        }
        const DWORD error = RenameNoReplace(from, to);
        if (error == ERROR_NOT_SAME_DEVICE) {
            return MoveByCopy(from, to);
        }
        if (error != 0) {
            ThrowFileError(ConcernsTarget(error) ? to : from, error);
        }
    }

    bool MoveUnless(const QString& from, const QString& to,
                    const std::function<bool(const FileStatus&)>& keep) override {
        if (IsKept(from, keep)) {
            return false;
        }
        Move(from, to);
        return true;
    }

    bool RemoveEvenReadOnly(const QString& path) override {
        const WritableFor change(SystemPath(path));
        return Remove(path);
    }

    bool Remove(const QString& path) override {
        const std::wstring name = SystemPath(path);
        if (DeleteFileW(name.c_str()) != 0) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND) {
            return false;
        }
        const DWORD attributes = GetFileAttributesW(name.c_str());
        const bool isKnown = attributes != INVALID_FILE_ATTRIBUTES;
        if (isKnown && IsFolder(attributes)) {
            return false;
        }
        if (isKnown && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            throw FileError(path, QCoreApplication::translate("quellbox", "The file is read-only."),
                            FileProblem::NoRight);
        }
        ThrowFileError(path, error);
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        if (IsKept(path, keep)) {
            return false;
        }
        if (!Remove(path)) {
            ThrowFileError(path, ERROR_FILE_NOT_FOUND);
        }
        return true;
    }

    void MakeFolder(const QString& folder) override { MakeHiddenFolder(folder); }

    bool RemoveFolder(const QString& folder) override { return RemoveEmptyFolder(folder); }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        TemporaryFile fresh(path);
        WriteAll(fresh.File(), bytes.constData(), bytes.size(), path);
        fresh.Replace();
    }

private:
    /// What `keep` says of the status of a file. Throws FileError.
    static bool IsKept(const QString& path, const std::function<bool(const FileStatus&)>& keep) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetStatus(path, data)) {
            ThrowFileError(path, GetLastError());
        }
        if (IsFolder(data.dwFileAttributes)) {
            ThrowFileError(path, ERROR_ACCESS_DENIED);
        }
        return keep(StatusOf(data));
    }
};

} // namespace

std::unique_ptr<FileSystem> MakeLocalFileSystem() {
    // A drive without a medium is an error like others; the system shall not ask the user for one.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS);
    return std::make_unique<WindowsFileSystem>();
}

} // namespace quellbox

#endif
