#ifdef _WIN32

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"

#include <QDir>
#include <QRandomGenerator>

#include <algorithm>
#include <filesystem>
#include <windows.h>

namespace quellbox {

namespace {

[[noreturn]] void ThrowLastError(const QString& path) {
    throw FileError(path, qt_error_string(static_cast<int>(GetLastError())));
}

std::wstring SystemPath(const QString& path) {
    if (path.contains(QChar(QChar::Null))) {
        SetLastError(ERROR_INVALID_NAME);
        ThrowLastError(path);
    }
    return QDir::toNativeSeparators(path).toStdWString();
}

/// Nanoseconds since 1970 of the system's count of 100 ns since 1601.
qint64 UnixNs(const FILETIME& time) {
    constexpr qint64 ticksTo1970 = 116'444'736'000'000'000;
    const qint64 ticks = (static_cast<qint64>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return (ticks - ticksTo1970) * 100;
}

/// Owns a handle of an open file.
class Handle {
public:
    explicit Handle(HANDLE value) : value_(value) {}
    ~Handle() {
        if (IsOpen()) {
            CloseHandle(value_);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE Value() const { return value_; }
    bool IsOpen() const { return value_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE value_;
};

class WindowsInputFile : public InputFile {
public:
    WindowsInputFile(HANDLE file, QString path) : file_(file), path_(std::move(path)) {}

    qint64 Read(char* buffer, qint64 capacity) override {
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min<qint64>(capacity, 1 << 30));
        if (ReadFile(file_.Value(), buffer, wanted, &count, nullptr) == 0) {
            ThrowLastError(path_);
        }
        return count;
    }

private:
    Handle file_;
    QString path_;
};

bool Look(const QString& path, WIN32_FILE_ATTRIBUTE_DATA& data) {
    return !path.contains(QChar(QChar::Null)) &&
           GetFileAttributesExW(SystemPath(path).c_str(), GetFileExInfoStandard, &data) != 0;
}

bool IsFolder(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsHidden(const wchar_t* path) {
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

/// The names of a folder's entries that `isWanted`. Throws FileError.
template <class Predicate>
QStringList EntryNames(const QString& folder, Predicate isWanted) {
    std::error_code error;
    std::filesystem::directory_iterator entry(SystemPath(folder), error);
    QStringList names;
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (isWanted(*entry)) {
            names += QString::fromStdWString(entry->path().filename().wstring());
        }
    }
    if (error) {
        throw FileError(folder, qt_error_string(error.value()));
    }
    return names;
}

FileStatus StatusOf(const WIN32_FILE_ATTRIBUTE_DATA& data) {
    const qint64 size = (static_cast<qint64>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return {size, UnixNs(data.ftLastWriteTime)};
}

class WindowsFileSystem : public FileSystem {
public:
    bool FolderExists(const QString& folder) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        return Look(folder, data) && IsFolder(data.dwFileAttributes);
    }

    bool FileExists(const QString& path) const override { return Status(path).has_value(); }

    QStringList FileNames(const QString& folder) const override {
        return EntryNames(folder, [](const std::filesystem::directory_entry& entry) {
            std::error_code unknown;
            return !entry.is_directory(unknown);
        });
    }

    QStringList FolderNames(const QString& folder) const override {
        return EntryNames(folder, [](const std::filesystem::directory_entry& entry) {
            std::error_code unknown;
            return entry.is_directory(unknown) && !IsHidden(entry.path().c_str());
        });
    }

    QStringList VisibleFileNames(const QString& folder) const override {
        constexpr DWORD unwanted = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        WIN32_FIND_DATAW found{};
        const std::wstring pattern = SystemPath(folder + QLatin1String("\\*"));
        const HANDLE search = FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                               FIND_FIRST_EX_LARGE_FETCH);
        if (search == INVALID_HANDLE_VALUE) {
            if (GetLastError() == ERROR_FILE_NOT_FOUND) {
                return {}; // an empty volume: its root has no entry for itself
            }
            ThrowLastError(folder);
        }
        QStringList names;
        do {
            if ((found.dwFileAttributes & unwanted) == 0) {
                names += QString::fromWCharArray(&found.cFileName[0]);
            }
        } while (FindNextFileW(search, &found) != 0);
        const DWORD error = GetLastError();
        FindClose(search);
        if (error != ERROR_NO_MORE_FILES) {
            SetLastError(error);
            ThrowLastError(folder);
        }
        return names;
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
            ThrowLastError(path);
        }
        return std::make_unique<WindowsInputFile>(file, path);
    }

    void Move(const QString& from, const QString& to) override {
        const std::wstring source = SystemPath(from);
        const std::wstring target = SystemPath(to);
        if (MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0) {
            return;
        }
        if (GetLastError() != ERROR_NOT_SAME_DEVICE) {
            ThrowLastError(from);
        }
        const std::wstring copy = TemporaryBeside(to);
        if (CopyFileW(source.c_str(), copy.c_str(), TRUE) == 0 || !FlushFile(copy) ||
            MoveFileExW(copy.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) == 0) {
            RemoveAndThrow(copy, to);
        }
        // A read-only source would resist, although it is to vanish from this folder only.
        const DWORD attributes = GetFileAttributesW(source.c_str());
        SetFileAttributesW(source.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
        if (DeleteFileW(source.c_str()) == 0) {
            const DWORD error = GetLastError();
            if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
                return; // gone already, so the copy is the only one
            }
            SetFileAttributesW(source.c_str(), attributes);
            SetLastError(error);
            // A message in both folders would be delivered and still be listed as blocked.
            RemoveAndThrow(target, from);
        }
    }

    void Remove(const QString& path) override {
        if (DeleteFileW(SystemPath(path).c_str()) == 0) {
            ThrowLastError(path);
        }
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!Look(path, data)) {
            ThrowLastError(path);
        }
        if (keep(StatusOf(data))) {
            return false;
        }
        Remove(path);
        return true;
    }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        const std::wstring fresh = TemporaryBeside(path);
        const std::wstring target = SystemPath(path);
        if (!WriteNew(fresh, bytes) ||
            MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
            RemoveAndThrow(fresh, path);
        }
    }

private:
    /// A name in the folder of `path` that no mail server picks up.
    static std::wstring TemporaryBeside(const QString& path) {
        const std::wstring target = SystemPath(path);
        const QString random = QString::number(QRandomGenerator::system()->generate64(), 16);
        return target.substr(0, target.find_last_of(L'\\') + 1) +
               (QLatin1String(".quellbox-") + random + QLatin1String(".tmp")).toStdWString();
    }

    static bool FlushFile(const std::wstring& path) {
        // The copy of a read-only file is read-only too, and only a file that may be written can be flushed.
        const DWORD attributes = GetFileAttributesW(path.c_str());
        SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
        bool flushed = false;
        {
            const Handle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
            flushed = file.IsOpen() && FlushFileBuffers(file.Value()) != 0;
        }
        return flushed && SetFileAttributesW(path.c_str(), attributes) != 0;
    }

    static bool WriteNew(const std::wstring& path, const QByteArray& bytes) {
        const Handle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        if (!file.IsOpen()) {
            return false;
        }
        for (qsizetype done = 0; done < bytes.size();) {
            DWORD written = 0;
            const auto wanted = static_cast<DWORD>(std::min<qsizetype>(bytes.size() - done, 1 << 30));
            if (WriteFile(file.Value(), bytes.constData() + done, wanted, &written, nullptr) == 0) {
                return false;
            }
            done += written;
        }
        return FlushFileBuffers(file.Value()) != 0;
    }

    /// Throws the last error for `path` once the file that is not wanted any more is gone.
    [[noreturn]] static void RemoveAndThrow(const std::wstring& unwanted, const QString& path) {
        const DWORD error = GetLastError();
        SetFileAttributesW(unwanted.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(unwanted.c_str());
        SetLastError(error);
        ThrowLastError(path);
    }
};

} // namespace

std::unique_ptr<FileSystem> MakeLocalFileSystem() {
    return std::make_unique<WindowsFileSystem>();
}

} // namespace quellbox

#endif
