#include "platform/FolderPath.h"

#include "platform/UncPath.h"

#include <QDir>

namespace quellbox {

namespace {

bool HasSlashes() {
    return QDir::separator() == QLatin1Char('/');
}

} // namespace

bool IsShareText(const QString& path) {
    return path.startsWith(QLatin1String("\\\\"));
}

QChar SeparatorOf(const QString& path) {
    return IsShareText(path) ? backslash : QDir::separator();
}

Folder::Folder(const QString& path) : text_(path) {
    const QChar separator = SeparatorOf(path);
    const bool isComplete = path.endsWith(separator) || (!IsShareText(path) && path.endsWith(QLatin1Char('/')));
    if (!path.isEmpty() && !isComplete) {
        text_ += separator;
    }
}

QString RootOf(const QString& path) {
    const QChar separator = QDir::separator();
    if (HasSlashes()) {
        return path.startsWith(separator) ? QString(separator) : QString();
    }
    const bool hasDrive = path.size() > 1 && path.at(0).isLetter() && path.at(1) == QLatin1Char(':');
    const bool isAbsolute = hasDrive && (path.size() == 2 || path.at(2) == separator);
    return isAbsolute ? path.left(2) + separator : QString();
}

Qt::CaseSensitivity CaseOfPaths() {
    return HasSlashes() ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace quellbox
