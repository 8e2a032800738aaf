#include "dialogs/CleansingSum.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

/// Lets numbers and days be written as somewhere, while it lives.
class LocaleOfTest {
public:
    explicit LocaleOfTest(const QLocale& locale) { QLocale::setDefault(locale); }
    ~LocaleOfTest() { QLocale::setDefault(before_); }
    LocaleOfTest(const LocaleOfTest&) = delete;
    LocaleOfTest& operator=(const LocaleOfTest&) = delete;

private:
    QLocale before_;
};

class CleansingSumTest : public testing::Test {
protected:
    const QDate today{2026, 6, 15};
};

} // namespace

TEST_F(CleansingSumTest, CountsWhatLiesOutsideTheDays) {
    const DayTotals messages = {{today.addDays(1), {1, 50'000}},
                                {today, {2, 1}},
                                {today.addDays(-1), {3, 20}},
                                {today.addDays(-6), {4, 300}},
                                {today.addDays(-7), {5, 4000}}};
    const QDate oldest = today.addDays(-7);
    EXPECT_EQ(SumOfCleansing(messages, 0, today), (CleansingSum{15, 54'321, oldest, today.addDays(1)}));
    EXPECT_EQ(SumOfCleansing(messages, 1, today), (CleansingSum{13, 54'320, oldest, today.addDays(1)}));
    EXPECT_EQ(SumOfCleansing(messages, 2, today), (CleansingSum{9, 4300, oldest, today.addDays(-6)}));
    EXPECT_EQ(SumOfCleansing(messages, 7, today), (CleansingSum{5, 4000, oldest, oldest}));
}

TEST_F(CleansingSumTest, NothingHasNoDaysAndNoChoiceRemovesNothing) {
    const DayTotals messages = {{today, {1, 1}}};
    EXPECT_EQ(SumOfCleansing({}, 0, today), CleansingSum());
    EXPECT_EQ(SumOfCleansing(messages, 1, today), CleansingSum());
    EXPECT_EQ(SumOfCleansing(messages, -1, today), CleansingSum());
}

TEST_F(CleansingSumTest, TheSentenceFollowsTheNumber) {
    const LocaleOfTest american(QLocale(QLocale::English, QLocale::UnitedStates));
    const QDate first(2026, 1, 2);
    const QDate last(2026, 11, 20);
    EXPECT_EQ(CleansingSumText({}), u"Nothing would be removed."_s);
    EXPECT_EQ(CleansingSumText({1, 500, first, first}), u"One message (500 bytes) of 1/2/26 would be removed."_s);
    EXPECT_EQ(CleansingSumText({2, 5600, first, first}), u"2 messages (5.6 KB) of 1/2/26 would be removed."_s);
    EXPECT_EQ(CleansingSumText({1234, 5'600'000, first, last}),
              u"1,234 messages (5.60 MB) from 1/2/26 to 11/20/26 would be removed."_s);
}

TEST_F(CleansingSumTest, NumbersAndDaysAreThoseOfTheLocale) {
    const LocaleOfTest german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(CleansingSumText({1234, 5'600'000, QDate(2026, 1, 2), QDate(2026, 11, 20)}),
              u"1.234 messages (5,60 MB) from 02.01.26 to 20.11.26 would be removed."_s);
}

} // namespace quellbox
