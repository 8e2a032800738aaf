#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>

namespace quellbox {

/// The page as UTF-8, decoded by the declared character set, or by that which it declares itself.
QByteArray PageAsUtf8(const QByteArray& page, QByteArrayView charset,
                      const CharsetEvidence& evidence = CharsetEvidence());

} // namespace quellbox
