#pragma once

#include <QDate>
#include <QString>

namespace quellbox {

/// The date filter: whether a file time (nanoseconds since 1970-01-01 UTC) lies fewer than `days` calendar-day
/// boundaries from today. "0" lets every file pass.
bool IsRecentFile(const QString& days, qint64 modifiedNs, QDate today);

/// The same for the local calendar day of a file time.
bool IsRecentDay(const QString& days, QDate modified, QDate today);

} // namespace quellbox
