#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QString>
#include <QStringList>

namespace quellbox {

/// What the command line says about the archive to open.
struct ArchiveArgument {
    quellbox::Folder Folder; ///< absolute; empty when none is named, or when there is an error
    QString Error;           ///< why the program cannot start with these arguments, fit for the user; empty when it can
};

/// Reads the arguments that are no options: at most one, a folder. A relative one starts from `workingFolder`.
ArchiveArgument ReadArchiveArgument(const QStringList& arguments, const FileSystem& files,
                                    const QString& workingFolder);

} // namespace quellbox
