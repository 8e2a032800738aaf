#include "dialogs/IntervalText.h"

#include "settings/TextConversion.h"

#include <algorithm>
#include <limits>

namespace quellbox {

bool IsIntervalText(const QString& typed) {
    return std::all_of(typed.begin(), typed.end(), [](QChar character) {
        return (character >= QLatin1Char('0') && character <= QLatin1Char('9')) || character == QLatin1Char('.');
    });
}

int WholeSeconds(const QString& text) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp(LeadingWholeNumber(text), double{Limits::min()}, double{Limits::max()}));
}

} // namespace quellbox
