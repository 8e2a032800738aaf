#pragma once

#ifndef _WIN32

#include "platform/FileSystem.h"

namespace quellbox {

/// Opens a folder once and its files relative to it. Throws FileError.
std::unique_ptr<FolderReader> OpenFolderReader(const QString& folder);

} // namespace quellbox

#endif
