#include "tests/support/FakeTray.h"
#include "tests/support/MainWindowFixture.h"

#include <QDialog>

namespace quellbox {
namespace {

constexpr char everyEntry[] = "mnuTrRestore mnuTrExBar mnuTrExit";

class MainTray : public MainWindowTest {
protected:
    MainTray() { tray_ = &icon; }
    ~MainTray() override { window_.reset(); } // before the icon

    void OpenHiding() {
        Set("HideMinimized", "True");
        Open();
    }

    void Minimize() { window_->setWindowState(window_->windowState() | Qt::WindowMinimized); }

    void MinimizeAndHide() {
        Minimize();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->isVisible(); }, patience));
    }

    FakeTray icon;
};

TEST_F(MainTray, TheIconExistsExactlyWhileTheEntryIsChecked) {
    Open();
    EXPECT_EQ(icon.presence, 0);
    EXPECT_EQ(icon.text.toStdString(), "Quellbox");
    EXPECT_TRUE(icon.tip.isEmpty());
    Action("mnuViewHide")->trigger();
    Settle();
    EXPECT_EQ(icon.presence, 1);
    EXPECT_EQ(icon.tip.toStdString(), "Quellbox");
    icon.text.clear();
    Action("mnuViewHide")->trigger();
    Settle();
    EXPECT_EQ(icon.presence, 0);
    EXPECT_EQ(icon.text.toStdString(), "Quellbox");
}

TEST_F(MainTray, TheStoredSettingShowsTheIconAtTheStartAndClosingRemovesIt) {
    OpenHiding();
    EXPECT_EQ(icon.presence, 1);
    EXPECT_EQ(icon.tip.toStdString(), "Quellbox");
    window_->close();
    EXPECT_EQ(icon.presence, 0);
    EXPECT_EQ(Stored("HideMinimized").toStdString(), "True");
}

TEST_F(MainTray, TheCheckMarkIsSavedAsTheSetting) {
    Open();
    Action("mnuViewHide")->trigger();
    Settle();
    window_->close();
    EXPECT_EQ(Stored("HideMinimized").toStdString(), "True");
}

TEST_F(MainTray, MinimizingHidesTheWindowAndTheLeftButtonBringsItBack) {
    OpenHiding();
    MinimizeAndHide();
    icon.ClickLeft();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(window_->isMinimized());
    EXPECT_FALSE(window_->isMaximized());
}

TEST_F(MainTray, BringingTheWindowBackRunsNoOtherEvents) {
    OpenHiding();
    MinimizeAndHide();
    bool ran = false;
    QTimer::singleShot(0, window_.get(), [&ran] { ran = true; });
    icon.ClickLeft();
    EXPECT_FALSE(ran);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&ran] { return ran; }, patience));
    EXPECT_FALSE(window_->isMinimized());
}

TEST_F(MainTray, RestoreGoesBackToMaximized) {
    OpenHiding();
    window_->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->State().SavedWindowState == 2; }, patience));
    MinimizeAndHide();
    Action("mnuTrRestore")->trigger();
    Settle();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(window_->isMaximized());
    EXPECT_FALSE(window_->isMinimized());
}

TEST_F(MainTray, WithoutTheCheckMarkTheMinimizedWindowStaysOnTheTaskBar) {
    OpenHiding();
    Action("mnuViewHide")->trigger();
    Settle();
    EXPECT_EQ(icon.presence, 0);
    Minimize();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window_->isMinimized());
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(MainTray, AWindowThatStartsMinimizedHidesToo) {
    Set("MainWindowState", "1");
    Set("HideMinimized", "True");
    window_ = std::make_unique<frmMain>(
        MainPorts{files_, store_, clock_, shell_, pool_, volumes_, passwords_, program_, tray_});
    window_->show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->isVisible(); }, patience));
    icon.ClickLeft();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(window_->isMinimized());
}

TEST_F(MainTray, TheRightButtonPopsUpTheMenuWithRestoreInBold) {
    OpenHiding();
    EXPECT_EQ(icon.menu, Find<QMenu>("mnuTray"));
    EXPECT_EQ(icon.menu->defaultAction(), Action("mnuTrRestore"));
    EXPECT_TRUE(Action("mnuTrRestore")->isEnabled());
    MinimizeAndHide();
    icon.ClickRight();
    EXPECT_EQ(icon.popUps, 1);
    EXPECT_FALSE(window_->isVisible()); // only an entry of the menu brings it back
}

TEST_F(MainTray, WithADialogOpenTheRightButtonRestoresTheStateAndShowsNoMenu) {
    OpenHiding();
    QDialog dialog(window_.get());
    dialog.setObjectName(QStringLiteral("frmOptions"));
    dialog.setModal(true);
    dialog.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return icon.owner == dialog.windowHandle(); }, patience));
    MinimizeAndHide();
    icon.ClickRight();
    EXPECT_EQ(icon.popUps, 0);
    EXPECT_FALSE(window_->isMinimized());
    dialog.close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return icon.owner == nullptr; }, patience));
    icon.ClickRight();
    EXPECT_EQ(icon.popUps, 1);
}

