#include "archive/DayWindow.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

qint64 LocalNs(QDate day, QTime time) {
    return QDateTime(day, time).toMSecsSinceEpoch() * 1'000'000;
}

const QDate today(2026, 6, 15);

bool Passes(const QString& days, QDate day, QTime time = QTime(12, 0)) {
    return IsRecentFile(days, LocalNs(day, time), today);
}

} // namespace

TEST(DayWindow, OfZeroLetsEveryFilePass) {
    EXPECT_TRUE(Passes(u"0"_s, QDate(1980, 1, 1)));
    EXPECT_TRUE(Passes(u"0"_s, QDate(2090, 1, 1)));
}

TEST(DayWindow, OfZeroCountsOnlyAsExactlyThatText) {
    EXPECT_FALSE(Passes(u"00"_s, today));
    EXPECT_FALSE(Passes(QString(), today));
    EXPECT_FALSE(Passes(u"-1"_s, today));
}

TEST(DayWindow, OfOneDayIsTodayFromMidnightToMidnight) {
    EXPECT_FALSE(Passes(u"1"_s, today.addDays(-1), QTime(23, 59, 59, 999)));
    EXPECT_TRUE(Passes(u"1"_s, today, QTime(0, 0)));
    EXPECT_TRUE(Passes(u"1"_s, today, QTime(23, 59, 59, 999)));
    EXPECT_FALSE(Passes(u"1"_s, today.addDays(1), QTime(0, 0)));
}

TEST(DayWindow, OfTwoDaysIsYesterdayToTomorrow) {
    EXPECT_FALSE(Passes(u"2"_s, today.addDays(-2), QTime(23, 59, 59)));
    EXPECT_TRUE(Passes(u"2"_s, today.addDays(-1), QTime(0, 0)));
    EXPECT_TRUE(Passes(u"2"_s, today.addDays(1), QTime(23, 59, 59)));
    EXPECT_FALSE(Passes(u"2"_s, today.addDays(2), QTime(0, 0)));
}

TEST(DayWindow, OfSevenDaysCountsDateBoundaries) {
    EXPECT_TRUE(Passes(u"7"_s, today.addDays(-6), QTime(0, 0)));
    EXPECT_FALSE(Passes(u"7"_s, today.addDays(-7), QTime(23, 59, 59)));
}

TEST(DayWindow, ReadsTheNumberThatTheTextBeginsWith) {
    EXPECT_TRUE(Passes(u" 2 days"_s, today.addDays(-1)));
    EXPECT_FALSE(Passes(u" 2 days"_s, today.addDays(-2)));
    EXPECT_TRUE(Passes(u"1.5"_s, today.addDays(-1)));
}

// A day of 23 or 25 hours is one day: counting hours would be off by one near its ends.
TEST(DayWindow, CountsTheDaysOfBothTimeChangesAsOne) {
    for (const QDate change : {QDate(2026, 3, 8), QDate(2026, 11, 1)}) {
        for (const QDate day : {change.addDays(-1), change, change.addDays(1)}) {
            const QTime last(23, 59, 59, 999);
            EXPECT_TRUE(IsRecentFile(u"1"_s, LocalNs(day, QTime(0, 0)), day));
            EXPECT_TRUE(IsRecentFile(u"1"_s, LocalNs(day, QTime(12, 0)), day));
            EXPECT_TRUE(IsRecentFile(u"1"_s, LocalNs(day, last), day));
            EXPECT_FALSE(IsRecentFile(u"1"_s, LocalNs(day.addDays(-1), last), day));
            EXPECT_FALSE(IsRecentFile(u"1"_s, LocalNs(day.addDays(1), QTime(0, 0)), day));
            EXPECT_TRUE(IsRecentFile(u"2"_s, LocalNs(day.addDays(-1), QTime(0, 0)), day));
            EXPECT_FALSE(IsRecentFile(u"2"_s, LocalNs(day.addDays(-2), last), day));
        }
    }
}

} // namespace quellbox
