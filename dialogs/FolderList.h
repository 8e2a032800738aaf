#pragma once

#include "platform/FileSystem.h"
#include "platform/Volumes.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace quellbox {

/// What the directory list shows of one folder: the folders from the root down to it, then its sub folders.
class FolderList {
public:
    FolderList() = default;

    /// Lists nothing below `folder`, an absolute local path.
    explicit FolderList(const QString& folder) : FolderList(folder, {}) {}

    /// `subFolders` are names, in any order.
    FolderList(const QString& folder, QStringList subFolders);

    int Count() const { return static_cast<int>(above_.size() + below_.size()); }

    /// The entry of the folder itself; -1 in an empty list.
    int Opened() const { return static_cast<int>(above_.size()) - 1; }

    /// How many folders stand above the entry.
    int Depth(int index) const { return std::min(index, static_cast<int>(above_.size())); }

    /// The full path, without a separator at its end unless it is a root.
    QString Path(int index) const;

    /// What the user reads: the name, or the path of a root.
    QString Label(int index) const;

private:
    QStringList above_; // paths
    QStringList below_; // names
};

/// Lists a folder. Throws FileError when it cannot be read.
FolderList ListFolder(const FileSystem& files, const QString& folder);

/// What the directory selection lists at first: `folder` when it is a root or an existing folder on one of the volumes
/// and can be read, and otherwise `currentFolder`, the one that the process works in, or the root of a volume when that
/// is no local folder. The list is empty when there is no volume either. Takes as long as the volume of `folder` does.
FolderList ListFirstFolder(const FileSystem& files, const std::vector<Volume>& volumes, const QString& folder,
                           const QString& currentFolder);

/// Index of the volume that a local path lies on; -1 for a relative path and when there is none.
int VolumeOf(const std::vector<Volume>& volumes, const QString& path);

/// A volume as messages name it: its root, without the separator at its end where that is no root by itself.
QString DriveOf(const Volume& volume);

/// A volume as the drive list shows it: the drive, and its label where it has one.
QString DriveLabel(const Volume& volume);

} // namespace quellbox
