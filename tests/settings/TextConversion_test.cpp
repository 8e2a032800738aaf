#include "settings/TextConversion.h"

#include "platform/RuntimeError.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>

using namespace quellbox;

namespace {

double Leading(const char* text) {
    return LeadingNumber(QString::fromUtf8(text));
}

qint16 Short(const char* text) {
    return ToInteger16(QString::fromUtf8(text));
}

qint32 Long(const char* text) {
    return ToInteger32(QString::fromUtf8(text));
}

bool Boolean(const char* text) {
    return ToBoolean(QString::fromUtf8(text));
}

} // namespace

TEST(LeadingNumber, TakesTheLongestPrefixThatIsANumber) {
    EXPECT_EQ(Leading("42"), 42.0);
    EXPECT_EQ(Leading("42 days"), 42.0);
    EXPECT_EQ(Leading("12a3"), 12.0);
    EXPECT_EQ(Leading("1.2.3"), 1.2);
    EXPECT_EQ(Leading("1,5"), 1.0);
    EXPECT_EQ(Leading("1 2"), 1.0);
}

TEST(LeadingNumber, AcceptsASign) {
    EXPECT_EQ(Leading("-7"), -7.0);
    EXPECT_EQ(Leading("+7"), 7.0);
    EXPECT_EQ(Leading("--7"), 0.0);
    EXPECT_EQ(Leading("- 7"), 0.0);
    EXPECT_EQ(Leading("-"), 0.0);
}

TEST(LeadingNumber, AcceptsAFractionWithDigitsOnEitherSideOfThePoint) {
    EXPECT_EQ(Leading("2.5"), 2.5);
    EXPECT_EQ(Leading(".5"), 0.5);
    EXPECT_EQ(Leading("-.5"), -0.5);
    EXPECT_EQ(Leading("5."), 5.0);
    EXPECT_EQ(Leading("5.x"), 5.0);
    EXPECT_EQ(Leading("."), 0.0);
    EXPECT_EQ(Leading("-."), 0.0);
}

TEST(LeadingNumber, AcceptsAnExponentOnlyWithDigits) {
    EXPECT_EQ(Leading("1e3"), 1000.0);
    EXPECT_EQ(Leading("1E+3"), 1000.0);
    EXPECT_EQ(Leading("25e-1x"), 2.5);
    EXPECT_EQ(Leading("5.e1"), 50.0);
    EXPECT_EQ(Leading("2e"), 2.0);
    EXPECT_EQ(Leading("2e+"), 2.0);
    EXPECT_EQ(Leading("2ex"), 2.0);
    EXPECT_EQ(Leading("e3"), 0.0);
    EXPECT_EQ(Leading(".e3"), 0.0);
}

TEST(LeadingNumber, SkipsLeadingBlanks) {
    EXPECT_EQ(Leading("  8"), 8.0);
    EXPECT_EQ(Leading("\t\r\n 8"), 8.0);
}

TEST(LeadingNumber, IsZeroForATextThatDoesNotBeginWithANumber) {
    EXPECT_EQ(LeadingNumber(QString()), 0.0);
    EXPECT_EQ(Leading(""), 0.0);
    EXPECT_EQ(Leading("   "), 0.0);
    EXPECT_EQ(Leading("days 42"), 0.0);
    EXPECT_EQ(Leading("inf"), 0.0);
    EXPECT_EQ(Leading("nan"), 0.0);
    EXPECT_EQ(Leading("\xD9\xA3"), 0.0) << "only the digits 0 to 9 are digits";
}

TEST(LeadingNumber, TakesAHexadecimalTextAsItsLeadingZero) {
    EXPECT_EQ(Leading("0x10"), 0.0);
}

TEST(LeadingNumber, IsInfiniteBeyondTheRangeOfADouble) {
    EXPECT_TRUE(std::isinf(Leading("1e999")));
    EXPECT_LT(Leading("-1e999"), 0.0);
    EXPECT_EQ(Leading("1e-999"), 0.0);
}

TEST(ToInteger, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(Short("0.5"), 0);
    EXPECT_EQ(Short("1.5"), 2);
    EXPECT_EQ(Short("2.5"), 2);
    EXPECT_EQ(Short("3.5"), 4);
    EXPECT_EQ(Short("-0.5"), 0);
    EXPECT_EQ(Short("-1.5"), -2);
    EXPECT_EQ(Short("-2.5"), -2);
    EXPECT_EQ(Long("2.5"), 2);
    EXPECT_EQ(Long("3.5"), 4);
    EXPECT_EQ(Short("2.4999"), 2);
    EXPECT_EQ(Short("2.5001"), 3);
}

