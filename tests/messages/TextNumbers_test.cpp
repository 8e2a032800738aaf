#include "messages/TextNumbers.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

TEST(TextNumbers, GivesEachTextTheNumberThatItGotFirst) {
    TextNumbers numbers;
    EXPECT_EQ(numbers.Count(), 0U);
    EXPECT_EQ(numbers.NumberOf(u"b"_s), 0U);
    EXPECT_EQ(numbers.NumberOf(u"a"_s), 1U);
    EXPECT_EQ(numbers.NumberOf(u"b"_s), 0U);
    EXPECT_EQ(numbers.NumberOf(u"B"_s), 2U);
    EXPECT_EQ(numbers.Count(), 3U);
    EXPECT_EQ(numbers.Text(0), u"b"_s);
    EXPECT_EQ(numbers.Text(1), u"a"_s);
    EXPECT_EQ(numbers.Text(2), u"B"_s);
}

TEST(TextNumbers, TheEmptyTextIsOneOfThem) {
    TextNumbers numbers;
    EXPECT_EQ(numbers.NumberOf(QStringView()), 0U);
    EXPECT_EQ(numbers.NumberOf(u"a"_s), 1U);
    EXPECT_EQ(numbers.NumberOf(u""_s), 0U);
    EXPECT_EQ(numbers.Text(0), QString());
}

TEST(TextNumbers, KeepsTheNumbersOfManyTexts) {
    TextNumbers numbers;
    constexpr size_t count = 10'000;
    for (size_t number = 0; number < count; ++number) {
        ASSERT_EQ(numbers.NumberOf(QString::number(number)), number);
    }
    for (size_t number = 0; number < count; ++number) {
        ASSERT_EQ(numbers.NumberOf(QString::number(number)), number);
        ASSERT_EQ(numbers.Text(number), QString::number(number));
    }
    EXPECT_EQ(numbers.Count(), count);
}

} // namespace

} // namespace quellbox
