#include "dialogs/PickupWatch.h"

#include "platform/WorkPool.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NotedRecord.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

class PickupWatchTest : public testing::Test {
protected:
    PickupWatchTest() {
        files_.Add(path_, "test");
        watch_.Start(path_, QStringLiteral("/pickup/"), record_);
    }

    /// Lets the watch look a few times.
    void LookAgain() {
        const int before = files_.CallCount();
        ASSERT_TRUE(RunUntil([&] { return files_.CallCount() > before + 6 || !watch_.IsWatching(); }));
    }

    const QDateTime noon_{QDate(2026, 6, 15), QTime(12, 0)};
    const QString path_ = QStringLiteral("/pickup/quellbox.eml");
    MemoryFileSystem files_;
    FixedClock clock_{noon_};
    std::shared_ptr<NotedRecord> record_ = std::make_shared<NotedRecord>();
    ThreadWorkPool pool_;
    PickupWatch watch_{files_, pool_, clock_, std::chrono::milliseconds(1)};
};

} // namespace

TEST_F(PickupWatchTest, TellsAfterHowManySecondsTheMessageWasTaken) {
    LookAgain();
    EXPECT_TRUE(watch_.IsWatching());
    clock_.Set(noon_.addSecs(7));
    files_.Remove(path_);
    ASSERT_TRUE(RunUntil([this] { return !watch_.IsWatching(); }));
    ASSERT_EQ(record_->taken.size(), 1U);
    EXPECT_FALSE(record_->taken[0].failure);
    EXPECT_TRUE(record_->taken[0].detail.contains(QStringLiteral("7"))) << record_->taken[0].detail.toStdString();
    EXPECT_EQ(record_.use_count(), 1) << "the action is over";
}

TEST_F(PickupWatchTest, TellsThatNobodyTakesIt) {
    clock_.Set(noon_.addSecs(PickupWatch::patienceSeconds - 1));
    LookAgain();
    EXPECT_TRUE(record_->taken.empty());
    clock_.Set(noon_.addSecs(PickupWatch::patienceSeconds));
    ASSERT_TRUE(RunUntil([this] { return !watch_.IsWatching(); }));
    ASSERT_EQ(record_->taken.size(), 1U);
    ASSERT_TRUE(record_->taken[0].failure);
    EXPECT_EQ(record_->taken[0].failure->path, path_);
}

TEST_F(PickupWatchTest, AFolderThatCannotBeSeenSaysNothing) {
    files_.Remove(path_);
    files_.LoseFolder(QStringLiteral("/pickup"));
    LookAgain();
    EXPECT_TRUE(record_->taken.empty());
}

TEST_F(PickupWatchTest, NothingIsWrittenDownWhenItIsStopped) {
    watch_.Stop();
    files_.Remove(path_);
    EXPECT_FALSE(watch_.IsWatching());
    EXPECT_TRUE(record_->taken.empty());
}

TEST_F(PickupWatchTest, TellsWhoeverWaitsWhatItFoundOut) {
    std::optional<PickupWatch::Outcome> outcome;
    QObject::connect(&watch_, &PickupWatch::Ended, &watch_,
                     [&outcome](const PickupWatch::Outcome& found) { outcome = found; });
    files_.Remove(path_);
    ASSERT_TRUE(RunUntil([&outcome] { return outcome.has_value(); }));
    EXPECT_TRUE(outcome->isTaken);
    EXPECT_EQ(outcome->text, record_->taken[0].detail);
}

TEST_F(PickupWatchTest, HasThePatienceOfWhoeverWaits) {
    std::optional<PickupWatch::Outcome> outcome;
    QObject::connect(&watch_, &PickupWatch::Ended, &watch_,
                     [&outcome](const PickupWatch::Outcome& found) { outcome = found; });
    watch_.Start(path_, QStringLiteral("/pickup/"), record_, 20);
    clock_.Set(noon_.addSecs(19));
    LookAgain();
    EXPECT_FALSE(outcome);
    clock_.Set(noon_.addSecs(20));
    ASSERT_TRUE(RunUntil([&outcome] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->isTaken);
    EXPECT_TRUE(outcome->text.contains(QStringLiteral("20"))) << outcome->text.toStdString();
}

} // namespace quellbox
