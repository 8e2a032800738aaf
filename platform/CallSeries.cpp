#include "platform/CallSeries.h"

#include "platform/ReaderCount.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <utility>

namespace quellbox {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr qint64 turnBudgetMs = 8;  // of one turn of the owner's event loop
constexpr int longestGatherMs = 16; // a frame
constexpr int stallMs = 100;        // so long nothing may come back before there are more workers
constexpr int callsToMeasure = 8;   // so many tell whether they go to memory, to a disk or to a share
constexpr std::chrono::milliseconds shortestMeasurement{20}; // but for the first; in less a hiccup weighs too much
constexpr size_t quickStep = 16;                             // quick items are claimed by the handful, slow ones singly

} // namespace

struct CallSeries::Shared {
    Shared(WorkPool& threads, size_t items, WorkPool::Kind kindOfWork, int mostAtOnce, std::function<void(size_t)> work,
           CallSeries* series)
        : pool(threads), count(items), kind(kindOfWork), most(mostAtOnce), call(std::move(work)),
          done(std::make_unique<std::atomic<bool>[]>(items)), owner(series) {}

    WorkPool& pool;
    const size_t count;
    const WorkPool::Kind kind;
    const int most;
    const std::function<void(size_t)> call;

    const std::unique_ptr<std::atomic<bool>[]> done; // by item
    std::atomic<size_t> unclaimed{0};
    std::atomic<size_t> doneCount{0};
    std::atomic<size_t> awaited{0};     // the item that is handed over next
    std::atomic<bool> ownerWaits{true}; // for the awaited item, and wants to be woken by it
    std::atomic<bool> cancelled{false};
    std::atomic<int> busy{0};     // workers between two looks at `cancelled`
    std::atomic<size_t> step{1};  // items claimed at a time
    std::atomic<int> measured{0}; // calls since the last decision
    std::atomic<qint64> measuredNs{0};
    std::atomic<int> measurements{0};
    std::atomic<bool> isFullyStaffed{false};

    QMutex mutex; // of everything below
    CallSeries* owner;
    int workers = 0; // that have been started
    int aside = 0;   // of those, how many the pool does not count, being stuck in calls that nobody waits for
    std::exception_ptr failure;

    static void Grow(const std::shared_ptr<Shared>& self, int wanted) {
        const QMutexLocker lock(&self->mutex);
        const size_t left = self->count - std::min(self->count, self->unclaimed.load());
        const size_t room = static_cast<size_t>(std::max(0, std::min(wanted, self->most) - self->workers));
        for (size_t added = std::min(room, left); added > 0 && !self->cancelled; --added) {
            ++self->workers;
            self->pool.Start(self->kind, [self] { WorkOn(self); });
        }
        self->isFullyStaffed = self->workers >= self->most;
    }

    static void WorkOn(const std::shared_ptr<Shared>& self) {
        while (!self->cancelled) {
            const size_t step = self->step.load(std::memory_order_relaxed);
            const size_t begin = self->unclaimed.fetch_add(step);
            if (begin >= self->count) {
                return;
            }
            const size_t end = std::min(begin + step, self->count);
            const auto start = SteadyClock::now();
            for (size_t item = begin; item < end; ++item) {
                if (!self->Run(item)) {
                    return;
                }
            }
            Measure(self, SteadyClock::now() - start, static_cast<int>(end - begin));
        }
    }

    /// Returns false when the series has been cancelled. The owner, who counts the busy ones after it has cancelled,
    /// either sees this one or is seen by it.
    bool Run(size_t item) {
        ++busy;
        if (cancelled) {
            Leave();
            return false;
        }
        try {
            call(item);
            done[item].store(true);
        } catch (...) {
            Fail(std::current_exception());
        }
        const bool isLast = ++doneCount == count;
        Leave();
        if (isLast || item == awaited.load()) {
            WakeOwner(isLast);
        }
        return !cancelled;
    }

    void Leave() {
        const int others = --busy;
        if (!cancelled) {
            return;
        }
        if (others == 0) {
            WakeOwner(true);
        }
        const QMutexLocker lock(&mutex);
        if (aside > 0) {
            --aside;
            pool.TakeBack(kind);
        }
    }

    /// Nobody waits for the calls that are under way any more.
    void Abandon() {
        const QMutexLocker lock(&mutex);
        cancelled = true;
        if (owner == nullptr) {
            return; // and they are set aside already
        }
        owner = nullptr;
        for (int stuck = busy; stuck > 0; --stuck) {
            aside += pool.SetAside(kind) ? 1 : 0;
        }
    }

    void Fail(std::exception_ptr thrown) {
        const QMutexLocker lock(&mutex);
        if (!failure) {
            failure = std::move(thrown);
        }
        cancelled = true;
    }

    void WakeOwner(bool always) {
        if (!ownerWaits.exchange(false) && !always) {
            return;
        }
        const QMutexLocker lock(&mutex); // which keeps the owner alive
        if (owner != nullptr) {
            owner->Wake();
        }
    }

    /// Calls that wait for an answer are to overlap. The number of workers only grows: what was in a cache may be
    /// followed by what is not.
    static void Measure(const std::shared_ptr<Shared>& self, std::chrono::nanoseconds taken, int calls) {
        if (self->isFullyStaffed.load(std::memory_order_relaxed)) {
            return;
        }
        const std::chrono::nanoseconds total(self->measuredNs += taken.count());
        const int number = self->measured += calls;
        const bool isFirst = self->measurements.load(std::memory_order_relaxed) == 0;
        const bool isPlain = number >= 2 && total / number >= std::chrono::milliseconds(1);
        if (!isPlain && (number < callsToMeasure || (!isFirst && total < shortestMeasurement))) {
            return;
        }
        ++self->measurements;
        self->measured = 0;
        self->measuredNs = 0;
        const int cores = QThread::idealThreadCount();
        const int wanted = ReaderCount(total / number, cores);
        const bool isQuick = wanted <= ReaderCount(std::chrono::nanoseconds(0), cores);
        self->step = isQuick ? quickStep : 1;
        Grow(self, wanted);
    }
};

