#pragma once

#include "messages/FileFailure.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QDateTime>

#include <vector>

namespace quellbox {

/// Brings back into an archive what was being sent when a program ended, unless another one may still be at it `now`.
/// Returns what the user is to know of each such message: it may have been delivered. What cannot be brought back now
/// is written to the log, and tried again at the next call.
std::vector<FileFailure> BringBackInterrupted(FileSystem& files, const Folder& archive, const QDateTime& now);

} // namespace quellbox
