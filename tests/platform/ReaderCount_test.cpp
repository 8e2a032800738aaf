#include "platform/ReaderCount.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace std::chrono_literals;

TEST(ReaderCount, MemoryTakesTheCores) {
    EXPECT_EQ(ReaderCount(0ns, 8), 8);
    EXPECT_EQ(ReaderCount(60us - 1ns, 8), 8);
}

TEST(ReaderCount, MemoryTakesTwoAtLeast) {
    EXPECT_EQ(ReaderCount(1us, 1), 2);
    EXPECT_EQ(ReaderCount(1us, 2), 2);
    EXPECT_EQ(ReaderCount(1us, 3), 3);
}

TEST(ReaderCount, DiskTakesSixteen) {
    EXPECT_EQ(ReaderCount(60us, 2), 16);
    EXPECT_EQ(ReaderCount(400us - 1ns, 2), 16);
}

TEST(ReaderCount, ShareTakesSixtyFour) {
    EXPECT_EQ(ReaderCount(400us, 2), 64);
    EXPECT_EQ(ReaderCount(1s, 2), 64);
}

} // namespace

} // namespace quellbox
