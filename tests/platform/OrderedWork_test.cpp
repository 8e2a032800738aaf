#include "platform/OrderedWork.h"
#include "platform/ReaderCount.h"
#include "tests/support/CallGate.h"
#include "tests/support/ManualPool.h"
#include "tests/support/RunUntil.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QString>
#include <QThread>

#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <stdexcept>
#include <thread>

namespace quellbox {
namespace {

class OrderedWorkTest : public testing::Test {
protected:
    ~OrderedWorkTest() override {
        gate_.LetAll();
        work_.reset();
        pool_.WaitForDone();
    }

    /// Starts `count` calls that each wait at the gate and give their number.
    void StartGated(size_t count, int mostWorkers = 0) {
        Make(
            pool_, count,
            [this](size_t item) {
                gate_.Pass(item);
                return item;
            },
            mostWorkers);
        work_->Start();
    }

    void Make(WorkPool& pool, size_t count, OrderedWork<size_t>::Call call, int mostWorkers = 0) {
        WorkOptions options;
        options.mostWorkers = mostWorkers;
        work_.emplace(
            pool, count, std::move(call),
            [this](size_t item, size_t result) {
                EXPECT_EQ(std::this_thread::get_id(), thread_);
                EXPECT_EQ(item, result);
                taken_.push_back(result);
            },
            [this](SeriesEnd how) { end_ = how; }, options);
    }

    bool WaitForEnd() {
        return RunUntil([this] { return end_.has_value(); });
    }

    static std::vector<size_t> UpTo(size_t count) {
        std::vector<size_t> numbers(count);
        std::iota(numbers.begin(), numbers.end(), size_t{0});
        return numbers;
    }

    const std::thread::id thread_ = std::this_thread::get_id();
    CallGate gate_;
    ThreadWorkPool pool_;
    std::optional<OrderedWork<size_t>> work_;
    std::vector<size_t> taken_;
    std::optional<SeriesEnd> end_;
};

TEST_F(OrderedWorkTest, HandsOverInOrderWhateverTheCallsEndIn) {
    StartGated(4);
    ASSERT_TRUE(gate_.WaitForInside(2));
    gate_.Let(1);
    ASSERT_TRUE(gate_.WaitForInside(2)) << "the next one has begun";
    gate_.Let(2);
    QCoreApplication::processEvents();
    EXPECT_TRUE(taken_.empty()) << "the first one is not there yet";
    gate_.Let(0);
    ASSERT_TRUE(RunUntil([this] { return taken_.size() == 3; }));
    EXPECT_FALSE(end_.has_value());
    gate_.Let(3);
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(taken_, UpTo(4));
    EXPECT_EQ(end_, SeriesEnd::Completed);
}

TEST_F(OrderedWorkTest, WithoutItemsEndsFromTheEventLoop) {
    StartGated(0);
    EXPECT_FALSE(end_.has_value());
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Completed);
}

TEST_F(OrderedWorkTest, WhatIsThereComesInFewTurns) {
    constexpr size_t count = 20'000;
    ManualPool pool;
    Make(pool, count, [](size_t item) { return item; });
    work_->Start();
    pool.RunAll();
    size_t turns = 0;
    size_t before = 0;
    ASSERT_TRUE(RunUntil([&] {
        turns += taken_.size() > before ? 1 : 0;
        before = taken_.size();
        return end_.has_value();
    }));
    EXPECT_EQ(taken_, UpTo(count));
    EXPECT_LT(turns, count / 10);
    work_.reset();
}

TEST_F(OrderedWorkTest, SlowCallsGetAsManyWorkersAsThePoolHas) {
    constexpr size_t count = 200;
    Make(pool_, count, [this](size_t item) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (item >= 100) {
            gate_.Pass(item);
        }
        return item;
    });
    work_->Start();
    EXPECT_TRUE(gate_.WaitForInside(64));
    gate_.LetAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(gate_.MostInside(), 64U);
    EXPECT_EQ(taken_, UpTo(count));
}

TEST_F(OrderedWorkTest, QuickCallsGetFewWorkers) {
    ManualPool pool;
    Make(pool, 1000, [](size_t item) { return item; });
    work_->Start();
    EXPECT_EQ(pool.Waiting(),
              static_cast<size_t>(ReaderCount(std::chrono::nanoseconds(0), QThread::idealThreadCount())));
    pool.RunNext();
    EXPECT_LT(pool.Waiting(), 16U) << "no more were added";
    pool.RunAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(taken_, UpTo(1000));
    work_.reset();
}

TEST_F(OrderedWorkTest, CallsThatHangFromTheStartHoldUpNobodyElse) {
    std::atomic<int> others = 0;
    Make(pool_, 50, [this, &others](size_t item) {
        if (item < 20) {
            gate_.Pass(item);
        } else {
            ++others;
        }
        return item;
    });
    work_->Start();
    EXPECT_TRUE(RunUntil([&others] { return others == 30; }));
    EXPECT_TRUE(taken_.empty());
    gate_.LetAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(taken_, UpTo(50));
}

