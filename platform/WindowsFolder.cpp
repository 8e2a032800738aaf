#ifdef _WIN32

#include "platform/WindowsFolder.h"

#include "platform/RuntimeError.h"
#include "platform/WindowsFile.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

/// The path of a folder as that of an entry of the one that it is in: a search finds nothing by the other form.
std::wstring PathOfItself(const QString& folder) {
    std::wstring path = SystemPath(folder);
    while (path.size() > 1 && path.back() == L'\\') {
        path.pop_back();
    }
    return path;
}

/// Junctions and symbolic links are both names of something elsewhere.
bool IsRealFolder(const std::wstring& path) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    const bool isLink =
        (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(found.dwReserved0);
    return IsFolder(found.dwFileAttributes) && !isLink;
}

} // namespace

bool IsRealFolder(const QString& folder) {
    try {
        return IsRealFolder(PathOfItself(folder));
    } catch (const FileError&) {
        return false; // nothing can have that name
    }
}

void MakeHiddenFolder(const QString& folder) {
    const std::wstring path = PathOfItself(folder);
    // It gets the rights that the folder above passes on.
    if (CreateDirectoryW(path.c_str(), nullptr) != 0) {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
        return;
    }
    const DWORD error = GetLastError();
    if (IsRealFolder(path)) {
        return;
    }
    if (error == ERROR_ALREADY_EXISTS) {
        throw FileError(folder, QCoreApplication::translate("quellbox", "A file or a link has the name of the folder."),
                        FileProblem::Exists);
    }
    ThrowFileError(folder, error);
}

bool RemoveEmptyFolder(const QString& folder) {
    const std::wstring path = PathOfItself(folder);
    const DWORD attributes = GetFileAttributesW(path.c_str());
    // The system would remove the link.
    if (attributes != INVALID_FILE_ATTRIBUTES && IsFolder(attributes) && !IsRealFolder(path)) {
        ThrowFileError(folder, ERROR_DIRECTORY);
    }
    if (RemoveDirectoryW(path.c_str()) != 0) {
        return true;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_DIR_NOT_EMPTY && !IsMissing(error)) {
        ThrowFileError(folder, error);
    }
    return false;
}

} // namespace quellbox

#endif
