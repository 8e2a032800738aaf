#ifndef _WIN32

#include "platform/PosixFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

namespace quellbox {

namespace {

constexpr qint64 first = std::numeric_limits<qint64>::min();
constexpr qint64 last = std::numeric_limits<qint64>::max();

qint64 Modified(time_t seconds, long nanoseconds) {
    struct stat status {};
    status.st_mtim.tv_sec = seconds;
    status.st_mtim.tv_nsec = nanoseconds;
    return ModifiedNs(status);
}

TEST(ProblemOf, NamesWhatTheUserCanDoSomethingAbout) {
    EXPECT_EQ(ProblemOf(ENOENT), FileProblem::Missing);
    EXPECT_EQ(ProblemOf(EEXIST), FileProblem::Exists);
    EXPECT_EQ(ProblemOf(EACCES), FileProblem::NoRight);
    EXPECT_EQ(ProblemOf(EROFS), FileProblem::NoRight);
    EXPECT_EQ(ProblemOf(ENOSPC), FileProblem::NoRoom);
    EXPECT_EQ(ProblemOf(EBUSY), FileProblem::InUse);
    EXPECT_EQ(ProblemOf(ENOTCONN), FileProblem::NoAnswer);
    EXPECT_EQ(ProblemOf(ETIMEDOUT), FileProblem::NoAnswer);
    EXPECT_EQ(ProblemOf(ESTALE), FileProblem::NoAnswer);
    EXPECT_EQ(ProblemOf(EIO), FileProblem::Other);
}

TEST(ModifiedNs, CountsFrom1970) {
    EXPECT_EQ(Modified(0, 0), 0);
    EXPECT_EQ(Modified(1, 5), 1'000'000'005);
    EXPECT_EQ(Modified(-1, 999'999'999), -1);
}

TEST(ModifiedNs, BeyondTheYear2262ItIsTheLastOne) {
    EXPECT_EQ(Modified(9'223'372'036, 854'775'806), last - 1);
    EXPECT_EQ(Modified(9'223'372'036, 854'775'807), last);
    EXPECT_EQ(Modified(9'223'372'036, 854'775'808), last);
    EXPECT_EQ(Modified(9'223'372'037, 0), last);
    EXPECT_EQ(Modified(std::numeric_limits<time_t>::max(), 999'999'999), last);
}

TEST(ModifiedNs, BeforeTheYear1677ItIsTheFirstOne) {
    EXPECT_EQ(Modified(-9'223'372'036, 0), -9'223'372'036'000'000'000);
    EXPECT_EQ(Modified(-9'223'372'037, 0), first);
    EXPECT_EQ(Modified(std::numeric_limits<time_t>::min(), 0), first);
}

} // namespace

} // namespace quellbox

#endif
