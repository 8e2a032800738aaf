#include "platform/UncPath.h"

#include "platform/PathBytes.h"

#include <QUrl>

namespace quellbox {

namespace {

constexpr QChar slash(u'/');

/// Server, share and folders of a UNC path, without empty parts.
QStringList Components(QString path) {
    path.replace(QLatin1Char('\\'), slash);
    return path.split(slash, Qt::SkipEmptyParts);
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

/// `root` and what stands in `path` behind its first `used` components.
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

bool IsShareType(const QString& type) {
    return type == QLatin1String("cifs") || type == QLatin1String("smb3") || type == QLatin1String("smbfs");
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
    return path.startsWith(QLatin1String("\\\\")) && Components(path).size() >= 2;
}

QString FindInMountTable(const QString& uncPath, const QString& mountTable) {
    const QStringList wanted = Components(uncPath);
    QString found;
    qsizetype used = 0;
    for (const QString& line : mountTable.split(QLatin1Char('\n'))) {
        // Some optional fields stand before a lone hyphen; type and source stand behind it.
        const QStringList fields = line.split(QLatin1Char(' '));
        const qsizetype hyphen = fields.indexOf(QStringLiteral("-"), 6);
        if (hyphen < 0 || hyphen + 2 >= fields.size() || !IsShareType(fields.at(hyphen + 1))) {
            continue;
        }
        QStringList mounted = Components(MountField(fields.at(hyphen + 2)));
        const QStringList part = Components(MountField(fields.at(3)));
        // The folder of the share that is mounted stands in the source already, unless it is a mount of a mount.
        if (mounted.mid(std::max<qsizetype>(2, mounted.size() - part.size())) != part) {
            mounted += part;
        }
        // Of two mounts at the same place the later one is in sight.
        if (BeginsWith(wanted, mounted) && mounted.size() >= used) {
            used = mounted.size();
            found = MountField(fields.at(4));
        }
    }
    return used == 0 ? QString() : Join(found, wanted, used, EndsWithSeparator(uncPath));
}

QString FindInShareMounts(const QString& uncPath, const QString& folder, const QStringList& mounts) {
    const QStringList wanted = Components(uncPath);
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
