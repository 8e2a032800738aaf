#pragma once

#include <QDateTime>

namespace quellbox {

/// The present time; a port, so that midnight and daylight saving time can be tested.
class Clock {
public:
    virtual ~Clock() = default;

    /// The present moment in local time.
    virtual QDateTime Now() const { return QDateTime::currentDateTime(); }
};

} // namespace quellbox
