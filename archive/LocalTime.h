#pragma once

#include <QDate>
#include <QString>

namespace quellbox {

/// A file time (nanoseconds since 1970-01-01 UTC) in local time as "yyyy-mm-dd hh:mm:ss".
QString ListDate(qint64 modifiedNs);

/// The local calendar day of a file time (nanoseconds since 1970-01-01 UTC).
QDate LocalDay(qint64 modifiedNs);

} // namespace quellbox
