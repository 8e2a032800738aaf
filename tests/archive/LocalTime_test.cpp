#include "archive/LocalTime.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QTimeZone>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 nsPerSecond = 1'000'000'000;

bool InNewYork() {
    return QTimeZone::systemTimeZoneId() == "America/New_York";
}

qint64 UtcSeconds(int year, int month, int day, int hour, int minute) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute), Qt::UTC).toSecsSinceEpoch();
}

void ExpectAsQDateTime(qint64 seconds) {
    const QDateTime time = QDateTime::fromSecsSinceEpoch(seconds);
    EXPECT_EQ(ListDate(seconds * nsPerSecond), time.toString(u"yyyy-MM-dd hh:mm:ss"_s)) << seconds;
    EXPECT_EQ(LocalDay(seconds * nsPerSecond), time.date()) << seconds;
}

} // namespace

TEST(LocalTime, AgreesWithQDateTimeAllTheYearRound) {
    const qint64 start = UtcSeconds(2023, 12, 31, 0, 0);
    for (qint64 seconds = start; seconds < start + 367 * 86400; seconds += 7 * 3600 + 13 * 60 + 7) {
        ExpectAsQDateTime(seconds);
    }
}

TEST(LocalTime, AgreesWithQDateTimeInTheHoursOfBothChanges) {
    for (const qint64 start : {UtcSeconds(2026, 3, 8, 5, 0), UtcSeconds(2026, 11, 1, 4, 0)}) {
        for (qint64 seconds = start; seconds < start + 4 * 3600; seconds += 59) {
            ExpectAsQDateTime(seconds);
        }
    }
}

TEST(LocalTime, AgreesWithQDateTimeBefore1970) {
    for (qint64 seconds = -2 * 86400; seconds < 86400; seconds += 1801) {
        ExpectAsQDateTime(seconds);
    }
    const qint64 summer = UtcSeconds(1965, 7, 1, 3, 59);
    for (qint64 seconds = summer; seconds < summer + 120; ++seconds) {
        ExpectAsQDateTime(seconds);
    }
}

TEST(LocalTime, DropsTheFractionOfASecondTowardsThePast) {
    const QString last = QDateTime::fromSecsSinceEpoch(-1).toString(u"yyyy-MM-dd hh:mm:ss"_s);
    EXPECT_EQ(ListDate(-1), last);
    EXPECT_EQ(ListDate(-nsPerSecond), last);
    EXPECT_EQ(ListDate(nsPerSecond - 1), ListDate(0));
    EXPECT_NE(ListDate(nsPerSecond), ListDate(0));
}

TEST(LocalTime, PadsEveryField) {
    const qint64 seconds = QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6)).toSecsSinceEpoch();
    EXPECT_EQ(ListDate(seconds * nsPerSecond), u"2026-02-03 04:05:06"_s);
}

TEST(LocalTime, JumpsAndRepeatsAnHourInNewYork) {
    if (!InNewYork()) {
        GTEST_SKIP() << "runs under TZ=America/New_York";
    }
    const qint64 spring = UtcSeconds(2026, 3, 8, 7, 0);
    EXPECT_EQ(ListDate((spring - 1) * nsPerSecond), u"2026-03-08 01:59:59"_s);
    EXPECT_EQ(ListDate(spring * nsPerSecond), u"2026-03-08 03:00:00"_s);
    const qint64 autumn = UtcSeconds(2026, 11, 1, 6, 0);
    EXPECT_EQ(ListDate((autumn - 1) * nsPerSecond), u"2026-11-01 01:59:59"_s);
    EXPECT_EQ(ListDate(autumn * nsPerSecond), u"2026-11-01 01:00:00"_s);
}

TEST(LocalTime, BeginsTheDayAtLocalMidnight) {
    const qint64 midnight = QDateTime(QDate(2026, 7, 4), QTime(0, 0)).toSecsSinceEpoch();
    EXPECT_EQ(LocalDay(midnight * nsPerSecond - 1), QDate(2026, 7, 3));
    EXPECT_EQ(LocalDay(midnight * nsPerSecond), QDate(2026, 7, 4));
    EXPECT_EQ(ListDate(midnight * nsPerSecond - 1), u"2026-07-03 23:59:59"_s);
}

} // namespace quellbox
