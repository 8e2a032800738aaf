#pragma once

#include <QString>

namespace quellbox {

/// Whether every character of a typed text is a digit or a full stop. The full stop is let through deliberately,
/// although an interval is a whole number of seconds.
bool IsIntervalText(const QString& typed);

/// The number that a text begins with, rounded to a whole number (halves to the even neighbour); 0 when it does not
/// begin with a number, the outermost integer when it is beyond them. Bounds of the interval are not applied.
int WholeSeconds(const QString& text);

} // namespace quellbox
