#include "archive/DayWindow.h"

#include "archive/LocalTime.h"
#include "settings/TextConversion.h"

#include <cmath>

namespace quellbox {

bool IsRecentFile(const QString& days, qint64 modifiedNs, QDate today) {
    return days == QLatin1String("0") || IsRecentDay(days, LocalDay(modifiedNs), today);
}

bool IsRecentDay(const QString& days, QDate modified, QDate today) {
    return days == QLatin1String("0") || static_cast<double>(std::abs(modified.daysTo(today))) < LeadingNumber(days);
}

} // namespace quellbox