TEST_F(OrderedWorkTest, NeverHasMoreWorkersThanItMay) {
    StartGated(10, 1);
    ASSERT_TRUE(gate_.WaitForInside(1));
    const QDeadlineTimer afterTheStall(300);
    EXPECT_TRUE(RunUntil([&afterTheStall] { return afterTheStall.hasExpired(); }));
    gate_.LetAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(gate_.MostInside(), 1U);
}

TEST_F(OrderedWorkTest, ACancelledSeriesHandsOverWhatHasBegunAndNoMore) {
    StartGated(10, 2);
    ASSERT_TRUE(gate_.WaitForInside(2));
    work_->Cancel();
    QCoreApplication::processEvents();
    EXPECT_FALSE(end_.has_value()) << "two calls are under way";
    gate_.LetAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Cancelled);
    EXPECT_EQ(taken_, UpTo(2));
    EXPECT_EQ(work_->Taken(), 10U);
}

TEST_F(OrderedWorkTest, CancelledBeforeAnythingBeganEndsAllTheSame) {
    ManualPool pool;
    Make(pool, 3, [](size_t item) { return item; });
    work_->Start();
    work_->Cancel();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Cancelled);
    pool.RunAll();
    QCoreApplication::processEvents();
    EXPECT_TRUE(taken_.empty());
    work_.reset();
}

TEST_F(OrderedWorkTest, CancelledAfterTheLastCallIsComplete) {
    ManualPool pool;
    Make(pool, 3, [](size_t item) { return item; });
    work_->Start();
    pool.RunAll();
    work_->Cancel();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Completed);
    EXPECT_EQ(taken_, UpTo(3));
    work_.reset();
}

TEST_F(OrderedWorkTest, GivenUpItEndsAtOnceAndLosesWhatIsUnderWay) {
    StartGated(10, 2);
    ASSERT_TRUE(gate_.WaitForInside(2));
    work_->GiveUp();
    EXPECT_EQ(end_, SeriesEnd::Cancelled);
    gate_.LetAll();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(taken_.empty());
}

TEST_F(OrderedWorkTest, DestructionWaitsForNothingAndAHungCallTakesNoThreadFromOthers) {
    pool_.SetMost(1);
    StartGated(3);
    ASSERT_TRUE(gate_.WaitForInside(1));
    work_.reset();
    EXPECT_FALSE(end_.has_value());
    Make(pool_, 5, [](size_t item) { return item; });
    work_->Start();
    ASSERT_TRUE(WaitForEnd()) << "the only thread is stuck, so there has to be another one";
    EXPECT_EQ(taken_, UpTo(5));
}

TEST_F(OrderedWorkTest, AThreadIsSetAsideOnceThoughTheSeriesIsGivenUpAndThenDestroyed) {
    ManualPool pool;
    Make(pool, 2, [this, &pool](size_t item) {
        work_->GiveUp();
        work_.reset();
        EXPECT_EQ(pool.Aside(), 1);
        return item;
    });
    work_->Start();
    pool.RunAll();
    EXPECT_EQ(pool.Aside(), 0);
}

TEST_F(OrderedWorkTest, GivenUpItMayHandOverWhatIsThereBehindACallThatHangs) {
    StartGated(4);
    ASSERT_TRUE(gate_.WaitForInside(2));
    gate_.Let(1);
    gate_.Let(2);
    gate_.Let(3);
    ASSERT_TRUE(gate_.WaitForInside(1));
    ASSERT_TRUE(RunUntil([this] { return gate_.Passed() == 3; }));
    EXPECT_TRUE(taken_.empty());
    work_->TakeFinishedAndGiveUp();
    EXPECT_EQ(end_, SeriesEnd::Cancelled);
    EXPECT_LE(taken_.size(), 3U);
    EXPECT_GE(taken_.size(), 2U) << "the last one may just be leaving its call";
}

TEST_F(OrderedWorkTest, AThreadThatWasSetAsideIsTakenBack) {
    ManualPool pool;
    Make(pool, 2, [this, &pool](size_t item) {
        work_.reset(); // as if the owner went while the call is under way
        EXPECT_EQ(pool.Aside(), 1);
        return item;
    });
    work_->Start();
    pool.RunAll();
    EXPECT_EQ(pool.Aside(), 0);
    EXPECT_TRUE(taken_.empty());
}

TEST_F(OrderedWorkTest, WhatACallThrowsEndsTheSeries) {
    Make(pool_, 100, [](size_t item) {
        if (item == 3) {
            throw std::runtime_error("no more");
        }
        return item;
    });
    work_->Start();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Failed);
    ASSERT_TRUE(work_->Failure());
    EXPECT_THROW(std::rethrow_exception(work_->Failure()), std::runtime_error);
    ASSERT_GE(taken_.size(), 3U);
    EXPECT_EQ(std::vector<size_t>(taken_.begin(), taken_.begin() + 3), UpTo(3));
}

