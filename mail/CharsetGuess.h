#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quellbox {

/// What one may guess from bytes that are neither declared nor UTF-8. The detector's answer counts only when the bytes
/// can be read in that character set, and the text that comes out keeps to an alphabet: short texts mislead it. A text
/// that is a plausible one in Windows-1252 is not given to it at all. Empty when Windows-1252 is as good as any.
QByteArray GuessCharset(QByteArrayView bytes);

/// Whether bytes are a plausible text in a character set that was guessed from more than them.
bool IsPlausible(QByteArrayView bytes, const QByteArray& charset);

/// Whether bytes are a plausible text of a language that Windows-1252 was made for.
bool IsPlausiblyWestern(QByteArrayView bytes);

/// The lines of a text from which to guess: those with bytes beyond ASCII, up to a length that is enough for that.
QByteArray LinesBeyondAscii(QByteArrayView bytes);

/// The character set of 7-bit text by its escape sequences (ISO 2022: RFC 1468, RFC 1554, RFC 1557, RFC 1922); empty
/// when there are none.
QByteArray Iso2022Charset(QByteArrayView bytes);

} // namespace quellbox
