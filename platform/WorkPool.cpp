#include "platform/WorkPool.h"

#include <QDeadlineTimer>

namespace quellbox {

namespace {

// So many calls of a share overlap that its delay hardly counts; more make no listing faster.
constexpr int mostOfSeries = 64;

// Those who click their way through a share that stalls still get an answer from another one.
constexpr int mostSingle = 8;

// Whoever meets that many calls that hang will not be helped by more threads.
constexpr int mostAside = 256;

} // namespace

ThreadWorkPool::ThreadWorkPool() {
    single_.setMaxThreadCount(mostSingle);
    series_.setMaxThreadCount(mostOfSeries);
}

int ThreadWorkPool::Most(Kind kind) const {
    return kind == Kind::Single ? single_.maxThreadCount() : series_.maxThreadCount();
}

void ThreadWorkPool::Start(Kind kind, std::function<void()> work) {
    Threads(kind).start(std::move(work));
}

bool ThreadWorkPool::SetAside(Kind kind) {
    if (++aside_ > mostAside) {
        --aside_;
        return false;
    }
    Threads(kind).releaseThread();
    return true;
}

void ThreadWorkPool::TakeBack(Kind kind) {
    --aside_;
    Threads(kind).reserveThread();
}

void ThreadWorkPool::SetMost(int count) {
    single_.setMaxThreadCount(count);
    series_.setMaxThreadCount(count);
}

bool ThreadWorkPool::WaitForDone(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    return single_.waitForDone(static_cast<int>(deadline.remainingTime())) &&
           series_.waitForDone(static_cast<int>(deadline.remainingTime()));
}

void ThreadWorkPool::WaitForDone() {
    single_.waitForDone();
    series_.waitForDone();
}

} // namespace quellbox
