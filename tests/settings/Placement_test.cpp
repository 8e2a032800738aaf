#include "settings/Placement.h"

#include "settings/SettingsTable.h"
#include "tests/support/MemorySettingsStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

using namespace quellbox;

namespace quellbox {

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest looks for this name.
void PrintTo(const Placement& placement, std::ostream* out) {
    *out << placement.windowState << ": " << placement.left << ", " << placement.top << ", " << placement.width << " x "
         << placement.height;
}

} // namespace quellbox

namespace {

constexpr int screenWidth = 28800;  // 1920 pixels
constexpr int screenHeight = 16200; // 1080 pixels
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

void Put(SettingsStore& store, const char* key, const char* value) {
    WriteSetting(store, QString::fromUtf8(key), QString::fromUtf8(value));
}

Placement Main(const SettingsStore& store) {
    return ReadPlacement(store, QStringLiteral("frmMain"));
}

} // namespace

TEST(Twips, AreFifteenToAPixel) {
    EXPECT_EQ(ToTwips(1), 15);
    EXPECT_EQ(ToTwips(-3), -45);
    EXPECT_EQ(ToPixels(45), 3);
}

TEST(Twips, RoundToTheNearestPixel) {
    EXPECT_EQ(ToPixels(7), 0);
    EXPECT_EQ(ToPixels(8), 1);
    EXPECT_EQ(ToPixels(22), 1);
    EXPECT_EQ(ToPixels(23), 2);
    EXPECT_EQ(ToPixels(-7), 0);
    EXPECT_EQ(ToPixels(-8), -1);
}

TEST(Twips, StayWithinTheRangeOfIntegers) {
    EXPECT_EQ(ToTwips(largest), largest);
    EXPECT_EQ(ToTwips(smallest), smallest);
    EXPECT_EQ(ToPixels(largest), 143165576);
    EXPECT_EQ(ToPixels(smallest), -143165577);
}

TEST(ComputePlacement, PutsANewWindowIntoTheUpperThirdOfTheScreen) {
    const Placement expected{0, 4800, 1800, 19200, 10800};
    EXPECT_EQ(ComputePlacement({}, screenWidth, screenHeight), expected);
}

TEST(ComputePlacement, TruncatesEachDivision) {
    // 2 * 100 / 3 = 66.7, (100 - 66) / 2 = 17; 2 * 101 / 3 = 67.3, (101 - 67) / 3 = 11.3
    const Placement expected{0, 17, 11, 66, 67};
    EXPECT_EQ(ComputePlacement({}, 100, 101), expected);
    // (11 - 4) / 2 = 3.5 and (12 - 1) / 3 = 3.7
    const Placement ofSmallWindow{0, 3, 3, 4, 1};
    EXPECT_EQ(ComputePlacement({0, 0, 0, 4, 1}, 11, 12), ofSmallWindow);
}

TEST(ComputePlacement, TruncatesTowardsZeroWhenTheWindowIsLargerThanTheScreen) {
    // (100 - 105) / 2 = -2.5 and (100 - 105) / 3 = -1.7
    const Placement expected{0, -2, -1, 105, 105};
    EXPECT_EQ(ComputePlacement({0, 0, 0, 105, 105}, 100, 100), expected);
}

TEST(ComputePlacement, TreatsAStoredLeftOfZeroAsAbsent) {
    const Placement expected{2, 11400, 15, 6000, 4500};
    EXPECT_EQ(ComputePlacement({2, 0, 15, 6000, 4500}, screenWidth, screenHeight), expected);
}

TEST(ComputePlacement, CentresByTheStoredSize) {
    const Placement placed = ComputePlacement({0, 0, 0, 8800, 6200}, screenWidth, screenHeight);
    EXPECT_EQ(placed.left, 10000);
    EXPECT_EQ(placed.top, 3333);
}

TEST(ComputePlacement, KeepsWhatIsStoredEvenOffTheScreen) {
    const Placement stored{1, -90000, 1, 1, 900000};
    EXPECT_EQ(ComputePlacement(stored, screenWidth, screenHeight), stored);
}

TEST(ComputePlacement, SurvivesTheLargestAndSmallestSizes) {
    const Placement wide = ComputePlacement({0, 0, 0, largest, smallest}, screenWidth, screenHeight);
    EXPECT_EQ(wide.left, (screenWidth - largest) / 2);
    EXPECT_EQ(wide.top, 715833282) << "a third of the sum of the height of the screen and 2147483648";
}

TEST(ReadPlacement, GivesZerosForAFormThatWasNeverStored) {
    EXPECT_EQ(Main(MemorySettingsStore()), Placement());
}

TEST(ReadPlacement, ReadsTheFiveKeysOfItsForm) {
    MemorySettingsStore store;
    Put(store, "MainWindowState", "2");
    Put(store, "MainLeft", "-15");
    Put(store, "MainTop", "30");
    Put(store, "MainWidth", "40000");
    Put(store, "MainHeight", "50000");
    Put(store, "ViewLeft", "99");
    const Placement expected{2, -15, 30, 40000, 50000};
    EXPECT_EQ(Main(store), expected);
    EXPECT_EQ(ReadPlacement(store, QStringLiteral("frmView")).left, 99);
}

TEST(ReadPlacement, ReadsATextThatIsNoNumberAsZero) {
    MemorySettingsStore store;
    Put(store, "MainWindowState", "large");
    Put(store, "MainLeft", "");
    Put(store, "MainTop", "12.5");
    const Placement expected{0, 0, 12, 0, 0};
    EXPECT_EQ(Main(store), expected);
}

TEST(ReadPlacement, ReadsANumberBeyondItsTypeAsZeroAndLeavesItStored) {
    MemorySettingsStore store;
    Put(store, "MainWindowState", "32768");
    Put(store, "MainLeft", "2147483648");
    Put(store, "MainTop", "2147483647");
    const Placement expected{0, 0, largest, 0, 0};
    EXPECT_EQ(Main(store), expected);
    EXPECT_EQ(ReadSetting(store, QStringLiteral("MainLeft")), QStringLiteral("2147483648"));
}

TEST(WritePlacement, WritesTheFiveKeysOfItsForm) {
    MemorySettingsStore store;
    const Placement placement{2, -15, 30, 40000, 50000};
    WritePlacement(store, QStringLiteral("frmView"), placement);
    EXPECT_EQ(ReadSetting(store, QStringLiteral("ViewWindowState")), QStringLiteral("2"));
    EXPECT_EQ(ReadSetting(store, QStringLiteral("ViewLeft")), QStringLiteral("-15"));
    EXPECT_EQ(ReadSetting(store, QStringLiteral("ViewTop")), QStringLiteral("30"));
    EXPECT_EQ(ReadSetting(store, QStringLiteral("ViewWidth")), QStringLiteral("40000"));
    EXPECT_EQ(ReadSetting(store, QStringLiteral("ViewHeight")), QStringLiteral("50000"));
    EXPECT_EQ(ReadPlacement(store, QStringLiteral("frmView")), placement);
    EXPECT_EQ(Main(store), Placement()) << "another form has keys of its own";
}

TEST(WritePlacement, CopesWithAFormNameThatIsOnlyAPrefix) {
    MemorySettingsStore store;
    WritePlacement(store, QStringLiteral("frm"), {1, 2, 3, 4, 5});
    EXPECT_EQ(ReadSetting(store, QStringLiteral("WindowState")), QStringLiteral("1"));
}
