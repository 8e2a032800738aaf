#pragma once

#ifndef _WIN32

#include <QString>

namespace quellbox {

/// FileSystem::IsRealFolder().
bool IsRealFolder(const QString& folder);

/// FileSystem::MakeFolder(). Returns whether there was none before. A folder that exists already costs two system
/// calls. Throws FileError.
bool MakeFolder(const QString& folder);

/// FileSystem::RemoveFolder(), with one system call. Throws FileError.
bool RemoveEmptyFolder(const QString& folder);

} // namespace quellbox

#endif