TEST_F(OrderedWorkTest, WhoeverTakesAResultMayDestroyTheSeries) {
    ManualPool pool;
    std::optional<OrderedWork<size_t>> other;
    bool wasTaken = false;
    other.emplace(
        pool, 3, [](size_t item) { return item; },
        [&other, &wasTaken, kept = QStringLiteral("kept")](size_t, size_t) {
            other.reset();
            EXPECT_EQ(kept, QStringLiteral("kept"));
            wasTaken = true;
        },
        [](SeriesEnd) { FAIL() << "nobody is there any more"; });
    other->Start();
    pool.RunAll();
    ASSERT_TRUE(RunUntil([&wasTaken] { return wasTaken; }));
}

TEST_F(OrderedWorkTest, TheEndMayDestroyTheSeries) {
    bool ended = false;
    auto other = std::make_unique<std::optional<OrderedWork<QString>>>();
    QStringList texts;
    other->emplace(
        pool_, 3, [](size_t item) { return QString::number(item); }, [&texts](size_t, QString text) { texts += text; },
        [&](SeriesEnd) {
            other.reset();
            ended = true;
        });
    (*other)->Start();
    ASSERT_TRUE(RunUntil([&ended] { return ended; }));
    EXPECT_EQ(texts, QStringList({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
}

TEST_F(OrderedWorkTest, HeldBackItHandsNothingOverUntilItMay) {
    Make(pool_, 100, [](size_t item) { return item; });
    work_->StartHeldBack();
    pool_.WaitForDone();
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(taken_.empty());
    EXPECT_FALSE(end_.has_value());
    work_->HandOver();
    EXPECT_TRUE(taken_.empty()) << "it comes from the event loop";
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(taken_, UpTo(100));
    EXPECT_EQ(end_, SeriesEnd::Completed);
}

TEST_F(OrderedWorkTest, HeldBackItMayHandOverWhileItIsUnderWay) {
    Make(pool_, 4, [this](size_t item) {
        gate_.Pass(item);
        return item;
    });
    work_->StartHeldBack();
    gate_.Let(0);
    ASSERT_TRUE(RunUntil([this] { return gate_.Passed() == 1; }));
    EXPECT_TRUE(taken_.empty());
    work_->HandOver();
    ASSERT_TRUE(RunUntil([this] { return taken_.size() == 1; }));
    gate_.LetAll();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(taken_, UpTo(4));
}

TEST_F(OrderedWorkTest, HeldBackItTellsAFailureWhenItMayHandOver) {
    Make(pool_, 1, [](size_t) -> size_t { throw std::runtime_error("no more"); });
    work_->StartHeldBack();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(end_.has_value());
    work_->HandOver();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(end_, SeriesEnd::Failed);
}

TEST_F(OrderedWorkTest, HeldBackItIsGivenUpAtOnce) {
    ManualPool pool;
    Make(pool, 3, [](size_t item) { return item; });
    work_->StartHeldBack();
    work_->GiveUp();
    EXPECT_EQ(end_, SeriesEnd::Cancelled);
    work_->HandOver();
    pool.RunAll();
    QCoreApplication::processEvents();
    EXPECT_TRUE(taken_.empty());
    work_.reset();
}

/// More than a slot holds by itself.
struct Large {
    std::array<size_t, 32> values{};
};

TEST_F(OrderedWorkTest, LargeResultsArriveToo) {
    std::vector<size_t> seen;
    bool ended = false;
    OrderedWork<Large> large(
        pool_, 100,
        [](size_t item) {
            Large result;
            result.values.back() = item;
            return result;
        },
        [&seen](size_t, const Large& result) { seen.push_back(result.values.back()); },
        [&ended](SeriesEnd) { ended = true; });
    large.Start();
    ASSERT_TRUE(RunUntil([&ended] { return ended; }));
    EXPECT_EQ(seen, UpTo(100));
}

TEST_F(OrderedWorkTest, TheOwnerRunsItsEventsWhileMuchIsTaken) {
    constexpr size_t count = 400;
    ManualPool pool;
    work_.emplace(
        pool, count, [](size_t item) { return item; },
        [this](size_t, size_t result) {
            // A sleep is not as short everywhere, nor as long.
            const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(200);
            while (std::chrono::steady_clock::now() < end) {
            }
            taken_.push_back(result);
        },
        [this](SeriesEnd how) { end_ = how; });
    work_->Start();
    pool.RunAll();
    int eventsBeforeTheEnd = 0;
    QTimer other;
    other.callOnTimeout([&] { eventsBeforeTheEnd += end_.has_value() ? 0 : 1; });
    other.start(0);
    ASSERT_TRUE(WaitForEnd());
    EXPECT_GE(eventsBeforeTheEnd, 3);
    EXPECT_EQ(taken_, UpTo(count));
    work_.reset();
}

} // namespace
} // namespace quellbox
