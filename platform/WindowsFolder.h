#pragma once

#ifdef _WIN32

#include <QString>

namespace quellbox {

/// FileSystem::IsRealFolder().
bool IsRealFolder(const QString& folder);

/// FileSystem::MakeFolder(). Throws FileError.
void MakeHiddenFolder(const QString& folder);

/// FileSystem::RemoveFolder(). Throws FileError.
bool RemoveEmptyFolder(const QString& folder);

} // namespace quellbox

#endif
