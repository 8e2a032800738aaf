#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Turns the bytes of a text part into text: its character set decoded (undeclared when `charset` is empty or
/// unknown), a byte order mark dropped, every line end CRLF.
QString DecodeTextPart(QByteArrayView bytes, QByteArrayView charset);

} // namespace quellbox
