#include "app/TrayPresence.h"

#include "tests/support/FakeTray.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

constexpr int patience = 10'000; // ms

/// A window with nothing in it, and an icon that a test clicks.
class TrayPresenceTest : public testing::Test {
protected:
    TrayPresenceTest() {
        window_.setObjectName(QStringLiteral("frmMain"));
        entry_.setCheckable(true);
        entry_.setChecked(true);
        menu_.addAction(QStringLiteral("Restore"))->setObjectName(QStringLiteral("mnuTrRestore"));
        Make(&icon_);
    }

    ~TrayPresenceTest() override { presence_.reset(); }

    void Make(TrayIcon* icon) {
        presence_.reset();
        presence_ =
            std::make_unique<TrayPresence>(TrayParts{window_, entry_, menu_, icon, state_, QStringLiteral("Title")});
        presence_->FollowEntry();
        window_.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
    }

    void Minimize() {
        window_.setWindowState(window_.windowState() | Qt::WindowMinimized);
        QCoreApplication::processEvents();
    }

    AppState state_;
    FakeTray icon_;
    QWidget window_;
    QAction entry_;
    QMenu menu_;
    std::unique_ptr<TrayPresence> presence_;
};

TEST_F(TrayPresenceTest, TheIconFollowsTheEntry) {
    EXPECT_EQ(icon_.presence, 1);
    EXPECT_EQ(icon_.tip, QStringLiteral("Title"));
    entry_.setChecked(false);
    presence_->mnuViewHide_Click();
    EXPECT_EQ(icon_.presence, 0);
    EXPECT_EQ(icon_.text, QStringLiteral("Title"));
    presence_->ShowCount(QStringLiteral("3 messages"));
    EXPECT_EQ(icon_.tip, QStringLiteral("Title: 3 messages"));
}

TEST_F(TrayPresenceTest, TheMinimizedWindowHidesOnlyWithTheEntryChecked) {
    entry_.setChecked(false);
    Minimize();
    EXPECT_TRUE(window_.isVisible());
    window_.showNormal();
    entry_.setChecked(true);
    Minimize();
    EXPECT_FALSE(window_.isVisible());
    EXPECT_TRUE(presence_->findChild<QTimer*>(QStringLiteral("tmrTray"))->isActive());
}

TEST_F(TrayPresenceTest, TheWindowComesBackAsItWasBeforeItWasMinimized) {
    window_.showMaximized();
    Minimize();
    ASSERT_FALSE(window_.isVisible());
    EXPECT_EQ(state_.SavedWindowState, 2);
    icon_.ClickLeft();
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(window_.isMaximized());
    EXPECT_FALSE(window_.isMinimized());
    EXPECT_FALSE(presence_->findChild<QTimer*>(QStringLiteral("tmrTray"))->isActive());
}

TEST_F(TrayPresenceTest, BringingTheWindowBackRunsNoOtherEvents) {
    Minimize();
    bool ran = false;
    QTimer::singleShot(0, &window_, [&ran] { ran = true; });
    presence_->RestoreFromTray();
    EXPECT_FALSE(ran);
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&ran] { return ran; }, patience));
    EXPECT_FALSE(window_.isMinimized());
}

TEST_F(TrayPresenceTest, ADialogThatWasMinimizedTooComesBackAndGetsTheFocus) {
    QDialog dialog(&window_);
    dialog.setModal(true);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    dialog.setWindowState(Qt::WindowMinimized);
    Minimize();
    ASSERT_FALSE(window_.isVisible());
    presence_->RestoreFromTray();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isMinimized(); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }, patience));
    EXPECT_FALSE(window_.isMinimized());
}

TEST_F(TrayPresenceTest, AClosedWindowIsNeitherHiddenNorBroughtToTheFront) {
    Minimize();
    presence_->RestoreFromTray();
    presence_->Close();
    EXPECT_EQ(icon_.presence, 0);
    window_.setWindowState(Qt::WindowMinimized);
    QCoreApplication::processEvents();
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(window_.isMinimized());
}

TEST_F(TrayPresenceTest, WithoutANotificationAreaTheEntrySaysWhyAndNothingHides) {
    for (TrayIcon* icon : {static_cast<TrayIcon*>(nullptr), static_cast<TrayIcon*>(&icon_)}) {
        icon_.available = false;
        Make(icon);
        const QSignalSpy told(presence_.get(), &TrayPresence::Told);
        presence_->mnuViewHide_Click();
        ASSERT_EQ(told.count(), 1);
        EXPECT_EQ(told[0][0].toString(), entry_.toolTip());
        EXPECT_FALSE(entry_.toolTip().isEmpty());
        Minimize();
        EXPECT_TRUE(window_.isVisible());
        window_.showNormal();
    }
    icon_.available = true;
    const QString reason = entry_.toolTip();
    presence_->ExplainHiding();
    EXPECT_NE(entry_.toolTip(), reason);
}

TEST_F(TrayPresenceTest, TheMenuIsOfferedWhileTheWindowIsTheOnlyForm) {
    EXPECT_EQ(icon_.menu, &menu_);
    icon_.ClickRight();
    EXPECT_EQ(icon_.popUps, 1);
    QDialog dialog;
    dialog.show();
    icon_.ClickRight();
    EXPECT_EQ(icon_.popUps, 1);
    icon_.hostDrawsMenu = true;
    presence_->OfferMenu();
    EXPECT_EQ(icon_.MenuEntries(), "");
    dialog.close();
    presence_->OfferMenu();
    EXPECT_EQ(icon_.MenuEntries(), "mnuTrRestore");
    presence_.reset();
    EXPECT_EQ(icon_.menu, nullptr);
}

TEST_F(TrayPresenceTest, ExitClosesTheWindowInTheStateThatItHadBefore) {
    window_.showMaximized();
    Minimize();
    ASSERT_FALSE(window_.isVisible());
    presence_->mnuTrExit_Click();
    EXPECT_FALSE(window_.isVisible());
    EXPECT_TRUE(window_.isMaximized());
    EXPECT_FALSE(window_.isMinimized());
}

} // namespace
} // namespace quellbox
