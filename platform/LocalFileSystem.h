#pragma once

#include "platform/FileSystem.h"

#include <memory>

namespace quellbox {

/// The files and folders of the computer, mounted shares included.
std::unique_ptr<FileSystem> MakeLocalFileSystem();

} // namespace quellbox
