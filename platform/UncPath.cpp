#include "platform/UncPath.h"

#include "platform/FolderPath.h"
#include "platform/PathBytes.h"

#include <QUrl>

#include <algorithm>
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

bool EndsWithSeparator(const QString& path) {
    return path.endsWith(QLatin1Char('\\')) || path.endsWith(slash);
}

/// A field of the mount table, in which a backslash and three octal digits stand for a blank or a backslash.
QString MountField(const QString& field) {
    const QByteArray bytes = PathBytes(field);
    QByteArray plain;
    for (qsizetype index = 0; index < bytes.size(); ++index) {
        bool octal = false;
        const int value = bytes.at(index) == '\\' ? bytes.mid(index + 1, 3).toInt(&octal, 8) : 0;
        plain += octal ? static_cast<char>(value) : bytes.at(index);
        index += octal ? 3 : 0;
    }
    return PathText(plain);
}

bool IsShareType(const QString& type) {
    return type == QLatin1String("cifs") || type == QLatin1String("smb3") || type == QLatin1String("smbfs");
}

/// A line of the mount table.
struct Mount {
    QString id;
    QString parent; ///< the id of the mount in which the mount point lies
    QString root;   ///< the part of the file system that is mounted
    QString point;
    QString type;
    QString source;
};

std::vector<Mount> ParseMountTable(const QString& mountTable) {
    std::vector<Mount> mounts;
    for (const QString& line : mountTable.split(QLatin1Char('\n'))) {
        // A hyphen ends the optional fields; type and source follow it.
        const QStringList fields = line.split(QLatin1Char(' '));
        const qsizetype hyphen = fields.indexOf(QStringLiteral("-"), 6);
        if (hyphen >= 0 && hyphen + 2 < fields.size()) {
            mounts.push_back({fields.at(0), fields.at(1), MountField(fields.at(3)), MountField(fields.at(4)),
                              fields.at(hyphen + 1), MountField(fields.at(hyphen + 2))});
        }
    }
    return mounts;
}

bool IsAtOrAbove(const QString& folder, const QString& path) {
    return path == folder || path.startsWith(folder.endsWith(slash) ? folder : folder + slash);
}

/// Whether the mount point lies, directly or indirectly, in the mount with this id.
bool StandsOn(const std::vector<Mount>& mounts, const Mount& mount, const QString& id) {
    QString parent = mount.parent;
    for (size_t step = 0; step < mounts.size() && parent != id; ++step) {
        const auto next =
            std::find_if(mounts.begin(), mounts.end(), [&](const Mount& other) { return other.id == parent; });
        if (next == mounts.end()) {
            return false;
        }
        parent = next->parent;
    }
    return parent == id;
}

/// Whether something was mounted later over the mount point or a folder above it. A mount that was only moved there
/// later, as the root is when a system starts, does not hide the mounts that lie in it.
bool IsCovered(const std::vector<Mount>& mounts, size_t index) {
    const Mount& mount = mounts[index];
    return std::any_of(mounts.begin() + static_cast<std::ptrdiff_t>(index) + 1, mounts.end(), [&](const Mount& later) {
        return IsAtOrAbove(later.point, mount.point) && !StandsOn(mounts, mount, later.id);
    });
}

/// Server, share and folders of a mounted share.
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

} // namespace quellbox
