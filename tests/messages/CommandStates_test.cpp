#include "messages/CommandStates.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

CommandStates Can(Activity activity, int rows, int selected, int level = 1) {
    return ComputeCommandStates({activity, rows, selected, level});
}

TEST(CommandStates, AnEmptyListLeavesWhatNeedsNoMessage) {
    const CommandStates can = Can(Activity::Idle, 0, 0);
    EXPECT_FALSE(can.edit || can.onSelected || can.tolerate || can.find || can.exportList);
    EXPECT_TRUE(can.list && can.whitelist && can.refresh && can.tolerateMenu);
}

TEST(CommandStates, AListOfWhichNothingIsInSightCanBeWidened) {
    CommandConditions now{Activity::Idle, 0, 0, 1};
    now.narrows = true;
    const CommandStates can = ComputeCommandStates(now);
    EXPECT_TRUE(can.edit);
    EXPECT_FALSE(can.find || can.exportList || can.onSelected);
}

TEST(CommandStates, RowsWithoutSelectionCanBeSearchedAndExported) {
    const CommandStates can = Can(Activity::Idle, 3, 0);
    EXPECT_TRUE(can.edit && can.find && can.exportList);
    EXPECT_FALSE(can.onSelected || can.tolerate);
}

TEST(CommandStates, OneSelectedRowCanBeDisposedOfAndTolerated) {
    const CommandStates can = Can(Activity::Idle, 3, 1);
    EXPECT_TRUE(can.onSelected && can.tolerate);
}

TEST(CommandStates, TwoSelectedRowsCanBeDisposedOfButNotTolerated) {
    const CommandStates can = Can(Activity::Idle, 3, 2);
    EXPECT_TRUE(can.onSelected);
    EXPECT_FALSE(can.tolerate);
}

TEST(CommandStates, ViewIsDecidedByThePressOfTheMouseButton) {
    CommandConditions now{Activity::Idle, 3, 2, 1};
    EXPECT_FALSE(ComputeCommandStates(now).view);
    now.offersView = true;
    EXPECT_TRUE(ComputeCommandStates(now).view);
    now.activity = Activity::Working;
    EXPECT_FALSE(ComputeCommandStates(now).view);
}

TEST(CommandStates, TheFilterWaitsForARefreshUnlessItHasToAskForTheDays) {
    CommandConditions now{Activity::Refreshing, 3, 0, 1};
    EXPECT_FALSE(ComputeCommandStates(now).filter);
    now.filterDays = 7;
    EXPECT_TRUE(ComputeCommandStates(now).filter);
    now.activity = Activity::Working;
    EXPECT_FALSE(ComputeCommandStates(now).filter);
    EXPECT_TRUE(Can(Activity::Idle, 3, 0).filter);
}

TEST(CommandStates, LevelZeroSwitchesTheWhitelistOff) {
    const CommandStates can = Can(Activity::Idle, 3, 1, 0);
    EXPECT_FALSE(can.tolerate || can.tolerateMenu || can.whitelist);
    EXPECT_TRUE(can.onSelected);
    EXPECT_TRUE(Can(Activity::Idle, 3, 1, 2).whitelist);
}

TEST(CommandStates, WhileTheWindowIsAtWorkOnlyARefreshCanBeAskedForAndThatOfAListBeingRefreshed) {
    CommandStates onlyRefresh;
    onlyRefresh.refresh = true;
    EXPECT_EQ(Can(Activity::Refreshing, 3, 1), onlyRefresh);
    EXPECT_EQ(Can(Activity::Working, 3, 1), CommandStates());
    EXPECT_EQ(Can(Activity::Closing, 3, 1), CommandStates());
}

} // namespace
} // namespace quellbox
