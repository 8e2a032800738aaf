#include "dialogs/IntervalText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace quellbox;

namespace {

int Seconds(const char* text) {
    return WholeSeconds(QString::fromUtf8(text));
}

bool IsAccepted(const char* text) {
    return IsIntervalText(QString::fromUtf8(text));
}

} // namespace

TEST(IntervalText, HalvesGoToTheEvenNeighbour) {
    EXPECT_EQ(Seconds("1.5"), 2);
    EXPECT_EQ(Seconds("2.5"), 2);
    EXPECT_EQ(Seconds("7.5"), 8);
    EXPECT_EQ(Seconds("8.5"), 8);
    EXPECT_EQ(Seconds("8.51"), 9);
    EXPECT_EQ(Seconds("59.4"), 59);
}

TEST(IntervalText, WhatIsNoNumberIsZero) {
    for (const char* text : {"", ".", "..", "..5", "abc", " "}) {
        EXPECT_EQ(Seconds(text), 0) << text;
    }
}

TEST(IntervalText, ANumberEndsWhereItStopsBeingOne) {
    EXPECT_EQ(Seconds("1.5.2"), 2);
    EXPECT_EQ(Seconds("30."), 30);
    EXPECT_EQ(Seconds(".6"), 1);
    EXPECT_EQ(Seconds("12 34"), 12);
    EXPECT_EQ(Seconds("007"), 7);
}

TEST(IntervalText, NumbersBeyondAnIntegerStopAtTheOutermost) {
    EXPECT_EQ(Seconds("1e9"), 1'000'000'000);
    EXPECT_EQ(Seconds("99999999999999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(Seconds("1e999"), std::numeric_limits<int>::max());
    EXPECT_EQ(Seconds("-1e999"), std::numeric_limits<int>::min());
}

TEST(IntervalText, OnlyDigitsAndTheFullStopMayBeTyped) {
    EXPECT_TRUE(IsAccepted("0123456789"));
    EXPECT_TRUE(IsAccepted("."));
    EXPECT_TRUE(IsAccepted(""));
    for (const char* text : {"-", "+", "e", ",", " ", "x", "\u0663", "\uff15", "1a"}) {
        EXPECT_FALSE(IsAccepted(text)) << text;
    }
}
