#include "archive/LocalTime.h"

#include <QDateTime>

#include <chrono>
#include <limits>

namespace quellbox {

namespace {

constexpr qint64 nsPerSecond = 1'000'000'000;

qint64 FloorDivide(qint64 value, qint64 divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// Seconds of local time since 1970. Asking the time zone for each of 32,000 files would cost more than reading them,
// so its answer is kept for a quarter of an hour, the finest grid on which offsets change.
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

void PutDigits(QChar* target, unsigned value, int digits) {
    for (int place = digits - 1; place >= 0; --place) {
        target[place] = QLatin1Char(static_cast<char>('0' + value % 10));
        value /= 10;
    }
}

} // namespace

QString ListDate(qint64 modifiedNs) {
    const qint64 local = LocalSeconds(modifiedNs);
    const qint64 days = FloorDivide(local, 86400);
    const auto second = static_cast<unsigned>(local - days * 86400);
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{days}}};
    QString text = QStringLiteral("0000-00-00 00:00:00");
    QChar* at = text.data();
    PutDigits(at, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    PutDigits(at + 5, static_cast<unsigned>(date.month()), 2);
    PutDigits(at + 8, static_cast<unsigned>(date.day()), 2);
    PutDigits(at + 11, second / 3600, 2);
    PutDigits(at + 14, second / 60 % 60, 2);
    PutDigits(at + 17, second % 60, 2);
    return text;
}

QDate LocalDay(qint64 modifiedNs) {
    return QDate(1970, 1, 1).addDays(FloorDivide(LocalSeconds(modifiedNs), 86400));
}

} // namespace quellbox
