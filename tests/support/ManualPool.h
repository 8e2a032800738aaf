#pragma once

#include "platform/WorkPool.h"

#include <deque>
#include <utility>

namespace quellbox {

/// A pool without threads: work waits until a test runs it, on the thread of the test.
class ManualPool : public WorkPool {
public:
    int Most(Kind /*kind*/) const override { return 64; }
    void Start(Kind /*kind*/, std::function<void()> work) override { waiting_.push_back(std::move(work)); }
    bool SetAside(Kind /*kind*/) override { return ++aside_ > 0; }
    void TakeBack(Kind /*kind*/) override { --aside_; }

    size_t Waiting() const { return waiting_.size(); }
    int Aside() const { return aside_; }

    /// Runs what waits longest; false when there is nothing.
    bool RunNext() {
        if (waiting_.empty()) {
            return false;
        }
        const std::function<void()> work = std::move(waiting_.front());
        waiting_.pop_front();
        work();
        return true;
    }

    void RunAll() {
        while (RunNext()) {
        }
    }

private:
    std::deque<std::function<void()>> waiting_;
    int aside_ = 0;
};

} // namespace quellbox
