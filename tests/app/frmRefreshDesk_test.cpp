#include "tests/support/FileNames.h"
#include "tests/support/MainWindowFixture.h"

#include <QScrollBar>

namespace quellbox {
namespace {

class MainRefresh : public MainWindowTest {
protected:
    /// Nothing is selected, so that the next tick adds what is new.
    void ScrollToTheEndOfALongList() {
        for (int number = 0; number < 60; ++number) {
            AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 2, 10, QLatin1Char('0'))), number);
        }
        Set("AutoRefresh", "1");
        OpenRefreshed();
        QTest::keyClick(List(), Qt::Key_Escape);
        List()->verticalScrollBar()->setValue(List()->verticalScrollBar()->maximum());
        ASSERT_FALSE(List()->viewport()->rect().contains(CentreOfRow(0)));
    }
};

TEST_F(MainRefresh, AnEmptyArchiveShowsTheTimeOfThePass) {
    OpenRefreshed();
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(Panel("count"), "");
    EXPECT_EQ(Panel("size"), QLocale().toString(clock_.Now(), QStringLiteral("dd-MMM hh:mm:ss")).toStdString());
    EXPECT_EQ(PanelView("size")->toolTip().toStdString(), "Time of last screen update");
    EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisible());
}

TEST_F(MainRefresh, TheFilterButtonListsTheDaysInForce) {
    AddMessage("yesterday.eml", -12 * 60 - 1);
    AddMessage("today.eml", -12 * 60);
    Set("FilterDays", "1");
    OpenRefreshed();
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
    EXPECT_EQ(Panel("count"), "2 messages");
    QWidget* button = Find<QToolBar>("tlbMessages")->widgetForAction(Button("tlbMessages", "filter"));
    QTest::mouseClick(button, Qt::LeftButton);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "today.eml");
    EXPECT_EQ(Panel("count"), "1 (just today)");
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "1");
    QTest::mouseClick(button, Qt::LeftButton);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(3));
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
}

TEST_F(MainRefresh, AReleasedFilterButtonListsEveryFileWhateverTheDayWindow) {
    AddMessage("old.eml", -30 * 24 * 60);
    AddMessage("new.eml", 0);
    Set("FilterDays", "7");
    Set("FilterMessages", "1");
    OpenRefreshed();
    EXPECT_EQ(Keys(), "new.eml");
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "7");
    Button("tlbMessages", "filter")->trigger();
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "0");
    EXPECT_EQ(window_->State().FilterDays, 7);
    EXPECT_EQ(Keys(), "new.eml old.eml");
    EXPECT_EQ(Panel("count"), "2 messages");
}

TEST_F(MainRefresh, TheSpamLevelComesFromEitherHeader) {
    const auto add = [this](const char* name, const QByteArray& header, int minute) {
        files_.Add(QStringLiteral("/archive/") + QLatin1String(name), header + "Subject: x\n\nX-SCL: 1%\n",
                   noon_.addSecs(60 * minute).toMSecsSinceEpoch() * 1'000'000);
    };
    add("first.eml", "X-SCL: 7 53.21%\n", 4);
    add("second.eml", "X-SMSMSE-SCL: 9\n", 3);
    add("none.eml", "", 2);
    add("bare.eml", "X-SCL: 7\n", 1);
    OpenRefreshed();
    ASSERT_EQ(Keys(), "first.eml second.eml none.eml bare.eml");
    EXPECT_EQ(Cell(0, ColumnScl), "7 53.21");
    EXPECT_EQ(Cell(1, ColumnScl), "9");
    EXPECT_EQ(Cell(2, ColumnScl), "");
    EXPECT_EQ(Cell(3, ColumnScl), "");
}

TEST_F(MainRefresh, TheRefreshCommandRebuildsTheListAndDeselects) {
    AddThree();
    OpenRefreshed();
    AddMessage("d.eml", 0);
    QTest::keyClick(List(), Qt::Key_F5);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml d.eml");
    EXPECT_FALSE(IsUnread(3));
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_EQ(window_->State().SelectedCount, 0);
    EXPECT_EQ(Panel("count"), "4 messages");
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(MainRefresh, BulkModeShowsFileNamesAndReadsOnClick) {
    AddThree();
    Set("BulkMode", "True");
    Set("Contents", "0"); // the contents panes read the file too
    OpenRefreshed();
    EXPECT_EQ(Cell(1, ColumnSubject), "b.eml");
    EXPECT_EQ(Cell(1, ColumnTo), "");
    EXPECT_EQ(files_.OpenCount(), 1); // the first message, which the first tick shows
    ClickRow(1);
    EXPECT_EQ(Cell(1, ColumnSubject), "about b.eml");
    EXPECT_EQ(Cell(1, ColumnTo), "to-b.eml");
    EXPECT_EQ(Cell(2, ColumnSubject), "c.eml");
    EXPECT_EQ(files_.OpenCount(), 2);
}

TEST_F(MainRefresh, TheBulkToggleRefreshesAndIsStored) {
    AddThree();
    OpenRefreshed();
    EXPECT_EQ(Cell(0, ColumnSubject), "about a.eml");
    const bool before = List()->alternatingRowColors();
    QTest::keyClick(List(), Qt::Key_B, Qt::ControlModifier);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Cell(0, ColumnSubject), "a.eml");
    EXPECT_NE(List()->alternatingRowColors(), before);
    window_->close();
    EXPECT_EQ(Stored("BulkMode").toStdString(), "True");
}

