#include "messages/InterruptedSending.h"

#include "delivery/SendingFolder.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class InterruptedSending : public testing::Test {
protected:
    InterruptedSending() {
        files_.AddFolder(archive_);
        files_.Add(archive_.PathOf(u"a.EML"_s), "first");
    }

    /// Ends in the middle of sending the message.
    void BeginToSend(const QDateTime& at) { SendingFolder(files_, archive_).Take(u"a.EML"_s, at); }

    const Folder archive_{u"/archive/"_s};
    const QDateTime now_{QDate(2026, 6, 15), QTime(12, 0), Qt::UTC};
    MemoryFileSystem files_;
};

} // namespace

TEST_F(InterruptedSending, AMessageComesBackAndMayHaveBeenDelivered) {
    BeginToSend(now_.addSecs(-3601));
    const std::vector<FileFailure> uncertain = BringBackInterrupted(files_, archive_, now_);
    ASSERT_EQ(uncertain.size(), 1U);
    EXPECT_EQ(uncertain[0].path, archive_.PathOf(u"a.uncertain.EML"_s));
    EXPECT_EQ(uncertain[0].problem, FileProblem::Uncertain);
    EXPECT_EQ(uncertain[0].reason,
              u"The program ended while the message was being sent. It may have been delivered."_s);
    EXPECT_EQ(files_.Bytes(archive_.PathOf(u"a.uncertain.EML"_s)), "first");
}

TEST_F(InterruptedSending, WhatBeganAnHourAgoMayStillBeUnderWay) {
    BeginToSend(now_.addSecs(-3600));
    EXPECT_TRUE(BringBackInterrupted(files_, archive_, now_).empty());
    EXPECT_EQ(BringBackInterrupted(files_, archive_, now_.addMSecs(1)).size(), 1U);
}

TEST_F(InterruptedSending, WithNothingLeftBehindNothingIsTold) {
    EXPECT_TRUE(BringBackInterrupted(files_, archive_, now_).empty());
    EXPECT_EQ(files_.Paths(), QStringList{archive_.PathOf(u"a.EML"_s)});
}

} // namespace quellbox
