#include "platform/WindowsPath.h"

#include "platform/UncPath.h"

#include <QStringList>

namespace quellbox {

namespace {

bool HasDrive(const QString& path) {
    const char16_t letter = path.isEmpty() ? u'\0' : path.at(0).toLower().unicode();
    return letter >= u'a' && letter <= u'z' && path.mid(1, 2) == QLatin1String(":\\");
}

/// The names of the path after "." and ".." have been resolved. The first `fixed` names are the root, which ".." does
/// not leave.
QStringList ResolvedNames(const QString& path, qsizetype fixed) {
    QStringList taken;
    for (const QString& name : path.split(backslash, Qt::SkipEmptyParts)) {
        if (name == QLatin1String("..") && taken.size() >= fixed) {
            if (taken.size() > fixed) {
                taken.removeLast();
            }
        } else if (name != QLatin1String(".")) {
            taken += name;
        }
    }
    return taken;
}

} // namespace

QString LiteralWindowsPath(const QString& path) {
    QString native = path;
    native.replace(QLatin1Char('/'), backslash);
    if (native.startsWith(QLatin1String(R"(\\?\)")) || native.startsWith(QLatin1String(R"(\\.\)"))) {
        return native;
    }
    const bool isShare = native.startsWith(QLatin1String(R"(\\)"));
    if (!isShare && !HasDrive(native)) {
        return {};
    }
    const qsizetype fixed = isShare ? 2 : 1; // server and share, or the drive
    const QStringList names = ResolvedNames(native, fixed);
    const QString prefix = isShare ? QStringLiteral(R"(\\?\UNC\)") : QStringLiteral(R"(\\?\)");
    const QString literal = prefix + names.join(backslash);
    return names.size() <= fixed ? literal + backslash : literal;
}

} // namespace quellbox