TEST_F(MainRefresh, AutoRefreshWaitsForTheSelectionToEndThenAppendsBold) {
    AddThree();
    Set("AutoRefresh", "1");
    Set("RefreshInterval", "1");
    OpenRefreshed();
    ASSERT_EQ(window_->State().SelectedCount, 1);
    AddMessage("new.eml", 10);
    EXPECT_FALSE(QTest::qWaitFor([this] { return refreshes_ > 1; }, 1500));
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "new.eml a.eml b.eml c.eml"); // newest first
    EXPECT_TRUE(IsUnread(0));
    EXPECT_FALSE(IsUnread(1));
    EXPECT_EQ(Panel("count"), "4 messages");
}

TEST_F(MainRefresh, WithoutAutoRefreshNothingHappensUntilTheDayChanges) {
    AddThree();
    Set("RefreshInterval", "1");
    OpenRefreshed();
    AddMessage("new.eml", 10);
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    EXPECT_FALSE(QTest::qWaitFor([this] { return refreshes_ > 1; }, 1500));
    ClickRow(0); // a selection does not hold the change of the day back
    clock_.Set(clock_.Now().addDays(1));
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "new.eml a.eml b.eml c.eml");
    EXPECT_FALSE(IsUnread(0)); // rebuilt, not appended
    EXPECT_EQ(window_->State().LastRefreshDay, 11);
}

TEST_F(MainRefresh, AnEmptiedListIsRefilledInFull) {
    AddThree();
    Set("AutoRefresh", "1");
    Set("RefreshInterval", "1");
    OpenRefreshed();
    window_->Messages().Clear();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
}

TEST_F(MainRefresh, AListWhoseMessagesWereAllDeletedIsRefilledInFull) {
    AddThree();
    Set("AutoRefresh", "1");
    Set("RefreshInterval", "1");
    OpenRefreshed();
    Action("mnuEditSelectAll")->trigger();
    Settle();
    Action("mnuActionsDelete")->trigger();
    Settle();
    ASSERT_EQ(Keys(), "");
    ASSERT_TRUE(FileNames(files_, QStringLiteral("/archive")).isEmpty());
    ASSERT_NE(window_->State().LastAddedFile, QString()); // gone, so that nothing would follow it
    AddMessage("early.eml", -30);
    AddMessage("late.eml", 30);
    const int before = refreshes_;
    ASSERT_TRUE(WaitForRefreshes(before + 1));
    EXPECT_EQ(Keys(), "late.eml early.eml");
    EXPECT_TRUE(IsUnread(0) && IsUnread(1));
    EXPECT_EQ(Panel("count"), "2 messages");
}

TEST_F(MainRefresh, ATickWithNothingNewKeepsTheList) {
    AddThree();
    Set("AutoRefresh", "1");
    Set("RefreshInterval", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_FALSE(IsUnread(0));
}

TEST_F(MainRefresh, APassWhoseLastMessageWasReadShowsTheFirstRow) {
    ScrollToTheEndOfALongList();
    AddMessage("new.eml", 70);
    Tick();
    ASSERT_TRUE(WaitForRefreshes(2));
    ASSERT_EQ(window_->Messages().Row(0).Key(), QStringLiteral("new.eml"));
    EXPECT_TRUE(List()->viewport()->rect().contains(CentreOfRow(0)));
}

TEST_F(MainRefresh, APassWhoseLastMessageWasNotReadLeavesTheListWhereItIs) {
    ScrollToTheEndOfALongList();
    AddMessage("new.eml", 70);
    files_.Add(QStringLiteral("/archive/broken.eml"), "", noon_.addSecs(60 * 71).toMSecsSinceEpoch() * 1'000'000);
    Tick();
    ASSERT_TRUE(WaitForRefreshes(2));
    ASSERT_EQ(window_->Messages().Row(0).Key(), QStringLiteral("broken.eml"));
    EXPECT_FALSE(List()->viewport()->rect().contains(CentreOfRow(0)));
}

TEST_F(MainRefresh, ATolerableSenderVanishesIntoThePickupFolder) {
    files_.Add(QStringLiteral("/archive/good.eml"), "X-Sender: friend@good.example\nSubject: x\n\n",
               noon_.toMSecsSinceEpoch() * 1'000'000);
    AddMessage("a.eml", 1);
    Set("TolerationLevel", "2");
    store_.SetValue(QStringLiteral("Tolerate"), QStringLiteral("good.example"), QStringLiteral("0"));
    OpenRefreshed();
    EXPECT_EQ(Keys(), "a.eml");
    EXPECT_TRUE(files_.FileExists(QStringLiteral("/pickup/good.eml")));
}

TEST_F(MainRefresh, WhileAPassRunsTheWindowShowsIt) {
    for (int number = 0; number < 40; ++number) {
        AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 2, 10, QLatin1Char('0'))), number);
    }
    files_.SetLatency(std::chrono::milliseconds(10));
    pool_.SetMost(1);
    Open();
    bool looked = false;
    WhileBusy([&] {
        looked = true;
        EXPECT_EQ(window_->Panels().Info().text.toStdString(), "Please wait till operation completes...");
        EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QWidget>("prbFiles")->isVisible(); }, patience))
            << "as soon as the files are counted";
        EXPECT_TRUE(QApplication::overrideCursor() != nullptr &&
                    QApplication::overrideCursor()->shape() == Qt::WaitCursor);
        // The bar lies over the panel "size".
        EXPECT_TRUE(PanelView("size")->geometry().contains(Find<QWidget>("prbFiles")->geometry().center()));
        window_->hide(); // what is shown on entering is taken back even if the window is gone
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    EXPECT_TRUE(looked);
    EXPECT_TRUE(List()->isEnabled());
    EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisibleTo(window_.get()));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(window_->Messages().Count(), 40);
}

