#include "tests/support/CallGate.h"
#include "tests/support/MainWindowFixture.h"

#include <QDir>

#include <atomic>

namespace quellbox {

namespace {

const QString above = QStringLiteral("/archive/.quellbox-deleted/");

class MainExpiry : public MainWindowTest {
protected:
    MainExpiry() { Set("RefreshInterval", "60"); }
    ~MainExpiry() override {
        gate_.LetAll();
        window_.reset();
        pool_.WaitForDone();
    }

    /// A folder of messages that were deleted so many days ago.
    QString AddKept(int daysAgo, int days) {
        const QString folder = above + noon_.addDays(-daysAgo).toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")) +
                               QStringLiteral("-%1d-00%2").arg(days).arg(daysAgo, 4, 10, QLatin1Char('0'));
        files_.AddFolder(above);
        files_.Add(folder + QStringLiteral("/old.eml"), "x");
        return folder + QStringLiteral("/old.eml");
    }

    /// Holds the deletion of a file, or of any when the path is empty.
    void Hold(const QString& path) {
        files_.SetChangeHook([this, path](const QString& changed) {
            if (path.isEmpty() || QDir::fromNativeSeparators(changed) == path) {
                isHeld_ = true;
                gate_.Pass(0);
            }
        });
    }

    bool WaitUntilHeld() {
        return QTest::qWaitFor([this] { return isHeld_.load(); }, patience);
    }

    bool WaitUntilGone(const QString& path) {
        return QTest::qWaitFor([&] { return !files_.FileExists(path); }, patience);
    }

    CallGate gate_;
    std::atomic<bool> isHeld_ = false;
};

} // namespace

TEST_F(MainExpiry, WhatIsOldEnoughGoesAfterTheFirstRefresh) {
    AddThree();
    const QString old = AddKept(10, 9);
    const QString young = AddKept(9, 9);
    OpenRefreshed();
    EXPECT_TRUE(WaitUntilGone(old));
    EXPECT_TRUE(files_.FileExists(young));
    EXPECT_EQ(window_->Messages().Count(), 3);
}

TEST_F(MainExpiry, AndOnceADayFromThenOn) {
    const QString kept = AddKept(9, 9);
    OpenRefreshed();
    clock_.Set(clock_.Now().addDays(1));
    window_->mnuAcRefresh_Click();
    Settle();
    pool_.WaitForDone();
    EXPECT_TRUE(files_.FileExists(kept)) << "the command of the user is not the daily refresh";
    Tick();
    EXPECT_TRUE(WaitUntilGone(kept));
}

TEST_F(MainExpiry, WithoutSuchAFolderNotASingleCallIsMade) {
    AddMessage("a.eml", 1);
    OpenRefreshed();
    pool_.WaitForDone();
    const int after = files_.CallCount();
    clock_.Set(clock_.Now().addDays(1));
    Tick();
    pool_.WaitForDone();
    const int daily = files_.CallCount() - after;
    const int before = files_.CallCount();
    window_->mnuAcRefresh_Click();
    Settle();
    pool_.WaitForDone();
    EXPECT_EQ(files_.CallCount() - before, daily) << "the daily refresh costs what every full refresh does";
}

TEST_F(MainExpiry, TheUserGoesOnWhileItDeletes) {
    AddThree();
    const QString old = AddKept(10, 9);
    Hold(old);
    OpenRefreshed();
    ASSERT_TRUE(WaitUntilHeld());
    EXPECT_TRUE(List()->isEnabled());
    ClickRow(0);
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(window_->Messages().Count(), 2);
    gate_.LetAll();
    EXPECT_TRUE(WaitUntilGone(old));
}

TEST_F(MainExpiry, ClosingTheWindowGivesItUp) {
    AddKept(10, 9);
    AddKept(11, 9);
    AddKept(12, 9);
    Hold({});
    pool_.SetMost(1);
    OpenRefreshed();
    ASSERT_TRUE(WaitUntilHeld());
    window_->close();
    gate_.LetAll();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    pool_.WaitForDone();
    EXPECT_EQ(files_.Paths().size(), 2) << "only the one that was under way has gone";
}

TEST_F(MainExpiry, AFailureIsNoBoxAndNoMarkInTheStatusBar) {
    AddThree();
    const QString old = AddKept(10, 9);
    files_.FailPath(old, QStringLiteral("no right"));
    OpenRefreshed();
    pool_.WaitForDone();
    Settle();
    EXPECT_TRUE(errors_.isEmpty());
    EXPECT_FALSE(Find<QWidget>("btnFailures")->isVisible());
}

} // namespace quellbox
