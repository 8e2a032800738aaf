#pragma once

#include <QByteArray>

namespace quellbox {

/// A message as it is sent after the command DATA (RFC 5321, section 4.5.2), without the dot that ends it: each line
/// ends with CRLF, and what begins with a dot has one more. A CR or LF alone becomes CRLF too: servers that take it for
/// the end of a line and servers that do not would see different messages, which is how messages are smuggled in.
QByteArray SmtpText(const QByteArray& message);

/// The message with lines that end with CRLF; a CR or LF alone becomes that.
QByteArray WithCrLf(const QByteArray& message);

/// The size of such a text as servers count it: without the dots that were added (RFC 1870, section 5).
qint64 SmtpTextSize(const QByteArray& text);

} // namespace quellbox
