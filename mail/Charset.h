#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quellbox {

/// Whether a text in lower case has the form of a character set's name, so that it may be given to a converter.
bool IsCharsetName(QByteArrayView name);

/// Decodes bytes of which nothing is known: UTF-8 when they are valid UTF-8, else Windows-1252. What belongs to a
/// message is decoded by its CharsetEvidence.
QString DecodeUndeclared(QByteArrayView bytes);

/// Decodes bytes of a named character set (a MIME name, any case). What is invalid in that character set becomes
/// U+FFFD; bytes of an unknown one are decoded as undeclared. Senders often name the small set and send the large one
/// (ISO-8859-1 for Windows-1252, GB2312 for GB18030), so the larger is used throughout. May be called from several
/// threads at once.
QString DecodeCharset(QByteArrayView bytes, QByteArrayView charset);

/// The same, but nothing for a name that is unknown, or that is ASCII and therefore tells nothing about these bytes.
std::optional<QString> DecodeNamed(QByteArrayView bytes, QByteArrayView charset);

/// The same for a name in lower case, but nothing if there are bytes that are no character in that character set, or
/// that are control characters beyond ASCII.
std::optional<QString> DecodeStrictly(QByteArrayView bytes, const QByteArray& charset);

} // namespace quellbox
