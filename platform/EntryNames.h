#pragma once

#include "platform/FileSystem.h"
#include "platform/MessagePlaces.h"

#include <QStringList>

namespace quellbox {

/// Names (without folder) of the regular files in `folder`, symbolic links to one included, that are not hidden, in no
/// particular order. A call is made for a single file only where the folder does not report its type. Throws FileError.
QStringList VisibleFileNames(const FileSystem& files, const QString& folder);

/// The same of the places in which the messages of an archive are.
QStringList VisibleFileNames(const FileSystem& files, const Folder& archive, const MessagePlaces& places);

/// Those of them that a cleansing may delete.
QStringList CleansingNames(const FileSystem& files, const Folder& archive, const MessagePlaces& places);

/// Whether a text can be the name of a file in a folder, so that no path made of it leads anywhere else.
bool IsFileName(const QString& text);

/// Names (without folder) of the sub folders of `folder`, of links to folders too but not of hidden ones, in no
/// particular order. A call is made for a single one only where `folder` does not report its type. Throws FileError.
QStringList FolderNames(const FileSystem& files, const QString& folder);

} // namespace quellbox
