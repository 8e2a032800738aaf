#pragma once

#ifdef _WIN32

#include <QString>

#include <windows.h>

namespace quellbox {

/// Gives a file another name on the same volume and never overwrites. Returns 0 or the system's error; after an error
/// the source is whole. Throws FileError for a path that no file can have.
DWORD RenameNoReplace(const QString& from, const QString& to);

/// FileSystem::Move() across volumes: copies contents, times and attributes under a temporary name, renames the copy
/// into place and removes the source, which nobody can write meanwhile. Of the source's named streams nothing is
/// copied. Throws FileError, and the message is then whole in the source's folder only, or, when nobody can tell
/// whether the source is still there, in the target's folder and perhaps in both.
void MoveByCopy(const QString& from, const QString& to);

} // namespace quellbox

#endif
