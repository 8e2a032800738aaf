#pragma once

#include <QByteArray>

namespace quellbox {

/// The Chinese character set whose pairs of bytes these are, "gb18030" or "big5", as far as all of them mean frequent
/// characters there; else empty. For a few words between ASCII, in which a detector sees nothing.
QByteArray GuessEastAsian(QByteArrayView bytes);

} // namespace quellbox
