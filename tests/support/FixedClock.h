#pragma once

#include "platform/Clock.h"

#include <utility>

namespace quellbox {

/// A clock that shows what it was set to.
class FixedClock : public Clock {
public:
    explicit FixedClock(QDateTime now) : now_(std::move(now)) {}

    void Set(QDateTime now) { now_ = std::move(now); }

    QDateTime Now() const override { return now_; }

private:
    QDateTime now_;
};

} // namespace quellbox
