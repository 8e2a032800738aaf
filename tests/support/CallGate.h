#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>

namespace quellbox {

/// Holds calls of other threads until a test lets each of them end. It lets all go when it is destroyed; threads that
/// may still be in it have to be waited for before.
class CallGate {
public:
    /// For the other threads: waits until `call` may end.
    void Pass(size_t call) {
        std::unique_lock lock(mutex_);
        inside_.insert(call);
        most_ = std::max(most_, inside_.size());
        changed_.notify_all();
        changed_.wait(lock, [&] { return open_ || let_.count(call) > 0; });
        inside_.erase(call);
        ++passed_;
        changed_.notify_all();
    }

    void Let(size_t call) {
        const std::lock_guard lock(mutex_);
        let_.insert(call);
        changed_.notify_all();
    }

    void LetAll() {
        const std::lock_guard lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }

    /// Waits until so many calls are inside; false when that takes too long.
    bool WaitForInside(size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return inside_.size() >= count; });
    }

    /// How many calls were inside at the same time.
    size_t MostInside() {
        const std::lock_guard lock(mutex_);
        return most_;
    }

    /// How many calls have ended.
    size_t Passed() {
        const std::lock_guard lock(mutex_);
        return passed_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<size_t> inside_;
    std::set<size_t> let_;
    size_t most_ = 0;
    size_t passed_ = 0;
    bool open_ = false;
};

} // namespace quellbox
