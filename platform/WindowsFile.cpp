#ifdef _WIN32

#include "platform/WindowsFile.h"

#include "platform/RuntimeError.h"
#include "platform/TemporaryName.h"
#include "platform/WideText.h"
#include "platform/WindowsPath.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <limits>
#include <memory>
#include <vector>

namespace quellbox {

namespace {

struct SearchCloser {
    void operator()(HANDLE search) const { FindClose(search); }
};

/// The whole path of one that depends on the current drive or folder.
QString WholePath(const QString& path) {
    std::wstring whole(GetFullPathNameW(Wide(path), 0, nullptr, nullptr), L'\0');
    whole.resize(GetFullPathNameW(Wide(path), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    return FromWide(whole.data(), whole.size());
}

DWORD BlockSize(qint64 count) {
    return static_cast<DWORD>(std::min<qint64>(count, 1 << 30));
}

bool IsDots(const WIN32_FIND_DATAW& entry) {
    const std::wstring_view name(&entry.cFileName[0]);
    return name == L"." || name == L"..";
}

/// Gives an open file, opened with the right to delete it, another path. Returns 0 or the system's error.
DWORD RenameOpenFile(const Handle& file, const std::wstring& path, bool replace) {
    const size_t length = path.size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + length); // the structure has room for the NUL
    auto* info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    info->ReplaceIfExists = replace ? TRUE : FALSE;
    info->FileNameLength = static_cast<DWORD>(length);
    path.copy(&info->FileName[0], path.size());
    const BOOL renamed =
        SetFileInformationByHandle(file.Value(), FileRenameInfo, info, static_cast<DWORD>(buffer.size()));
    return renamed != 0 ? 0 : GetLastError();
}

/// True when the system or a file server does not know such a call, rather than refuse this one.
bool IsUnknownCall(DWORD error) {
    return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_PARAMETER || error == ERROR_CALL_NOT_IMPLEMENTED ||
           error == ERROR_INVALID_FUNCTION || error == ERROR_INVALID_LEVEL;
}

/// Lets an open file vanish once it is closed; false when the system or a file server does not.
bool DeleteOnClose(const Handle& file) {
    // The copy of a read-only file would stay.
    FILE_BASIC_INFO writable{};
    writable.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetFileInformationByHandle(file.Value(), FileBasicInfo, &writable, sizeof writable);
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = TRUE;
    return SetFileInformationByHandle(file.Value(), FileDispositionInfo, &disposition, sizeof disposition) != 0;
}

} // namespace

Handle::~Handle() {
    if (IsOpen()) {
        CloseHandle(value_);
    }
}

FileProblem ProblemOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return FileProblem::Missing;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return FileProblem::Exists;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return FileProblem::NoRight;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return FileProblem::NoRoom;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_BUSY:
        return FileProblem::InUse;
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NETNAME_DELETED:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
    case ERROR_CONNECTION_REFUSED:
    case ERROR_CONNECTION_ABORTED:
    case ERROR_SEM_TIMEOUT:
        return FileProblem::NoAnswer;
    default:
        return FileProblem::Other;
    }
}

void ThrowFileError(const QString& path, DWORD error) {
    throw FileError(path, qt_error_string(static_cast<int>(error)), ProblemOf(error));
}

std::wstring SystemPath(const QString& path) {
    if (path.isEmpty() || path.contains(QChar(QChar::Null))) {
        ThrowFileError(path, ERROR_INVALID_NAME);
    }
    const QString literal = LiteralWindowsPath(path);
    return (literal.isEmpty() ? LiteralWindowsPath(WholePath(path)) : literal).toStdWString();
}

