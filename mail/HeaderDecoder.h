#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Turns the raw value of a header field (what follows the colon, folds and line end included) into display text:
/// unfolded (RFC 5322), encoded words decoded (RFC 2047), undeclared text read by what the message tells, and cleansed
/// (see CleanseForDisplay). Addresses keep their form: name, quotes and angle brackets.
QString DecodeHeaderValue(QByteArrayView raw, const CharsetEvidence& evidence = CharsetEvidence());

} // namespace quellbox
