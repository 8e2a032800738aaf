#pragma once

#include <QThreadPool>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>

namespace quellbox {

/// The port to the threads that wait for slow calls, so that the interface thread never does. Only this knows how many
/// there are.
class WorkPool {
public:
    /// What a piece of work is. Each kind has threads of its own, so that none keeps the other waiting.
    enum class Kind {
        Single,  ///< a few calls that the user waits for: a message, the folders in a dialog, the listing of an archive
        Series,  ///< a share of a long series of calls, as one for each message of an archive
        Journal, ///< what is written down about actions; always the same, single thread
    };

    virtual ~WorkPool() = default;

    /// How many pieces of work of a kind run at the same time, all users of the pool taken together.
    virtual int Most(Kind kind) const = 0;

    /// Runs `work`, which must not throw, on a thread of that kind as soon as one is free.
    virtual void Start(Kind kind, std::function<void()> work) = 0;

    /// A thread is stuck in a call that nobody waits for any more: until it is taken back, it does not count. Returns
    /// false when too many are set aside already; this one then counts, and is not to be taken back.
    virtual bool SetAside(Kind kind) = 0;
    virtual void TakeBack(Kind kind) = 0;
};

/// Real threads. The file system that work uses has to outlive this object, whose destructor waits for all work.
class ThreadWorkPool : public WorkPool {
public:
    ThreadWorkPool();

    int Most(Kind kind) const override;
    void Start(Kind kind, std::function<void()> work) override;
    bool SetAside(Kind kind) override;
    void TakeBack(Kind kind) override;

    /// Lets that many single pieces of work and as many of series run at once, for tests and benchmarks.
    void SetMost(int count);

    /// Waits until all work has ended, but no longer than `limit`. Returns whether it has.
    bool WaitForDone(std::chrono::milliseconds limit);

    /// Waits until all work has ended.
    void WaitForDone();

private:
    static constexpr size_t kinds = 3;

    QThreadPool& Threads(Kind kind) { return threads_[static_cast<size_t>(kind)]; }

    std::array<QThreadPool, kinds> threads_;
    std::atomic<int> aside_{0};
};

} // namespace quellbox
