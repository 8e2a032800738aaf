#pragma once

#ifdef _WIN32

#include <QString>

namespace quellbox {

/// The text for a system call, as long as `text` lives. The call sees it end at the first NUL.
inline const wchar_t* Wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// A text that the system gives. Unlike QString::fromWCharArray() this takes a byte order mark in front for a character
/// as any other.
inline QString FromWide(const wchar_t* text, size_t length) {
    return QString(reinterpret_cast<const QChar*>(text), static_cast<qsizetype>(length));
}

} // namespace quellbox

#endif
