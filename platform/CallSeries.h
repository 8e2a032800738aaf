#pragma once

#include "platform/WorkPool.h"

#include <QTimer>

#include <exception>
#include <functional>
#include <memory>

namespace quellbox {

/// How a series of calls ended.
enum class SeriesEnd {
    Completed, ///< every item was handed over
    Cancelled, ///< those that had begun were
    Failed     ///< a call threw, and some were handed over; Failure() is what it threw
};

/// The engine of OrderedWork, which is what to use: it knows items by their numbers only.
///
/// Workers of the pool claim the items in order. At first there are few of them; how long the calls take decides how
/// many are added. The owner's thread is woken when the item that is next in order is there. It then takes, within a
/// time budget, what is there, and where items come quickly it lets them gather for some milliseconds. A call that
/// does not return holds up one worker only: others are added when nothing comes back any more.
///
/// The destructor does not wait for calls that are under way; what they use has to outlive the pool. What is called on
/// the owner's thread may destroy the series.
class CallSeries {
public:
    struct Plan {
        size_t count = 0;
        WorkPool::Kind kind = WorkPool::Kind::Series;
        int mostWorkers = 0;                     ///< no more at the same time; 0 sets no limit besides the pool's
        std::function<void(size_t)> call;        ///< on a worker's thread; leaves the result of an item for `take`
        std::function<void(size_t)> take;        ///< on the owner's thread, in order
        std::function<void(SeriesEnd)> finished; ///< on the owner's thread, once
    };

    /// The thread that makes this object is the owner's; it runs an event loop. Nothing is called before Start().
    CallSeries(WorkPool& pool, Plan plan);
    ~CallSeries();
    CallSeries(const CallSeries&) = delete;
    CallSeries& operator=(const CallSeries&) = delete;

    void Start();

    /// The same, but nothing is handed over before HandOver(), so that it can come behind another series.
    void StartHeldBack();
    void HandOver();

    /// No further item begins. What has begun is still handed over, and then the series ends.
    void Cancel();

    /// Ends the series before this returns. The results of calls that are under way are lost.
    void GiveUp();

    /// The same, but the results that are there are handed over first, also those behind a call that is under way.
    /// `take` must not destroy the series meanwhile.
    void TakeFinishedAndGiveUp();

    bool IsCancelled() const;

    /// How many items have been handed over, or were left out because the series was cancelled before they began.
    size_t Taken() const { return next_; }

    std::exception_ptr Failure() const;

private:
    struct Shared;

    void Wake();
    void TakeTurn();
    bool TakeWhatIsThere();
    void WaitForMore(bool tookSome);
    void LookForStall();
    void End(SeriesEnd how);
    SeriesEnd HowItEnds() const;
    size_t Count() const { return plan_->count; }

    std::shared_ptr<Shared> shared_;
    std::shared_ptr<const Plan> plan_; // outlives this object while a part of it runs
    bool* isGone_ = nullptr;           // set by the destructor, for the turn that it takes place in
    size_t next_ = 0;
    size_t leftOut_ = 0;
    bool ended_ = false;
    bool isHeldBack_ = false;
    bool isOverBudget_ = false;
    int gatherMs_ = 1;
    size_t doneAtLastLook_ = 0;
    QTimer again_; // goes on with what is there, or has been gathered
    QTimer stall_;
};

} // namespace quellbox
