#pragma once

#include "platform/CallSeries.h"

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace quellbox {

/// How the calls of an OrderedWork are run.
struct WorkOptions {
    WorkPool::Kind kind = WorkPool::Kind::Series;
    int mostWorkers = 0; ///< no more at the same time; 0 sets no limit besides the pool's
};

/// For calls that the user waits for, one after the other.
constexpr WorkOptions oneAtATime{WorkPool::Kind::Single, 1};

/// Many slow calls at once, whose results are handed over in order on the owner's thread. For the number of threads,
/// cancelling and destruction see CallSeries.
///
///     work.emplace(pool, names.size(),
///                  [&files, names](size_t item) { return files.Status(names[item]); },      // on a worker's thread
///                  [this](size_t item, std::optional<FileStatus> status) { Note(item, status); }, // on this one
///                  [this](SeriesEnd how) { ... });
///     work->Start();
template <class Result>
class OrderedWork {
public:
    using Call = std::function<Result(size_t item)>;
    using Take = std::function<void(size_t item, Result result)>;
    using Finished = std::function<void(SeriesEnd how)>;

    OrderedWork(WorkPool& pool, size_t count, Call call, Take take, Finished finished, const WorkOptions& options = {})
        : series_(pool, MakePlan(count, std::move(call), std::move(take), std::move(finished), options)) {}

    void Start() { series_.Start(); }
    void StartHeldBack() { series_.StartHeldBack(); }
    void HandOver() { series_.HandOver(); }
    void Cancel() { series_.Cancel(); }
    void GiveUp() { series_.GiveUp(); }
    void TakeFinishedAndGiveUp() { series_.TakeFinishedAndGiveUp(); }
    bool IsCancelled() const { return series_.IsCancelled(); }
    size_t Taken() const { return series_.Taken(); }
    std::exception_ptr Failure() const { return series_.Failure(); }

private:
    // A large result exists only from its making to its use.
    static constexpr bool isSmall = sizeof(Result) <= 4 * sizeof(void*);
    using Slot = std::conditional_t<isSmall, std::optional<Result>, std::unique_ptr<Result>>;

    static CallSeries::Plan MakePlan(size_t count, Call call, Take take, Finished finished,
                                     const WorkOptions& options) {
        const auto slots = std::make_shared<std::vector<Slot>>(count);
        CallSeries::Plan plan;
        plan.count = count;
        plan.kind = options.kind;
        plan.mostWorkers = options.mostWorkers;
        plan.finished = std::move(finished);
        plan.call = [slots, call = std::move(call)](size_t item) {
            if constexpr (isSmall) {
                (*slots)[item].emplace(call(item));
            } else {
                (*slots)[item] = std::make_unique<Result>(call(item));
            }
        };
        plan.take = [slots, take = std::move(take)](size_t item) {
            Slot result = std::exchange((*slots)[item], Slot());
            take(item, std::move(*result));
        };
        return plan;
    }

    CallSeries series_;
};

} // namespace quellbox
