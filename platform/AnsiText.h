#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// A text in the system's ANSI code page; elsewhere than on Windows that is Windows-1252. A character that cannot be
/// written becomes '?'.
QByteArray AnsiText(const QString& text);

/// The character that a byte stands for in Windows-1252; U+FFFD where it stands for none.
QChar Windows1252Character(unsigned char byte);

/// A text in Windows-1252, with '?' for each character that it does not have.
QByteArray Windows1252Text(const QString& text);

} // namespace quellbox
