#include "platform/UncPath.h"

#include "platform/FolderPath.h"
#include "platform/MountTable.h"

#include <QUrl>

#include <algorithm>
#include <iterator>
#include <vector>

namespace quellbox {

namespace {

constexpr QChar slash(u'/');

/// Server, share and folders of a UNC path, without empty parts.
QStringList Components(QString path) {
    path.replace(QLatin1Char('\\'), slash);
    return path.split(slash, Qt::SkipEmptyParts);
}

/// The same after `.` and `..` have been resolved; `..` never leaves the share.
QStringList WantedComponents(const QString& path) {
    const QStringList given = Components(path);
    QStringList wanted = given.mid(0, 2);
    for (const QString& component : given.mid(2)) {
        if (component == QLatin1String("..")) {
            wanted.resize(std::max<qsizetype>(2, wanted.size() - 1));
        } else if (component != QLatin1String(".")) {
            wanted += component;
        }
    }
    return wanted;
}

bool BeginsWith(const QStringList& path, const QStringList& start) {
    if (start.size() < 2 || start.size() > path.size()) {
        return false;
    }
    for (qsizetype index = 0; index < start.size(); ++index) {
        if (path.at(index).compare(start.at(index), Qt::CaseInsensitive) != 0) {
            return false;
        }
    }
    return true;
}

/// `root`, followed by the components of `path` after the first `used` ones.
QString Join(const QString& root, const QStringList& path, qsizetype used, bool asFolder) {
    QString joined = root.endsWith(slash) ? root.chopped(1) : root;
    for (const QString& component : path.mid(used)) {
        joined += slash + component;
    }
    return asFolder || joined.isEmpty() ? joined + slash : joined;
}

/// A server or share of such a name would lead out of a folder with all servers.
bool IsDots(const QString& name) {
    return name == QLatin1String(".") || name == QLatin1String("..");
}

bool IsSeparator(QChar character) {
    return character == QLatin1Char('\\') || character == slash;
}

bool EndsWithSeparator(const QString& path) {
    return !path.isEmpty() && IsSeparator(path.back());
}

/// Whether something follows the last separator that is a name.
bool EndsWithName(const QString& path) {
    const auto separator = std::find_if(path.rbegin(), path.rend(), IsSeparator);
    const QString end = path.right(std::distance(path.rbegin(), separator));
    return !end.isEmpty() && !IsDots(end);
}

/// A name as smbnetfs shows it, and wants it to be called: it takes names for parts of a URL.
QString InNetworkFolder(QString name) {
    return name.replace(QLatin1Char('%'), QLatin1String("%25")).replace(QLatin1Char('@'), QLatin1String("%40"));
}

/// The same for what is no server. Behind the colon of a server stands its port.
QString BelowServer(const QString& name) {
    return InNetworkFolder(name).replace(QLatin1Char(':'), QLatin1String("%3A"));
}

bool IsShareType(const QString& type) {
    return type == QLatin1String("cifs") || type == QLatin1String("smb3") || type == QLatin1String("smbfs");
}

/// Server, share and folders of what a share mount shows.
QStringList MountedComponents(const Mount& mount) {
    QStringList mounted = Components(mount.source);
    const QStringList part = Components(mount.root);
    // The source names the mounted folder of the share already, unless it is a mount of a mount.
    if (mounted.mid(std::max<qsizetype>(2, mounted.size() - part.size())) != part) {
        mounted += part;
    }
    return mounted;
}

/// The part `name=` of a share mount's name.
QString MountPart(const QString& mount, QLatin1String name) {
    for (const QString& part : mount.mid(mount.indexOf(QLatin1Char(':')) + 1).split(QLatin1Char(','))) {
        if (part.startsWith(name)) {
            return QUrl::fromPercentEncoding(part.mid(name.size()).toUtf8());
        }
    }
    return {};
}

} // namespace

bool IsUncPath(const QString& path) {
    return IsShareText(path) && Components(path).size() >= 2;
}

QString FindInMountTable(const QString& uncPath, const QString& mountTable) {
    const QStringList wanted = WantedComponents(uncPath);
    const std::vector<Mount> mounts = ParseMountTable(mountTable);
    const Mount* found = nullptr;
    qsizetype used = 0;
    for (size_t index = 0; index < mounts.size(); ++index) {
        const Mount& mount = mounts[index];
        if (!IsShareType(mount.type)) {
            continue;
        }
        const QStringList mounted = MountedComponents(mount);
        // Of two places of the same folder, a mount of the share is preferred to a mount of its part, else the later
        // one.
        const bool isBetter = found == nullptr || mounted.size() > used ||
                              (mounted.size() == used && (mount.root == slash || found->root != slash));
        if (isBetter && BeginsWith(wanted, mounted) && !IsCovered(mounts, index)) {
            used = mounted.size();
            found = &mount;
        }
    }
    return found == nullptr ? QString() : Join(found->point, wanted, used, EndsWithSeparator(uncPath));
}

QString FindInShareMounts(const QString& uncPath, const QString& folder, const QStringList& mounts) {
    const QStringList wanted = WantedComponents(uncPath);
    for (const QString& mount : mounts) {
        if (!mount.startsWith(QLatin1String("smb-share:"))) {
            continue;
        }
        const QStringList mounted{MountPart(mount, QLatin1String("server=")),
                                  MountPart(mount, QLatin1String("share="))};
        if (BeginsWith(wanted, mounted)) {
            return Join(folder + slash + mount, wanted, mounted.size(), EndsWithSeparator(uncPath));
        }
    }
    return {};
}

QString FindInNetworkFolder(const QString& uncPath, const QString& mountTable) {
    QStringList wanted = WantedComponents(uncPath);
    if (wanted.size() < 2 || IsDots(wanted.at(0)) || IsDots(wanted.at(1))) {
        return {};
    }
    wanted[0] = InNetworkFolder(wanted.at(0));
    // The name of a file comes from its folder, which shows it so already.
    const qsizetype asShown = wanted.size() > 2 && EndsWithName(uncPath) ? 1 : 0;
    std::transform(wanted.begin() + 1, wanted.end() - asShown, wanted.begin() + 1, BelowServer);
    const std::vector<Mount> mounts = ParseMountTable(mountTable);
    for (size_t index = 0; index < mounts.size(); ++index) {
        const Mount& mount = mounts[index];
        if (mount.type == QLatin1String("fuse.smbnetfs") && mount.root == slash && !IsCovered(mounts, index)) {
            return Join(mount.point, wanted, 0, EndsWithSeparator(uncPath));
        }
    }
    return {};
}

} // namespace quellbox
