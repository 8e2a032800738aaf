#pragma once

#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include <QString>

#include <optional>
#include <sys/stat.h>

namespace quellbox {

/// FileSystem::Move(). A regular file of a listed folder costs one system call where the file system supports
/// RenameMethod::Atomic, and two with the others. Of the first two methods,
/// those that fail cost one more call for the first file of a folder. With the first two methods, a file that is not
/// known to be regular costs one more call, unless the caller has `before`, the result of lstat() for the source.
/// Throws FileError.
void MoveFile(const QString& from, const QString& to, FolderMemory& memory,
              std::optional<struct stat> before = std::nullopt);

/// FileSystem::Move() across file systems: copies contents, time and permissions under a temporary name, renames the
/// copy into place and removes the source, or the link when `from` is one. Throws FileError, and the message is then
/// whole in the source's folder only, or, when it cannot be found out whether the source is still there, in the
/// target's folder and perhaps in both.
void MoveByCopy(const QString& from, const QString& to, FolderMemory& memory);

} // namespace quellbox

#endif
