#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace quellbox::bench {

/// Measures how long the window did not answer: the longest time between two turns of the event loop.
class TurnWatch {
public:
    TurnWatch() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Tick(); });
        sinceTurn_.start();
        timer_.start(1);
    }

    double LongestMs() const { return static_cast<double>(longestNs_) / 1e6; }
    int Turns() const { return turns_; }

private:
    void Tick() {
        longestNs_ = std::max(longestNs_, sinceTurn_.nsecsElapsed());
        sinceTurn_.start();
        ++turns_;
    }

    QTimer timer_;
    QElapsedTimer sinceTurn_;
    qint64 longestNs_ = 0;
    int turns_ = 0;
};

} // namespace quellbox::bench
