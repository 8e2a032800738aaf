#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// A text in the system's ANSI code page; elsewhere than on Windows that is Windows-1252. A character that cannot be
/// written becomes '?'.
QByteArray AnsiText(const QString& text);

/// A text in Windows-1252, with '?' for each character that it does not know.
QByteArray Windows1252Text(const QString& text);

} // namespace quellbox
