#include "settings/AppState.h"

#include <gtest/gtest.h>

using namespace quellbox;

TEST(FilterCaptions, NameTheThreeDayWindows) {
    const auto captions = MakeFilterCaptions();
    EXPECT_EQ(captions[1], QStringLiteral(" (just today)"));
    EXPECT_EQ(captions[2], QStringLiteral(" (in two days)"));
    EXPECT_EQ(captions[7], QStringLiteral(" (one week)"));
}

TEST(FilterCaptions, AreEmptyForEveryOtherDayCount) {
    const auto captions = MakeFilterCaptions();
    for (const size_t days : {size_t{0}, size_t{3}, size_t{4}, size_t{5}, size_t{6}}) {
        EXPECT_TRUE(captions[days].isEmpty()) << days;
    }
}

TEST(AppState, StartsWithoutAnActiveDayFilter) {
    EXPECT_EQ(AppState().ActiveFilterDays, QStringLiteral("0"));
}
