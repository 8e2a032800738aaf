#include "platform/WindowsFile.h"

#ifdef _WIN32

#include <gtest/gtest.h>

#include <limits>

namespace quellbox {

namespace {

qint64 NsOf(quint64 ticks) {
    return UnixNs({static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)});
}

constexpr quint64 ticksTo1970 = 116'444'736'000'000'000;

TEST(UnixNs, CountsFrom1970) {
    EXPECT_EQ(NsOf(ticksTo1970), 0);
    EXPECT_EQ(NsOf(ticksTo1970 + 1), 100);
    EXPECT_EQ(NsOf(ticksTo1970 - 1), -100);
}

TEST(UnixNs, OfTimesBeyondItsReachIsTheFirstOrTheLast) {
    constexpr qint64 last = std::numeric_limits<qint64>::max() / 100;
    const quint64 lastTicks = ticksTo1970 + static_cast<quint64>(last);
    const quint64 firstTicks = ticksTo1970 - static_cast<quint64>(last);
    EXPECT_EQ(NsOf(lastTicks), last * 100);
    EXPECT_EQ(NsOf(lastTicks + 1), last * 100);
    EXPECT_EQ(NsOf(std::numeric_limits<quint64>::max()), last * 100);
    EXPECT_EQ(NsOf(firstTicks), -last * 100);
    EXPECT_EQ(NsOf(firstTicks - 1), -last * 100);
    EXPECT_EQ(NsOf(0), -last * 100);
}

} // namespace

} // namespace quellbox

#endif
