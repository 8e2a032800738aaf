#include "archive/LocalTime.h"

#include <QDateTime>

#include <limits>

namespace quellbox {

namespace {

constexpr qint64 nsPerSecond = 1'000'000'000;

qint64 FloorDivide(qint64 value, qint64 divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

} // namespace

// Asking the time zone for each of 32,000 files would cost more than reading them, so its answer is kept for a quarter
// of an hour, the finest grid on which offsets change.
qint64 LocalSeconds(qint64 modifiedNs) {
    constexpr qint64 quarterHour = 900;
    thread_local qint64 knownQuarter = std::numeric_limits<qint64>::min();
    thread_local qint64 knownOffset = 0;
    const qint64 seconds = FloorDivide(modifiedNs, nsPerSecond);
    const qint64 quarter = FloorDivide(seconds, quarterHour);
    if (quarter != knownQuarter) {
        knownQuarter = quarter;
        knownOffset = QDateTime::fromSecsSinceEpoch(seconds).offsetFromUtc();
    }
    return seconds + knownOffset;
}

QDate LocalDay(qint64 modifiedNs) {
    return QDate(1970, 1, 1).addDays(FloorDivide(LocalSeconds(modifiedNs), 86400));
}

} // namespace quellbox
