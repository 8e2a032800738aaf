#include "dialogs/IntervalText.h"

#include "settings/TextConversion.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quellbox {

bool IsIntervalText(const QString& typed) {
    return std::all_of(typed.begin(), typed.end(), [](QChar character) {
        return (character >= QLatin1Char('0') && character <= QLatin1Char('9')) || character == QLatin1Char('.');
    });
}

int WholeSeconds(const QString& text) {
    using Limits = std::numeric_limits<int>;
    // The default rounding mode of the processor takes halves to the even neighbour.
    const double rounded = std::nearbyint(LeadingNumber(text));
    return static_cast<int>(std::clamp(rounded, double{Limits::min()}, double{Limits::max()}));
}

} // namespace quellbox
