#pragma once

#include <QByteArray>
#include <QHash>

namespace quellbox {

/// The colours that have a name (CSS Color Module Level 3, 4.3), as 0xRRGGBB; the names are in lower case.
const QHash<QByteArray, quint32>& CssColorNames();

} // namespace quellbox
