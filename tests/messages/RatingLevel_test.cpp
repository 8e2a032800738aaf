#include "messages/RatingLevel.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

} // namespace

TEST(RatingLevelTest, ATextBeginsWithItsLevel) {
    EXPECT_EQ(RatingLevelOf(u"9 99.90", false), 9);
    EXPECT_EQ(RatingLevelOf(u"5.00", false), 5);
    EXPECT_EQ(RatingLevelOf(u"-1", false), -1);
    EXPECT_EQ(RatingLevelOf(u"99999999999999", false), 1000);
    for (const QString& none : {u""_s, u"-"_s, u"high"_s, u" 9"_s}) {
        EXPECT_EQ(RatingLevelOf(none, false), noRatingLevel) << none.toStdString();
    }
}

TEST(RatingLevelTest, NumbersAreInSpansOfFive) {
    EXPECT_EQ(RatingLevelOf(u"0", true), 0);
    EXPECT_EQ(RatingLevelOf(u"4.999", true), 0);
    EXPECT_EQ(RatingLevelOf(u"5", true), 1);
    EXPECT_EQ(RatingLevelOf(u"49.9", true), 9);
    EXPECT_EQ(RatingLevelOf(u"50", true), 10);
    EXPECT_EQ(RatingLevelOf(u"1e300", true), 10);
    EXPECT_EQ(RatingLevelOf(u"-0.1", true), -1);
    EXPECT_EQ(RatingLevelOf(u"-70", true), -1);
    for (const QString& none : {u""_s, u"nan"_s, u"inf"_s, u"5 points"_s}) {
        EXPECT_EQ(RatingLevelOf(none, true), noRatingLevel) << none.toStdString();
    }
}

TEST(RatingLevelTest, LevelsAreNamed) {
    EXPECT_EQ(RatingLevelText(9, false), u"9"_s);
    EXPECT_EQ(RatingLevelText(1, true), u"5 to 10"_s);
    EXPECT_EQ(RatingLevelText(-1, true), u"below 0"_s);
    EXPECT_EQ(RatingLevelText(10, true), u"50 and more"_s);
    EXPECT_EQ(RatingLevelText(noRatingLevel, true), u"none"_s);
}

} // namespace quellbox
