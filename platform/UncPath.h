#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

namespace quellbox {

/// Separates the parts of a UNC path, and of every path of Windows.
inline constexpr QChar backslash(u'\\');

/// True for the form `\\server\share`, with or without more behind it.
bool IsUncPath(const QString& path);

/// The local form of a UNC path, where `mountTable` (the text of /proc/self/mountinfo) says that its share or the
/// nearest folder of it is mounted and visible, that is, not hidden by a later mount. Servers and
/// shares are compared without regard to case; `.` and `..` are resolved and never leave the share. Empty when the
/// share is not mounted.
QString FindInMountTable(const QString& uncPath, const QString& mountTable);

/// The same for the desktop's share mounts: `mounts` are the names in `folder`, as in
/// `smb-share:server=nas,share=archive`.
QString FindInShareMounts(const QString& uncPath, const QString& folder, const QStringList& mounts);

/// The same where smbnetfs shows all servers in one folder. Whether it finds the share is not known before it is asked.
/// Share and folders have the names that they have on the server, and become what smbnetfs calls them; what follows the
/// last separator is the name of a file as its folder is listed here, and stays.
QString FindInNetworkFolder(const QString& uncPath, const QString& mountTable);

} // namespace quellbox
