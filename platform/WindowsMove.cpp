#ifdef _WIN32

#include "platform/WindowsMove.h"

#include "platform/WindowsFile.h"

#include <vector>

namespace quellbox {

namespace {

constexpr DWORD kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

void CopyContents(const Handle& source, const QString& from, const TemporaryFile& copy, const QString& to) {
    std::vector<char> buffer(128 * 1024);
    while (const qint64 count = ReadSome(source, buffer.data(), static_cast<qint64>(buffer.size()), from)) {
        WriteAll(copy.File(), buffer.data(), count, to);
    }
}

/// A share may refuse times or attributes; the message itself is what must not be lost.
void CopyAttributes(const Handle& source, const TemporaryFile& copy) {
    FILE_BASIC_INFO info{};
    if (GetFileInformationByHandleEx(source.Value(), FileBasicInfo, &info, sizeof info) != 0) {
        info.FileAttributes &= kept;
        info.ChangeTime.QuadPart = 0;
        SetFileInformationByHandle(copy.File().Value(), FileBasicInfo, &info, sizeof info);
    }
}

/// Returns 0 when the source is gone, else the error; the source is then as it was.
DWORD RemoveSource(const std::wstring& source) {
    // A read-only source would resist, although it is to vanish from this folder only.
    const DWORD attributes = GetFileAttributesW(source.c_str());
    const bool readOnly = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly) {
        SetFileAttributesW(source.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    if (DeleteFileW(source.c_str()) != 0) {
        return 0;
    }
    const DWORD error = GetLastError();
    // Gone already, as after a lost answer of a share: then the copy is the only one.
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        return 0;
    }
    if (readOnly) {
        SetFileAttributesW(source.c_str(), attributes);
    }
    return error;
}

} // namespace

DWORD RenameNoReplace(const QString& from, const QString& to) {
    const std::wstring target = SystemPath(to);
    // The system takes the renaming of a file onto itself for done.
    if (GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES) {
        return ERROR_FILE_EXISTS;
    }
    return MoveFileExW(SystemPath(from).c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0 ? 0 : GetLastError();
}

void MoveByCopy(const QString& from, const QString& to) {
    const std::wstring origin = SystemPath(from);
    const Handle source(CreateFileW(origin.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!source.IsOpen()) {
        ThrowFileError(from, GetLastError());
    }
    TemporaryFile copy(to);
    CopyContents(source, from, copy, to);
    CopyAttributes(source, copy);
    copy.Place(false);
    if (const DWORD error = RemoveSource(origin); error != 0) {
        // A message in both folders would be delivered and still be listed as blocked.
        const std::wstring target = SystemPath(to);
        SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(target.c_str());
        ThrowFileError(from, error);
    }
}

} // namespace quellbox

#endif
