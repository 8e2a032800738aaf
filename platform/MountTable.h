#pragma once

#include <QString>

#include <vector>

namespace quellbox {

/// A line of the mount table.
struct Mount {
    QString id;
    QString parent; ///< the id of the mount in which the mount point lies
    QString root;   ///< the part of the file system that is mounted
    QString point;
    QString type;
    QString source;
    bool isReadOnly = false;
    QString device; ///< the numbers of its device, as in "8:1"
    QString user;   ///< the number of the only user who gets at it, as in "1000"; empty when everybody does
};

/// The text of /proc/self/mountinfo; empty on systems that have no such file.
QString MountTableText();

/// The mounts in the text of /proc/self/mountinfo, in its order. Lines of another form are left out.
std::vector<Mount> ParseMountTable(const QString& mountTable);

/// Whether something was mounted later over the mount point of `mounts[index]` or a folder above it, so that the mount
/// is out of sight. What was only moved there later, as the root is when a system starts, does not hide what stands
/// on it.
bool IsCovered(const std::vector<Mount>& mounts, size_t index);

/// Whether `path` is the folder or lies below it; both without a separator at the end unless they are a root.
bool IsAtOrAbove(const QString& folder, const QString& path);

/// Whether a mount is the folder in which the desktop shows the shares that its file manager has opened.
bool IsOfDesktop(const Mount& mount);

/// Whether two absolute paths without links lie in two of the shares that the desktop mounts. These have one mount in
/// common, so the kernel takes them for one file system: it hands on a rename from one to the other, and the desktop's
/// client then copies the file, under its new name from the first byte on.
bool LieInTwoDesktopShares(const std::vector<Mount>& mounts, const QString& left, const QString& right);

/// Whether a device is that of a share whose client a user has started. Such a client knows neither owners nor how to
/// bring the names in a folder to the disk, and smbnetfs reads the whole folder when it is opened for that.
bool IsUsersShare(const std::vector<Mount>& mounts, const QString& device);

} // namespace quellbox
