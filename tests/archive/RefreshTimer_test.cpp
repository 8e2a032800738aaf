#include "archive/RefreshTimer.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <gtest/gtest.h>

#include <memory>

namespace quellbox {

namespace {

constexpr int laterTickMs = 60'000;
const QDate today(2026, 6, 15);

class RefreshTimerTest : public testing::Test {
protected:
    RefreshTimerTest() {
        state.LastRefreshDay = 15;
        state.AutoRefresh = 1;
    }

    TickAction Tick(int rowCount, QDate day = today, int intervalMs = laterTickMs) {
        return DecideTick(intervalMs, day, rowCount, state);
    }

    AppState state;
};

} // namespace

TEST_F(RefreshTimerTest, RefreshesFirstWhateverElseHolds) {
    state.LastRefreshDay = 0;
    state.AutoRefresh = 0;
    state.SelectedCount = 1;
    EXPECT_EQ(Tick(3, today, firstTickMs), TickAction::FirstRefresh);
    EXPECT_EQ(state.LastRefreshDay, 15);
}

TEST_F(RefreshTimerTest, TakesAnIntervalBelowASecondForTheFirstTick) {
    EXPECT_EQ(Tick(0, today, 999), TickAction::FirstRefresh);
    EXPECT_EQ(Tick(3, today, 1000), TickAction::IncrementalRefresh);
}

TEST_F(RefreshTimerTest, RefreshesFullyOncePerDayWithAutomaticRefreshOff) {
    state.AutoRefresh = 0;
    state.SelectedCount = 1;
    EXPECT_EQ(Tick(3, today.addDays(1)), TickAction::FullRefresh);
    EXPECT_EQ(state.LastRefreshDay, 16);
    EXPECT_EQ(Tick(3, today.addDays(1)), TickAction::Nothing);
}

TEST_F(RefreshTimerTest, RefreshesFullyOnANewDayWithAutomaticRefreshOn) {
    EXPECT_EQ(Tick(3, today.addDays(1)), TickAction::FullRefresh);
    EXPECT_EQ(Tick(3, today.addDays(1)), TickAction::IncrementalRefresh);
}

TEST_F(RefreshTimerTest, ComparesOnlyTheDayOfTheMonth) {
    EXPECT_EQ(Tick(3, today.addMonths(1)), TickAction::IncrementalRefresh);
    EXPECT_EQ(Tick(3, QDate(2027, 6, 15)), TickAction::IncrementalRefresh);
}

TEST_F(RefreshTimerTest, IsAutomaticOnlyWhenExactlyOne) {
    for (const qint16 setting : {qint16{0}, qint16{2}, qint16{-1}}) {
        state.AutoRefresh = setting;
        EXPECT_EQ(Tick(3), TickAction::Nothing) << setting;
        EXPECT_EQ(Tick(0), TickAction::Nothing) << setting;
    }
}

TEST_F(RefreshTimerTest, IsHeldBackByASelectionOfEvenOneRow) {
    for (const qint16 selected : {qint16{1}, qint16{2}}) {
        state.SelectedCount = selected;
        EXPECT_EQ(Tick(3), TickAction::Nothing) << selected;
    }
    state.SelectedCount = 0;
    EXPECT_EQ(Tick(3), TickAction::IncrementalRefresh);
}

TEST_F(RefreshTimerTest, RefillsAnEmptyListThoughRowsWereSelectedLast) {
    state.SelectedCount = 2;
    EXPECT_EQ(Tick(0), TickAction::RefillEmptyList);
    EXPECT_EQ(state.LastRefreshDay, 15);
}

TEST_F(RefreshTimerTest, CountsItsIntervalInSeconds) {
    EXPECT_EQ(RefreshIntervalMs(1), 1'000);
    EXPECT_EQ(RefreshIntervalMs(32'767), 32'767'000);
    EXPECT_EQ(RefreshIntervalMs(0), 0);
    EXPECT_EQ(RefreshIntervalMs(-5), 0);
}

namespace {

/// A timer whose ticks a test makes itself.
class RunningRefreshTimerTest : public testing::Test {
protected:
    RunningRefreshTimerTest() { state_.RefreshInterval = 60; }

    QTimer& Inside() { return *timer_.findChild<QTimer*>(QStringLiteral("tmrRefresh")); }
    bool Runs() { return Inside().isActive(); }

    AppState state_;
    RefreshTimer timer_{state_};
};

} // namespace

TEST_F(RunningRefreshTimerTest, StandsStillUntilItIsStartedAndTicksFirstSoon) {
    int ticks = 0;
    QObject::connect(&timer_, &RefreshTimer::Tick, [&ticks] { ++ticks; });
    EXPECT_FALSE(Runs());
    timer_.StartFirst();
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), firstTickMs);
    QTimerEvent over(Inside().timerId());
    QCoreApplication::sendEvent(&Inside(), &over);
    EXPECT_EQ(ticks, 1);
}

TEST_F(RunningRefreshTimerTest, TakesTheIntervalThatIsSetNow) {
    timer_.SetInterval();
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), 60'000);
    state_.RefreshInterval = 5;
    timer_.PutOff();
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), 5'000);
    state_.RefreshInterval = 0;
    timer_.SetInterval();
    EXPECT_FALSE(Runs());
}

