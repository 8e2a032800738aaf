#include "archive/LocalTime.h"

#include <QDateTime>

#include <limits>

namespace quellbox {

namespace {

constexpr qint64 nsPerSecond = 1'000'000'000;

qint64 FloorDivide(qint64 value, qint64 divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

qint64 OffsetAt(qint64 seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds).offsetFromUtc();
}

} // namespace

// Asking the time zone for each of 32,000 files would cost as much as parsing them. Its answer is kept for the six
// hours around, at both ends of which it is the same: no zone changes its offset twice in so short a time.
qint64 LocalSeconds(qint64 modifiedNs) {
    constexpr qint64 sixHours = 6 * 3600;
    thread_local qint64 known = std::numeric_limits<qint64>::min();
    thread_local qint64 knownOffset = 0;
    const qint64 seconds = FloorDivide(modifiedNs, nsPerSecond);
    const qint64 period = FloorDivide(seconds, sixHours);
    if (period == known) {
        return seconds + knownOffset;
    }
    const qint64 offset = OffsetAt(period * sixHours);
    if (OffsetAt((period + 1) * sixHours) != offset) {
        return seconds + OffsetAt(seconds);
    }
    known = period;
    knownOffset = offset;
    return seconds + offset;
}

QDate LocalDay(qint64 modifiedNs) {
    return QDate(1970, 1, 1).addDays(FloorDivide(LocalSeconds(modifiedNs), 86400));
}

} // namespace quellbox
