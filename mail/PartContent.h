#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Decodes the bytes of a text by its declared character set, by what the message tells where `charset` is empty or
/// unknown, and drops a byte order mark.
QString DecodeText(QByteArrayView bytes, QByteArrayView charset, const CharsetEvidence& evidence = CharsetEvidence());

/// Turns the bytes of a text part into text: see DecodeText(); every line end is CRLF.
QString DecodeTextPart(QByteArrayView bytes, QByteArrayView charset, const CharsetEvidence& evidence);

} // namespace quellbox
