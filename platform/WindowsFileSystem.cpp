#ifdef _WIN32

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/WindowsFile.h"
#include "platform/WindowsMove.h"

#include <QCoreApplication>

#include <functional>

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

/// True when a rename of an existing file can have failed so only because of the new name or its folder.
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

/// Whether the folder tells the file's own size and time: it learns them when whoever writes the file closes it.
bool IsSettled(const FileStatus& status) {
    constexpr qint64 settledNs = 2 * 60 * 1'000'000'000LL; // with room for the server's clock
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return status.size > 0 && status.modifiedNs < UnixNs(now) - settledNs;
}

/// The names of a folder's entries that are wanted. Throws FileError.
QStringList EntryNames(const QString& folder, const std::function<bool(const WIN32_FIND_DATAW&)>& isWanted) {
    QStringList names;
    VisitEntries(folder, [&](const WIN32_FIND_DATAW& entry) {
        if (isWanted(entry)) {
            names += NameOf(entry);
        }
    });
    return names;
}

class WindowsFileSystem : public FileSystem {
public:
    bool FolderExists(const QString& folder) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        return Look(folder, data) && IsFolder(data.dwFileAttributes);
    }

    bool FileExists(const QString& path) const override { return Status(path).has_value(); }

    std::vector<FolderEntry> FileEntries(const QString& folder) const override {
        std::vector<FolderEntry> entries;
        VisitEntries(folder, [&entries](const WIN32_FIND_DATAW& entry) {
            if (!IsFolder(entry.dwFileAttributes)) {
                // Of a link the folder tells nothing about what it names.
                const bool isKnown = !IsLink(entry) && IsSettled(StatusOf(entry));
                entries.push_back({NameOf(entry), isKnown ? std::optional(StatusOf(entry)) : std::nullopt});
            }
        });
        return entries;
    }

    QStringList VisibleFileNames(const QString& folder) const override {
        constexpr DWORD unwanted = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        return EntryNames(folder, [this, &folder](const WIN32_FIND_DATAW& entry) {
            return (entry.dwFileAttributes & unwanted) == 0 &&
                   (!IsLink(entry) || FileExists(folder + QLatin1Char('\\') + NameOf(entry)));
        });
    }

    QStringList FolderNames(const QString& folder) const override {
        return EntryNames(folder, [](const WIN32_FIND_DATAW& entry) {
            return IsFolder(entry.dwFileAttributes) && (entry.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) == 0;
        });
    }

    std::optional<FileStatus> Status(const QString& path) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!Look(path, data) || IsFolder(data.dwFileAttributes)) {
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
        // A link that moved would name another file, or none, from its new folder.
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

    void Remove(const QString& path) override {
        const std::wstring name = SystemPath(path);
        if (DeleteFileW(name.c_str()) != 0) {
            return;
        }
        const DWORD error = GetLastError();
        const DWORD attributes = GetFileAttributesW(name.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && !IsFolder(attributes) &&
            (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            throw FileError(path, QCoreApplication::translate("quellbox", "The file is read-only."));
        }
        ThrowFileError(path, error);
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!Look(path, data)) {
            ThrowFileError(path, GetLastError());
        }
        if (keep(StatusOf(data))) {
            return false;
        }
        Remove(path);
        return true;
    }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        TemporaryFile fresh(path);
        WriteAll(fresh.File(), bytes.constData(), bytes.size(), path);
        fresh.Replace();
    }
};

} // namespace

std::unique_ptr<FileSystem> MakeLocalFileSystem() {
    // A drive without a medium is an error like others, and no reason for the system to ask for one.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS);
    return std::make_unique<WindowsFileSystem>();
}

} // namespace quellbox

#endif
