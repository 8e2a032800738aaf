#ifdef _WIN32

#include "platform/WindowsMove.h"

#include "platform/WindowsFile.h"

#include <optional>
#include <utility>
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

DWORD ErrorOf(BOOL succeeded) {
    return succeeded != 0 ? 0 : GetLastError();
}

bool IsMissing(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// Returns 0 when the source has been removed, else the error; the attributes are then as they were.
DWORD RemoveSource(const std::wstring& source) {
    // A read-only source would resist, although it is to vanish from this folder only.
    const DWORD attributes = GetFileAttributesW(source.c_str());
    const bool readOnly = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly) {
        SetFileAttributesW(source.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    const DWORD error = ErrorOf(DeleteFileW(source.c_str()));
    if (error != 0 && readOnly && !IsMissing(error)) {
        SetFileAttributesW(source.c_str(), attributes);
    }
    return error;
}

/// Asks for a source whose removal failed. Returns 0 when it is certainly there still. That it cannot be opened leaves
/// open whether it is: its removal by another program may be pending, or a share does not answer. Its attributes would
/// not do, since they may come from a memory that this computer has of the share.
DWORD LookForSource(const std::wstring& source) {
    const Handle file(CreateFileW(source.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    const DWORD error = file.IsOpen() ? 0 : GetLastError();
    return error == ERROR_SHARING_VIOLATION ? 0 : error; // only what is there can be in use
}

} // namespace

DWORD RenameNoReplace(const QString& from, const QString& to) {
    const std::wstring target = SystemPath(to);
    // The system takes the renaming of a file onto itself for done.
    if (GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES) {
        return ERROR_FILE_EXISTS;
    }
    return ErrorOf(MoveFileExW(SystemPath(from).c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH));
}

void MoveByCopy(const QString& from, const QString& to) {
    const std::wstring origin = SystemPath(from);
    std::optional<Handle> source(std::in_place,
                                 CreateFileW(origin.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!source->IsOpen()) {
        ThrowFileError(from, GetLastError());
    }
    TemporaryFile copy(to);
    CopyContents(*source, from, copy, to);
    CopyAttributes(*source, copy);
    copy.Place();
    const DWORD error = RemoveSource(origin);
    if (error == 0 || IsMissing(error)) {
        copy.Keep();
        return;
    }
    // A pending removal takes place when the last handle is closed, and this may be the last.
    source.reset();
    const DWORD present = LookForSource(origin);
    // A message in both folders would be delivered and still be listed as blocked, but one in none is lost.
    if (present != 0) {
        copy.Keep();
    }
    if (!IsMissing(present)) {
        ThrowFileError(from, error);
    }
}

} // namespace quellbox

#endif