TEST(ToInteger, IsZeroForATextThatIsNoNumber) {
    EXPECT_EQ(Short(""), 0);
    EXPECT_EQ(Short("many"), 0);
    EXPECT_EQ(Long("many"), 0);
}

TEST(ToInteger16, HoldsEveryNumberUpToItsLimits) {
    EXPECT_EQ(Short("32767"), 32767);
    EXPECT_EQ(Short("-32768"), -32768);
    EXPECT_EQ(Short("32767.4"), 32767);
    EXPECT_EQ(Short("-32768.5"), -32768) << "the half goes to the even neighbour, which still fits";
}

TEST(ToInteger16, ThrowsBeyondItsLimits) {
    EXPECT_THROW(Short("32768"), OverflowError);
    EXPECT_THROW(Short("32767.5"), OverflowError);
    EXPECT_THROW(Short("-32769"), OverflowError);
    EXPECT_THROW(Short("1e999"), OverflowError);
}

TEST(ToInteger32, HoldsEveryNumberUpToItsLimits) {
    EXPECT_EQ(Long("2147483647"), 2147483647);
    EXPECT_EQ(Long("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(Long("2147483647.4"), 2147483647);
}

TEST(ToInteger32, ThrowsBeyondItsLimits) {
    EXPECT_THROW(Long("2147483648"), OverflowError);
    EXPECT_THROW(Long("2147483647.5"), OverflowError);
    EXPECT_THROW(Long("-2147483649"), OverflowError);
    EXPECT_THROW(Long("-1e999"), OverflowError);
}

TEST(ToInteger, NamesTheNumberThatDoesNotFitAndThoseThatDo) {
    try {
        Short("40000 %2");
        FAIL() << "an overflow was expected";
    } catch (const OverflowError& error) {
        EXPECT_TRUE(error.Text().contains(QStringLiteral("\"40000 %2\""))) << error.what();
        EXPECT_TRUE(error.Text().contains(QStringLiteral("from -32768 to 32767"))) << error.what();
    }
}

TEST(ToBoolean, AcceptsTheWordsInAnyCase) {
    EXPECT_TRUE(Boolean("True"));
    EXPECT_TRUE(Boolean("TRUE"));
    EXPECT_TRUE(Boolean("true"));
    EXPECT_FALSE(Boolean("False"));
    EXPECT_FALSE(Boolean("fALSE"));
    EXPECT_TRUE(Boolean(" True "));
}

TEST(ToBoolean, TakesZeroAsFalseAndEveryOtherNumberAsTrue) {
    EXPECT_FALSE(Boolean("0"));
    EXPECT_FALSE(Boolean("-0.0"));
    EXPECT_TRUE(Boolean("1"));
    EXPECT_TRUE(Boolean("-1"));
    EXPECT_TRUE(Boolean("0.25"));
    EXPECT_TRUE(Boolean("1e3"));
    EXPECT_TRUE(Boolean(" 2 "));
}

TEST(ToBoolean, ThrowsForATextThatIsNeitherAWordNorANumber) {
    EXPECT_THROW(Boolean(""), TypeMismatchError);
    EXPECT_THROW(Boolean(" "), TypeMismatchError);
    EXPECT_THROW(Boolean("yes"), TypeMismatchError);
    EXPECT_THROW(Boolean("Truely"), TypeMismatchError);
    EXPECT_THROW(Boolean("1 day"), TypeMismatchError);
    EXPECT_THROW(Boolean("-"), TypeMismatchError);
}

TEST(ToBoolean, NamesTheTextThatCannotBeConverted) {
    try {
        Boolean("perhaps");
        FAIL() << "a type mismatch was expected";
    } catch (const TypeMismatchError& error) {
        EXPECT_TRUE(error.Text().contains(QStringLiteral("\"perhaps\""))) << error.what();
    }
}

TEST(FromBoolean, WritesTheWordsThatToBooleanReads) {
    EXPECT_EQ(FromBoolean(true), QStringLiteral("True"));
    EXPECT_EQ(FromBoolean(false), QStringLiteral("False"));
    EXPECT_TRUE(ToBoolean(FromBoolean(true)));
    EXPECT_FALSE(ToBoolean(FromBoolean(false)));
}
