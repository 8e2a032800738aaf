#pragma once

#include <QChar>

namespace quellbox {

/// Whether it is one of the ten digits of ASCII; QChar::isDigit() also knows those of other scripts.
inline bool IsAsciiDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

} // namespace quellbox
