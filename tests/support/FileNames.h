#pragma once

#include "platform/FileSystem.h"

namespace quellbox {

/// The names of everything in `folder` that may be a regular file, in no particular order. Throws FileError.
inline QStringList FileNames(const FileSystem& files, const QString& folder) {
    QStringList names;
    for (const FolderEntry& entry : files.FileEntries(folder)) {
        names += entry.name;
    }
    return names;
}

} // namespace quellbox