TEST_F(MainRefresh, AHiddenWindowDoesNotShowThatItIsBusy) {
    AddThree();
    OpenRefreshed();
    window_->hide();
    window_->Panels().SetInfo(QStringLiteral("before"));
    window_->SetBusy(true, 10);
    EXPECT_TRUE(List()->isEnabled());
    EXPECT_EQ(Panel("info"), "before");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisibleTo(window_.get()));
    window_->SetBusy(false, 0);
    EXPECT_TRUE(List()->isEnabled());
    EXPECT_EQ(Panel("info"), "before");
}

TEST_F(MainRefresh, AMinimizedWindowIsBusyButTakesNoFocusAfterwards) {
    AddThree();
    OpenRefreshed();
    for (const bool minimized : {false, true}) {
        if (minimized) {
            window_->showMinimized();
            ASSERT_TRUE(QTest::qWaitFor([this] { return window_->isMinimized(); }, patience));
        }
        Find<QWidget>("rtfRaw")->setFocus();
        window_->SetBusy(true, 10);
        EXPECT_FALSE(List()->isEnabled());
        EXPECT_EQ(Panel("info"), "Please wait till operation completes...");
        EXPECT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_TRUE(Find<QWidget>("prbFiles")->isVisibleTo(window_.get()));
        window_->SetBusy(false, 0);
        EXPECT_TRUE(List()->isEnabled());
        EXPECT_EQ(Panel("info"), "Done");
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisibleTo(window_.get()));
        EXPECT_EQ(window_->focusWidget()->objectName().toStdString(), minimized ? "rtfRaw" : "lvwMessages");
    }
}

TEST_F(MainRefresh, WhatIsToggledDuringAPassTakesEffectAfterIt) {
    for (int number = 0; number < 40; ++number) {
        AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 2, 10, QLatin1Char('0'))), number);
    }
    AddMessage("yesterday.eml", -24 * 60);
    Set("FilterDays", "1");
    files_.SetLatency(std::chrono::milliseconds(10));
    pool_.SetMost(1);
    Open();
    bool toggled = false;
    WhileBusy([&] {
        toggled = true;
        Button("tlbMessages", "filter")->trigger();
        Action("mnuViewBulk")->trigger();
        EXPECT_EQ(refreshes_, 0) << "the pass goes on";
        EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "0");
        files_.SetLatency(std::chrono::milliseconds(0));
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    ASSERT_TRUE(toggled);
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "1");
    EXPECT_EQ(window_->Messages().Count(), 40);
    EXPECT_EQ(Cell(0, ColumnSubject), "39.eml") << "bulk mode shows file names";
    EXPECT_FALSE(QTest::qWaitFor([this] { return refreshes_ > 2; }, 100)) << "one refresh for both";
}

TEST_F(MainRefresh, EveryKeyRestartsTheInterval) {
    AddThree();
    OpenRefreshed();
    const auto* timer = Find<QTimer>("tmrRefresh");
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Down, Qt::NoModifier}, {Qt::Key_X, Qt::NoModifier}, {Qt::Key_A, Qt::ControlModifier}}) {
        window_->State().RefreshInterval = static_cast<qint16>(window_->State().RefreshInterval + 1);
        QTest::keyClick(List(), key, modifiers);
        EXPECT_EQ(timer->interval(), window_->State().RefreshInterval * 1000) << key;
    }
}

TEST_F(MainRefresh, AKeyDoesNotPutOffTheFirstRefresh) {
    AddThree();
    Open();
    QTest::keyClick(List(), Qt::Key_Down);
    Settle();
    EXPECT_EQ(Find<QTimer>("tmrRefresh")->interval(), 500);
    EXPECT_TRUE(WaitForRefreshes(1));
}

} // namespace
} // namespace quellbox
