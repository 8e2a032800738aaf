#pragma once

#include <QString>
#include <QStringList>

namespace quellbox {

/// True for the form `\\server\share`, with or without more behind it.
bool IsUncPath(const QString& path);

/// The local form of a UNC path, where `mountTable` (the text of /proc/self/mountinfo) says that its share or the
/// nearest folder of it is mounted and in sight, that is, not covered by what was mounted over it later. Servers and
/// shares are compared without regard to case; parts `.` and `..` lead nowhere above the share. Empty when the share is
/// not mounted.
QString FindInMountTable(const QString& uncPath, const QString& mountTable);

/// The same for the desktop's share mounts: `mounts` are the names in `folder`, as in
/// `smb-share:server=nas,share=archive`.
QString FindInShareMounts(const QString& uncPath, const QString& folder, const QStringList& mounts);

} // namespace quellbox
