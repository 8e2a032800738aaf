#pragma once

#include <QString>
#include <QtGlobal>

namespace quellbox {

/// The number that a text begins with: leading blanks are skipped, then the longest prefix counts that forms a decimal
/// number (sign, fraction, exponent). 0 when the text does not begin with a number; infinite when it is beyond a
/// double.
double LeadingNumber(const QString& text);

/// The leading number of a text, rounded to an integer (halves to the even neighbour). Throws OverflowError when it
/// does not fit into 16 bits.
qint16 ToInteger16(const QString& text);

/// The leading number of a text, rounded to an integer (halves to the even neighbour). Throws OverflowError when it
/// does not fit into 32 bits.
qint32 ToInteger32(const QString& text);

/// "True" and "False" in any case, or a text that is a number as a whole (0 is false, any other true); blanks around it
/// do not count. Throws TypeMismatchError for every other text.
bool ToBoolean(const QString& text);

/// The text "True" or "False".
QString FromBoolean(bool value);

} // namespace quellbox
