#include "messages/FormatSize.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

QString Plain(qint64 bytes) {
    return FormatSize(bytes, QLocale::c());
}

} // namespace

TEST(FormatSize, ShowsUpToAThousandAsBytes) {
    EXPECT_EQ(Plain(0), u"0 bytes"_s);
    EXPECT_EQ(Plain(1), u"1 bytes"_s);
    EXPECT_EQ(Plain(999), u"999 bytes"_s);
    EXPECT_EQ(Plain(1'000), u"1000 bytes"_s);
}

TEST(FormatSize, ShowsMoreThanAThousandWithOneDecimal) {
    EXPECT_EQ(Plain(1'001), u"1.0 KB"_s);
    EXPECT_EQ(Plain(1'049), u"1.0 KB"_s);
    EXPECT_EQ(Plain(1'050), u"1.1 KB"_s);
    EXPECT_EQ(Plain(999'999), u"1000.0 KB"_s);
    EXPECT_EQ(Plain(1'000'000), u"1000.0 KB"_s);
}

TEST(FormatSize, ShowsMoreThanAMillionWithTwoDecimals) {
    EXPECT_EQ(Plain(1'000'001), u"1.00 MB"_s);
    EXPECT_EQ(Plain(1'500'000), u"1.50 MB"_s);
    EXPECT_EQ(Plain(1'050'000), u"1.05 MB"_s);
    EXPECT_EQ(Plain(1'994'999), u"1.99 MB"_s);
    EXPECT_EQ(Plain(1'995'000), u"2.00 MB"_s);
    EXPECT_EQ(Plain(1'000'000'000), u"1000.00 MB"_s);
}

TEST(FormatSize, ShowsMoreThanABillionWithThreeDecimals) {
    EXPECT_EQ(Plain(1'000'000'001), u"1.000 GB"_s);
    EXPECT_EQ(Plain(1'234'500'000), u"1.235 GB"_s);
    EXPECT_EQ(Plain(2'147'483'647), u"2.147 GB"_s);
}

TEST(FormatSize, RoundsHalvesUpThoughABinaryFractionWouldNot) {
    EXPECT_EQ(Plain(1'005'000), u"1.01 MB"_s);
    EXPECT_EQ(Plain(1'150), u"1.2 KB"_s);
}

TEST(FormatSize, TakesTheDecimalSignOfTheLocale) {
    const QLocale german(QLocale::German, QLocale::Germany);
    EXPECT_EQ(FormatSize(1'500'000, german), u"1,50 MB"_s);
    EXPECT_EQ(FormatSize(1'500, german), u"1,5 KB"_s);
    EXPECT_EQ(FormatSize(2'500'000'000, german), u"2,500 GB"_s);
}

TEST(FormatSize, GroupsNoDigitsInAnyLocale) {
    EXPECT_EQ(FormatSize(1'000'000, QLocale(QLocale::English, QLocale::UnitedStates)), u"1000.0 KB"_s);
    EXPECT_EQ(FormatSize(1'000, QLocale(QLocale::German, QLocale::Germany)), u"1000 bytes"_s);
}

} // namespace quellbox
