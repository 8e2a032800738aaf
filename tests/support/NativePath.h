#pragma once

#include <QString>

namespace quellbox {

/// The form that a path written with slashes has on this system. On Windows a full one lies on drive C, and its
/// separators are backslashes; a path on a share stays as it is.
inline QString NativePath(QString path) {
#ifdef _WIN32
    if (path.startsWith(QLatin1String("\\\\"))) {
        return path;
    }
    if (path.startsWith(QLatin1Char('/'))) {
        path.prepend(QStringLiteral("C:"));
    }
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
#else
    return path;
#endif
}

/// The other way: a text as it would be on a system with slashes. A text without a path on drive C stays as it is.
inline QString SlashPath(QString text) {
#ifdef _WIN32
    if (text == QLatin1String("C:")) { // a drive, as it is listed
        return QStringLiteral("/");
    }
    if (text.contains(QLatin1String("C:\\"))) {
        text.replace(QLatin1String("C:\\"), QLatin1String("/")).replace(QLatin1Char('\\'), QLatin1Char('/'));
    }
#endif
    return text;
}

} // namespace quellbox
