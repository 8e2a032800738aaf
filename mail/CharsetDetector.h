#pragma once

#include <QByteArray>

namespace quellbox {

/// The character set that the library uchardet takes the bytes for, by a MIME name in lower case; empty when it has no
/// idea. It judges by how frequent characters and their neighbours are, which needs a sentence or two: short texts are
/// often wrong.
QByteArray DetectCharset(QByteArrayView bytes);

} // namespace quellbox