TEST_F(MainTray, WithTheOptionsOpenTheRightButtonSetsTheStateOfTheHiddenWindowAndNoMore) {
    OpenHiding();
    ASSERT_TRUE(WaitForRefreshes(1));
    window_->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->State().SavedWindowState == 2; }, patience));
    bool looked = false;
    QTimer::singleShot(0, window_.get(), [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->objectName(), QStringLiteral("frmOptions"));
        MinimizeAndHide();
        icon.ClickRight();
        looked = true;
        EXPECT_EQ(icon.popUps, 0);
        EXPECT_FALSE(window_->isVisible());
        EXPECT_TRUE(window_->isMaximized());
        EXPECT_FALSE(window_->isMinimized());
        EXPECT_TRUE(dialog->isVisible());
        dialog->close();
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_TRUE(looked);
    icon.ClickRight();
    EXPECT_EQ(icon.popUps, 1);
    icon.ClickLeft();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(window_->isMaximized());
}

TEST_F(MainTray, ADesktopThatDrawsTheMenuHasNothingToDrawWhileADialogIsOpen) {
    icon.hostDrawsMenu = true;
    OpenHiding();
    EXPECT_EQ(icon.MenuEntries(), everyEntry);
    QDialog dialog(window_.get());
    dialog.setObjectName(QStringLiteral("frmOptions"));
    dialog.show();
    EXPECT_EQ(icon.MenuEntries(), "");
    MinimizeAndHide();
    icon.ClickRight();
    EXPECT_FALSE(window_->isMinimized());
    dialog.close();
    EXPECT_EQ(icon.MenuEntries(), everyEntry);
    icon.ClickRight();
    EXPECT_EQ(icon.popUps, 0);
}

TEST_F(MainTray, ExitFromTheTrayStoresANormalWindow) {
    OpenHiding();
    MinimizeAndHide();
    Action("mnuTrExit")->trigger();
    Settle();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(Stored("MainWindowState").toStdString(), "0");
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainTray, ExitFromTheTrayStoresAMaximizedWindow) {
    OpenHiding();
    window_->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->State().SavedWindowState == 2; }, patience));
    MinimizeAndHide();
    Action("mnuTrExit")->trigger();
    Settle();
    EXPECT_EQ(Stored("MainWindowState").toStdString(), "2");
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainTray, WithoutANotificationAreaTheWindowIsNeverHiddenAndTheEntrySaysWhy) {
    icon.available = false;
    Open();
    Action("mnuViewHide")->trigger();
    Settle();
    EXPECT_TRUE(Action("mnuViewHide")->isChecked());
    EXPECT_TRUE(Action("mnuViewHide")->isEnabled());
    const std::string reason = "This desktop has no notification area, so the window is only minimized";
    EXPECT_EQ(Action("mnuViewHide")->toolTip().toStdString(), reason);
    EXPECT_EQ(Panel("info"), reason);
    Minimize();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(window_->isMinimized());
    icon.available = true;
    Q_EMIT Find<QMenu>("mnuView")->aboutToShow();
    EXPECT_NE(Action("mnuViewHide")->toolTip().toStdString(), reason);
}

TEST_F(MainTray, ANotificationAreaThatVanishesGivesTheWindowBack) {
    OpenHiding();
    MinimizeAndHide();
    auto* watch = Find<QTimer>("tmrTray");
    ASSERT_TRUE(watch->isActive());
    watch->setInterval(1);
    ASSERT_TRUE(QTest::qWaitFor([watch] { return watch->isActive(); }, patience));
    EXPECT_FALSE(window_->isVisible());
    icon.available = false;
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->isVisible(); }, patience));
    EXPECT_FALSE(window_->isMinimized());
    EXPECT_FALSE(watch->isActive());
}

TEST_F(MainTray, TheTipTellsTheNumberOfMessages) {
    AddThree();
    tray_ = &icon;
    Set("HideMinimized", "True");
    OpenRefreshed();
    EXPECT_EQ(icon.tip.toStdString(), "Quellbox: 3 messages");
}

TEST_F(MainTray, TheHiddenWindowGoesOnRefreshing) {
    Set("AutoRefresh", "1");
    AddThree();
    OpenHiding();
    MinimizeAndHide();
    ASSERT_TRUE(WaitForRefreshes(1));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_TRUE(Find<QTimer>("tmrRefresh")->isActive());
    EXPECT_FALSE(window_->isVisible());
}

} // namespace
} // namespace quellbox
