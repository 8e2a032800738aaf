#pragma once

#ifdef _WIN32

#include "platform/RuntimeError.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <string>
#include <windows.h>

namespace quellbox {

/// Owns a handle of an open file.
class Handle {
public:
    explicit Handle(HANDLE value) : value_(value) {}
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE Value() const { return value_; }
    bool IsOpen() const { return value_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE value_;
};

/// What is the matter with a call that failed with `error`, an error number of the system.
FileProblem ProblemOf(DWORD error);

/// Throws the FileError for `path` with the system's text for `error`.
[[noreturn]] void ThrowFileError(const QString& path, DWORD error);

/// The form of a path for a system call; see LiteralWindowsPath(). Throws FileError for a path that is empty or holds
/// a NUL, which the call would take for the end of a shorter path.
std::wstring SystemPath(const QString& path);

/// Nanoseconds since 1970-01-01 UTC; a time beyond what they count becomes the first or the last one that they do.
qint64 UnixNs(const FILETIME& time);

bool IsFolder(DWORD attributes);

/// Whether the error means that the file or one of the folders of its path does not exist.
bool IsMissing(DWORD error);

/// Reads attributes, size and times of `path`, links followed. Returns false when that fails; GetLastError() says why.
bool GetStatus(const QString& path, WIN32_FILE_ATTRIBUTE_DATA& data);

/// True for a symbolic link itself, to a file or to a folder.
bool IsSymbolicLink(const std::wstring& systemPath);

/// The name of an entry, also one that begins with a byte order mark.
QString NameOf(const WIN32_FIND_DATAW& entry);

/// Calls `visit` for every entry of `folder` but "." and "..", in no particular order. Throws FileError, and what
/// `visit` throws.
void VisitEntries(const QString& folder, const std::function<void(const WIN32_FIND_DATAW&)>& visit);

/// Reads up to `capacity` bytes; 0 at the end. Throws FileError.
qint64 ReadSome(const Handle& file, char* buffer, qint64 capacity, const QString& path);

/// Writes all bytes. Throws FileError.
void WriteAll(const Handle& file, const char* bytes, qint64 count, const QString& path);

/// A new file beside its later place, under a name that no mail server picks up. The destructor removes it, also from
/// its place, unless Keep() or Replace() has been called. Until then no other program can open it, provided that the
/// volume renames files that are open; else others can from the renaming on.
class TemporaryFile {
public:
    /// Creates the file in the folder of `target`. Throws FileError.
    explicit TemporaryFile(const QString& target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const Handle& File() const { return *file_; }

    /// Brings the contents to the disk and gives the file its name; an existing one is an error. Throws FileError.
    void Place();

    /// Leaves the file in its place, where others can open it from now on.
    void Keep();

    /// Does both, and replaces an existing file. Throws FileError.
    void Replace();

private:
    void Flush();
    void Rename(bool replace);

    QString target_;
    std::wstring place_;
    std::wstring path_; // the present one; empty when the file is to stay
    std::optional<Handle> file_;
};

} // namespace quellbox

#endif
