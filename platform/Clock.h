#pragma once

#include <QDateTime>

#include <memory>

namespace quellbox {

/// The port to the present time, so that midnight and daylight saving time can be tested.
class Clock {
public:
    virtual ~Clock() = default;

    /// The present moment in local time.
    virtual QDateTime Now() const = 0;
};

/// The clock of the computer.
std::unique_ptr<Clock> MakeClock();

} // namespace quellbox
