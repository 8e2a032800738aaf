#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Turns the bytes of a text part into text: its character set decoded (by what the message tells when `charset` is
/// empty or unknown), a byte order mark dropped, every line end CRLF.
QString DecodeTextPart(QByteArrayView bytes, QByteArrayView charset, const CharsetEvidence& evidence);

} // namespace quellbox
