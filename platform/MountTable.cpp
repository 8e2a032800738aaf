#include "platform/MountTable.h"

#include "platform/PathBytes.h"

#include <QFile>
#include <QStringList>

#include <algorithm>

namespace quellbox {

namespace {

/// A field of the mount table, in which blanks and backslashes are three octal digits behind a backslash.
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

/// Whether a list of options, of the mount or of its file system, says so.
bool SaysReadOnly(const QString& options) {
    return options.split(QLatin1Char(',')).contains(QLatin1String("ro"));
}

/// Whom alone the kernel lets into a file system that a program provides; empty when the options say nothing of it.
QString OnlyUser(const QString& options) {
    const QLatin1String user("user_id=");
    QString number;
    for (const QString& option : options.split(QLatin1Char(','))) {
        if (option == QLatin1String("allow_other")) {
            return {};
        }
        if (option.startsWith(user)) {
            number = option.mid(user.size());
        }
    }
    return number;
}

/// Whether the mount stands directly or indirectly on the one with this id.
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

/// What comes first below the mount point in a path; empty when the path lies elsewhere.
QString FirstBelow(const Mount& mount, const QString& path) {
    return IsAtOrAbove(mount.point, path) ? path.mid(mount.point.size()).section(QLatin1Char('/'), 1, 1) : QString();
}

} // namespace

QString MountTableText() {
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    return table.open(QIODevice::ReadOnly) ? PathText(table.readAll()) : QString();
}

std::vector<Mount> ParseMountTable(const QString& mountTable) {
    std::vector<Mount> mounts;
    for (const QString& line : mountTable.split(QLatin1Char('\n'))) {
        // Some optional fields stand before a lone hyphen; type, source and options stand behind it.
        const QStringList fields = line.split(QLatin1Char(' '));
        const qsizetype hyphen = fields.indexOf(QStringLiteral("-"), 6);
        if (hyphen >= 0 && hyphen + 2 < fields.size()) {
            mounts.push_back({fields.at(0), fields.at(1), MountField(fields.at(3)), MountField(fields.at(4)),
                              fields.at(hyphen + 1), MountField(fields.at(hyphen + 2)),
                              SaysReadOnly(fields.at(5)) || SaysReadOnly(fields.value(hyphen + 3)), fields.at(2),
                              OnlyUser(fields.value(hyphen + 3))});
        }
    }
    return mounts;
}

bool IsCovered(const std::vector<Mount>& mounts, size_t index) {
    const Mount& mount = mounts[index];
    return std::any_of(mounts.begin() + static_cast<std::ptrdiff_t>(index) + 1, mounts.end(), [&](const Mount& later) {
        return IsAtOrAbove(later.point, mount.point) && !StandsOn(mounts, mount, later.id);
    });
}

bool IsAtOrAbove(const QString& folder, const QString& path) {
    const QLatin1Char slash('/');
    return path == folder || path.startsWith(folder.endsWith(slash) ? folder : folder + slash);
}

bool IsOfDesktop(const Mount& mount) {
    return mount.type == QLatin1String("fuse.gvfsd-fuse");
}

bool LieInTwoDesktopShares(const std::vector<Mount>& mounts, const QString& left, const QString& right) {
    return std::any_of(mounts.begin(), mounts.end(), [&](const Mount& mount) {
        if (!IsOfDesktop(mount)) {
            return false;
        }
        const QString leftShare = FirstBelow(mount, left);
        const QString rightShare = FirstBelow(mount, right);
        return !leftShare.isEmpty() && !rightShare.isEmpty() && leftShare != rightShare;
    });
}

bool IsUsersShare(const std::vector<Mount>& mounts, const QString& device) {
    return std::any_of(mounts.begin(), mounts.end(), [&device](const Mount& mount) {
        const bool isClient = mount.type == QLatin1String("fuse.smbnetfs") || IsOfDesktop(mount);
        return isClient && mount.device == device;
    });
}

} // namespace quellbox
