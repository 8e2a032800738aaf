#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// The readable form of a path's bytes. Valid UTF-8 stands for itself. Each byte that is no part of valid UTF-8, and
/// each byte of a real U+FFFD, becomes U+FFFD followed by two upper-case hexadecimal digits; PathBytes() undoes that.
/// Only systems whose names are bytes need this; on Windows a path is plain text.
QString PathText(const QByteArray& bytes);

/// The exact bytes of a path whose readable form PathText() gave; any other text gives its UTF-8.
QByteArray PathBytes(const QString& path);

} // namespace quellbox
