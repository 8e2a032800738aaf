#pragma once

#ifdef _WIN32

#include <QString>

namespace quellbox {

/// The text for a system call, valid as long as `text` lives. For the call it ends at the first NUL.
inline const wchar_t* Wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// A text from the system. Unlike with QString::fromWCharArray(), a byte order mark at its start is a character like
/// any other.
inline QString FromWide(const wchar_t* text, size_t length) {
    return QString(reinterpret_cast<const QChar*>(text), static_cast<qsizetype>(length));
}

} // namespace quellbox

#endif
