#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Turns the raw value of a header field (what follows the colon, folds and line end included) into display text:
/// unfolded (RFC 5322), encoded words decoded (RFC 2047), undeclared 8-bit text read as UTF-8 if valid, else as
/// Windows-1252, and cleansed (see CleanseForDisplay). Addresses keep their form: name, quotes and angle brackets.
QString DecodeHeaderValue(QByteArrayView raw);

} // namespace quellbox
