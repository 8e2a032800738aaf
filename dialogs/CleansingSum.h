#pragma once

#include <QDate>
#include <QString>

#include <map>

namespace quellbox {

/// The messages that were last modified on the same day.
struct DayTotal {
    int count = 0;
    qint64 bytes = 0;

    bool operator==(const DayTotal&) const = default;
};

/// By local calendar day, so that each choice can be added up at once, however many messages there are.
using DayTotals = std::map<QDate, DayTotal>;

/// What a cleansing would remove.
struct CleansingSum {
    int count = 0;
    qint64 bytes = 0;
    QDate oldest; ///< local calendar day; null when there is nothing, as the newest one
    QDate newest;

    bool operator==(const CleansingSum&) const = default;
};

/// What of some messages CleansingTask would remove if it ran `today` with this choice of days.
CleansingSum SumOfCleansing(const DayTotals& messages, qint16 days, QDate today);

/// The same as a sentence, with numbers and days as they are written where the user lives.
QString CleansingSumText(const CleansingSum& sum);

} // namespace quellbox
