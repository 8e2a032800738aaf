#pragma once

#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include <QString>

namespace quellbox {

/// FileSystem::Move(). What `memory` says to be a regular file costs one call where the file system renames without
/// replacing, two where it has links instead, else three; a file of which it says nothing costs one call more, except
/// in the last case. The first file of a folder in which a better method fails pays for the attempts. Throws FileError.
void MoveFile(const QString& from, const QString& to, FolderMemory& memory);

/// FileSystem::Move() across file systems: copies contents, time and permissions under a temporary name, renames the
/// copy into place and removes the source, or the link when `from` is one. Throws FileError, and the message is then
/// whole in the source's folder only, or, when nobody can tell whether the source is still there, in the target's
/// folder and perhaps in both.
void MoveByCopy(const QString& from, const QString& to, FolderMemory& memory);

} // namespace quellbox

#endif
