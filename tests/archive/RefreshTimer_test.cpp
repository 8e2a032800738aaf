#include "archive/RefreshTimer.h"

#include <gtest/gtest.h>

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

} // namespace quellbox