CallSeries::CallSeries(WorkPool& pool, Plan plan) : plan_(std::make_shared<const Plan>(std::move(plan))) {
    const int limit = pool.Most(plan_->kind);
    const int most = plan_->mostWorkers > 0 ? std::min(plan_->mostWorkers, limit) : limit;
    shared_ = std::make_shared<Shared>(pool, Count(), plan_->kind, most, plan_->call, this);
    again_.setSingleShot(true);
    again_.setTimerType(Qt::PreciseTimer);
    again_.callOnTimeout([this] { TakeTurn(); });
    stall_.setInterval(stallMs);
    stall_.callOnTimeout([this] { LookForStall(); });
}

CallSeries::~CallSeries() {
    shared_->Abandon();
    if (isGone_ != nullptr) {
        *isGone_ = true;
    }
}

void CallSeries::Start() {
    if (Count() == 0) {
        again_.start(0);
        return;
    }
    stall_.start();
    Shared::Grow(shared_, ReaderCount(std::chrono::nanoseconds(0), QThread::idealThreadCount()));
}

void CallSeries::StartHeldBack() {
    isHeldBack_ = true;
    Start();
}

void CallSeries::HandOver() {
    isHeldBack_ = false;
    if (!ended_) {
        again_.start(0);
    }
}

void CallSeries::Cancel() {
    shared_->cancelled = true;
    if (!ended_) {
        again_.start(0); // nothing may be under way that would wake this thread
    }
}

void CallSeries::GiveUp() {
    shared_->Abandon();
    if (!ended_) {
        End(SeriesEnd::Cancelled);
    }
}

void CallSeries::TakeFinishedAndGiveUp() {
    shared_->Abandon();
    if (ended_) {
        return;
    }
    const std::shared_ptr<const Plan> plan = plan_;
    for (; next_ < Count(); ++next_) {
        if (shared_->done[next_]) {
            plan->take(next_);
        }
    }
    End(SeriesEnd::Cancelled);
}

bool CallSeries::IsCancelled() const {
    return shared_->cancelled;
}

std::exception_ptr CallSeries::Failure() const {
    const QMutexLocker lock(&shared_->mutex);
    return shared_->failure;
}

// On a worker's thread. What is posted is dropped with the timer.
void CallSeries::Wake() {
    QMetaObject::invokeMethod(
        &again_, [this] { TakeTurn(); }, Qt::QueuedConnection);
}

void CallSeries::TakeTurn() {
    if (ended_ || isHeldBack_) {
        return;
    }
    again_.stop();
    const size_t before = next_;
    if (!TakeWhatIsThere()) {
        return;
    }
    if (next_ == Count()) {
        End(HowItEnds());
    } else {
        WaitForMore(next_ > before);
    }
}

// What has not begun when the series is cancelled is left out. Returns false when the series has been given up or
// destroyed by whoever took a result.
bool CallSeries::TakeWhatIsThere() {
    QElapsedTimer spent;
    spent.start();
    const std::shared_ptr<const Plan> plan = plan_;
    bool isGone = false;
    bool* const outer = std::exchange(isGone_, &isGone); // a turn may run inside a turn, behind a dialog
    const bool nothingComes = shared_->cancelled && shared_->busy == 0;
    isOverBudget_ = false;
    while (next_ < Count() && !isOverBudget_) {
        const bool isThere = shared_->done[next_];
        if (!isThere && !nothingComes) {
            break;
        }
        const size_t item = next_++;
        if (!isThere) {
            ++leftOut_;
            continue;
        }
        plan->take(item);
        if (isGone) {
            if (outer != nullptr) {
                *outer = true;
            }
            return false;
        }
        if (ended_) {
            isGone_ = outer;
            return false;
        }
        isOverBudget_ = spent.elapsed() >= turnBudgetMs;
    }
    isGone_ = outer;
    return true;
}

void CallSeries::WaitForMore(bool tookSome) {
    const bool areQuick = shared_->step == quickStep;
    if (isOverBudget_) {
        again_.start(0); // after whatever else waits for this thread
        return;
    }
    if (tookSome && areQuick && !shared_->cancelled) {
        again_.start(gatherMs_);
        gatherMs_ = std::min(2 * gatherMs_, longestGatherMs);
        return;
    }
    gatherMs_ = 1;
    shared_->awaited = next_;
    shared_->ownerWaits = true;
    // It may have come before it was awaited.
    if (shared_->done[next_] && shared_->ownerWaits.exchange(false)) {
        again_.start(0);
    }
}

// Calls that hang must not hold up those that would not.
void CallSeries::LookForStall() {
    const size_t done = shared_->doneCount;
    if (done == doneAtLastLook_) {
        shared_->step = 1; // or a worker that hangs would keep items that it has only claimed
        Shared::Grow(shared_, shared_->most);
    }
    doneAtLastLook_ = done;
    if (shared_->unclaimed >= Count()) {
        stall_.stop();
    }
}

// The last thing that happens here, since whoever is told may destroy this object.
void CallSeries::End(SeriesEnd how) {
    ended_ = true;
    again_.stop();
    stall_.stop();
    const std::shared_ptr<const Plan> plan = plan_;
    plan->finished(how);
}

SeriesEnd CallSeries::HowItEnds() const {
    if (Failure()) {
        return SeriesEnd::Failed;
    }
    return leftOut_ > 0 ? SeriesEnd::Cancelled : SeriesEnd::Completed;
}

} // namespace quellbox
