#include "platform/Clock.h"

namespace quellbox {

namespace {

class SystemClock : public Clock {
public:
    QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

} // namespace

std::unique_ptr<Clock> MakeClock() {
    return std::make_unique<SystemClock>();
}

} // namespace quellbox
