#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <vector>

class QThreadPool;

namespace quellbox {

/// A regular file of a folder.
struct FileEntry {
    QString name; ///< without the folder
    FileStatus status;
};

/// The regular files of `folder` (which ends with a separator) in order of arrival: time of last modification, then
/// name. A file that vanishes meanwhile is left out. The files of which the folder does not tell size and time are
/// looked at by as many threads as the measured latency of the first ones asks for; the calling thread is one of them,
/// the others are taken from `pool`, whose limit is raised when it is lower. May be called from a thread of `pool`.
/// Throws FileError when the folder cannot be read.
std::vector<FileEntry> FilesByArrival(const FileSystem& files, const QString& folder, QThreadPool& pool);

} // namespace quellbox