TEST_F(RunningRefreshTimerTest, NeitherTheFirstTickNorATimerThatStandsStillIsPutOff) {
    timer_.PutOff();
    EXPECT_FALSE(Runs());
    timer_.StartFirst();
    timer_.PutOff();
    EXPECT_EQ(timer_.IntervalMs(), firstTickMs);
}

TEST_F(RunningRefreshTimerTest, RestsUntilTheLastOfSeveralHoldsGoes) {
    timer_.SetInterval();
    auto outer = std::make_unique<RefreshTimer::Hold>(timer_);
    {
        const RefreshTimer::Hold inner(timer_);
        EXPECT_FALSE(Runs());
    }
    EXPECT_FALSE(Runs());
    outer.reset();
    EXPECT_TRUE(Runs());
}

TEST_F(RunningRefreshTimerTest, TheFirstTickStillComesAfterAHold) {
    timer_.StartFirst();
    {
        const RefreshTimer::Hold hold(timer_);
        EXPECT_FALSE(Runs());
    }
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), firstTickMs);
}

TEST_F(RunningRefreshTimerTest, ATimerThatRanKeepsItsIntervalAndOneThatStoodStillTakesTheOneThatIsSet) {
    timer_.SetInterval();
    {
        const RefreshTimer::Hold hold(timer_);
        state_.RefreshInterval = 5;
    }
    EXPECT_EQ(timer_.IntervalMs(), 60'000);
    timer_.Stop();
    { const RefreshTimer::Hold hold(timer_); }
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), 5'000);
}

TEST_F(RunningRefreshTimerTest, AnIntervalThatIsSetDuringAHoldBeginsWhenItGoes) {
    timer_.StartFirst();
    {
        const RefreshTimer::Hold hold(timer_);
        timer_.SetInterval();
        EXPECT_FALSE(Runs());
    }
    EXPECT_TRUE(Runs());
    EXPECT_EQ(timer_.IntervalMs(), 60'000);
}

TEST_F(RunningRefreshTimerTest, NothingStartsAClosedTimer) {
    timer_.SetInterval();
    {
        const RefreshTimer::Hold hold(timer_);
        timer_.Close();
    }
    EXPECT_FALSE(Runs());
    timer_.SetInterval();
    EXPECT_FALSE(Runs());
}

TEST_F(RunningRefreshTimerTest, AHoldMayOutliveItsTimer) {
    auto timer = std::make_unique<RefreshTimer>(state_);
    const RefreshTimer::Hold hold(*timer);
    timer.reset();
    EXPECT_FALSE(Runs());
}

} // namespace quellbox
