#include "archive/DayWindow.h"

#include "archive/LocalTime.h"
#include "settings/TextConversion.h"

#include <cmath>

namespace quellbox {

bool IsRecentFile(const QString& days, qint64 modifiedNs, QDate today) {
    if (days == QLatin1String("0")) {
        return true;
    }
    return static_cast<double>(std::abs(LocalDay(modifiedNs).daysTo(today))) < LeadingNumber(days);
}

} // namespace quellbox
