#pragma once

#include <QDate>

namespace quellbox {

/// A file time (nanoseconds since 1970-01-01 UTC) in local time, as whole seconds since 1970.
qint64 LocalSeconds(qint64 modifiedNs);

/// The local calendar day of a file time (nanoseconds since 1970-01-01 UTC).
QDate LocalDay(qint64 modifiedNs);

} // namespace quellbox
