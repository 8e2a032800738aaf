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
/// name. A file that vanishes meanwhile is left out. Where the folder does not report size
/// and time, Status() is called by as many threads as suit the measured latency of the first calls; the calling thread
/// is one of them, the others are taken from `pool`, whose limit is raised when it is lower. May be called from a
/// thread of `pool`. Throws FileError when the folder cannot be read.
std::vector<FileEntry> FilesByArrival(const FileSystem& files, const QString& folder, QThreadPool& pool);

} // namespace quellbox
