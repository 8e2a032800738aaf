#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>

namespace quellbox::soak {

/// Measures how long the window did not answer: the longest time between two turns of the event loop, but for what the
/// thread waited for a processor that other programs had.
class GapWatch {
public:
    GapWatch() {
        schedule_.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.callOnTimeout([this] { Tick(); });
        waited_ = WaitedNs();
        sinceTurn_.start();
        timer_.start(1);
    }

    double LongestMs() const { return static_cast<double>(longestNs_) / 1e6; }

    /// The longest time between two turns as a user sees it on a computer that has much else to do.
    double LongestSeenMs() const { return static_cast<double>(longestSeenNs_) / 1e6; }

private:
    /// The second number of schedstat, see the kernel's Documentation/scheduler/sched-stats.rst.
    qint64 WaitedNs() {
        schedule_.seek(0);
        return schedule_.readAll().split(' ').value(1).toLongLong();
    }

    void Tick() {
        const qint64 waited = WaitedNs();
        const qint64 seen = sinceTurn_.nsecsElapsed();
        longestSeenNs_ = std::max(longestSeenNs_, seen);
        longestNs_ = std::max(longestNs_, seen - (waited - waited_));
        waited_ = waited;
        sinceTurn_.start();
    }

    QFile schedule_{QStringLiteral("/proc/thread-self/schedstat")};
    QTimer timer_;
    QElapsedTimer sinceTurn_;
    qint64 waited_ = 0;
    qint64 longestNs_ = 0;
    qint64 longestSeenNs_ = 0;
};

} // namespace quellbox::soak