qint64 UnixNs(const FILETIME& time) {
    // The system counts 100 ns since 1601.
    constexpr qint64 ticksTo1970 = 116'444'736'000'000'000;
    constexpr quint64 first = std::numeric_limits<qint64>::min() / 100 + ticksTo1970;
    constexpr quint64 last = std::numeric_limits<qint64>::max() / 100 + ticksTo1970;
    const quint64 ticks = (static_cast<quint64>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return (static_cast<qint64>(std::clamp(ticks, first, last)) - ticksTo1970) * 100;
}

bool IsFolder(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsMissing(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool GetStatus(const QString& path, WIN32_FILE_ATTRIBUTE_DATA& data) {
    if (path.isEmpty() || path.contains(QChar(QChar::Null))) {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    const std::wstring name = SystemPath(path);
    if (GetFileAttributesExW(name.c_str(), GetFileExInfoStandard, &data) == 0) {
        return false;
    }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return true;
    }
    // The file behind a link can only be queried by a handle.
    const Handle file(CreateFileW(name.c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION named{};
    if (!file.IsOpen() || GetFileInformationByHandle(file.Value(), &named) == 0) {
        return false;
    }
    data = {named.dwFileAttributes, named.ftCreationTime, named.ftLastAccessTime,
            named.ftLastWriteTime,  named.nFileSizeHigh,  named.nFileSizeLow};
    return true;
}

bool IsSymbolicLink(const std::wstring& systemPath) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(systemPath.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && found.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

QString NameOf(const WIN32_FIND_DATAW& entry) {
    return FromWide(&entry.cFileName[0], std::wcslen(&entry.cFileName[0]));
}

void VisitEntries(const QString& folder, const std::function<void(const WIN32_FIND_DATAW&)>& visit) {
    std::wstring pattern = SystemPath(folder);
    pattern += pattern.back() == L'\\' ? L"*" : L"\\*";
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr,
                                           FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND) {
            return; // the root of an empty volume, which has no entry for itself
        }
        ThrowFileError(folder, error);
    }
    const std::unique_ptr<void, SearchCloser> closer(search);
    do {
        if (!IsDots(entry)) {
            visit(entry);
        }
    } while (FindNextFileW(search, &entry) != 0);
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES) {
        ThrowFileError(folder, error);
    }
}

qint64 ReadSome(const Handle& file, char* buffer, qint64 capacity, const QString& path) {
    DWORD count = 0;
    if (ReadFile(file.Value(), buffer, BlockSize(capacity), &count, nullptr) == 0) {
        ThrowFileError(path, GetLastError());
    }
    return count;
}

void WriteAll(const Handle& file, const char* bytes, qint64 count, const QString& path) {
    while (count > 0) {
        DWORD written = 0;
        if (WriteFile(file.Value(), bytes, BlockSize(count), &written, nullptr) == 0) {
            ThrowFileError(path, GetLastError());
        }
        bytes += written;
        count -= written;
    }
}

TemporaryFile::TemporaryFile(const QString& target) : target_(target), place_(SystemPath(target)) {
    path_ = place_.substr(0, place_.find_last_of(L'\\') + 1) + TemporaryName().toStdWString();
    file_.emplace(
        CreateFileW(path_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file_->IsOpen()) {
        path_.clear();
        ThrowFileError(target, GetLastError());
    }
}

TemporaryFile::~TemporaryFile() {
    // While it is open, nobody gets hold of half a message.
    if (path_.empty() || (file_ && DeleteOnClose(*file_))) {
        return;
    }
    file_.reset();
    SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path_.c_str());
}

void TemporaryFile::Place() {
    Flush();
    Rename(false);
    path_ = place_;
    Flush();
}

void TemporaryFile::Keep() {
    path_.clear();
    file_.reset();
}

void TemporaryFile::Replace() {
    Flush();
    Rename(true);
    path_.clear(); // what was replaced cannot come back
    Flush();
    file_.reset();
}

/// Brings contents and name of the open file to the disk.
void TemporaryFile::Flush() {
    if (file_ && FlushFileBuffers(file_->Value()) == 0) {
        ThrowFileError(target_, GetLastError());
    }
}

void TemporaryFile::Rename(bool replace) {
    DWORD error = RenameOpenFile(*file_, place_, replace);
    if (IsUnknownCall(error)) {
        file_.reset();
        const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0UL);
        error = MoveFileExW(path_.c_str(), place_.c_str(), flags) != 0 ? 0 : GetLastError();
    }
    if (error != 0) {
        ThrowFileError(target_, error);
    }
}

} // namespace quellbox

#endif
