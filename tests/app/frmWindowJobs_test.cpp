// What the window does while a job runs, and when one is stopped.
#include "tests/messages/ListRows.h"
#include "tests/support/CallGate.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/MainWindowFixture.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QToolButton>

namespace quellbox {
namespace {

using namespace std::chrono_literals;

class MainJobs : public MainWindowTest {
protected:
    ~MainJobs() override {
        window_.reset();
        pool_.WaitForDone();
    }

    void AddMany(int count) {
        for (int number = 0; number < count; ++number) {
            AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 3, 10, QLatin1Char('0'))), number);
        }
    }

    /// Lets the interval of the timer be over, and does not wait for what comes of it.
    void BeginTick() {
        auto* timer = Find<QTimer>("tmrRefresh");
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    }

    bool WaitUntilBusy() {
        return QTest::qWaitFor([this] { return !List()->isEnabled(); }, patience);
    }

    void Escape() {
        QWidget* focus = window_->focusWidget();
        QTest::keyClick(focus != nullptr ? focus : window_.get(), Qt::Key_Escape);
    }

    /// Begins to delete all of `count` messages, one at a time, and waits until that shows.
    void BeginToDelete(int count) {
        AddMany(count);
        OpenRefreshed();
        pool_.SetMost(1);
        files_.SetLatency(30ms);
        List()->selectAll();
        window_->UpdateSelectionStatus();
        Action("mnuActionsDelete")->trigger();
        ASSERT_TRUE(WaitUntilBusy());
    }

    int FilesLeft() const { return static_cast<int>(files_.Paths().size()); }

    /// Lists one message in bulk mode and begins to tolerate its sender, which is what is returned.
    QString SenderOfferedInBulkMode(const QByteArray& message) {
        files_.Add(QStringLiteral("/archive/m.eml"), message, 0);
        Set("BulkMode", "True");
        Set("TolerationLevel", "1");
        Set("Contents", "False");
        OpenRefreshed();
        window_->mnuAcRefresh_Click(); // the row that the first tick has clicked is known
        Settle();
        EXPECT_TRUE(window_->Messages().Row(0).Tag().isEmpty());
        List()->selectAll();
        window_->UpdateSelectionStatus();
        files_.SetLatency(20ms);
        QString sender;
        QTimer look;
        look.callOnTimeout([&sender] {
            if (QWidget* dialog = QApplication::activeModalWidget()) {
                sender = dialog->findChild<QLineEdit*>()->text();
                dialog->close();
            }
        });
        look.start(5);
        Action("mnuActionsTolerate")->trigger();
        Settle();
        return sender;
    }
};

TEST_F(MainJobs, ATickGivesWayToAClick) {
    AddThree();
    Set("AutoRefresh", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    AddMessage("new.eml", 9);
    files_.SetLatency(100ms);
    BeginTick();
    ASSERT_FALSE(window_->Jobs().IsIdle()) << "the tick lists the folder";
    files_.SetLatency(0ms);
    ClickRow(1);
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(Find<RawPane>("rtfRaw")->FileName(), QStringLiteral("/archive/b.eml"));
    QTest::qWait(150); // the listing has come by now
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_FALSE(Find<RawPane>("rtfRaw")->Text().isEmpty());
    QTest::keyClick(List(), Qt::Key_Delete);
    Settle();
    EXPECT_EQ(Keys(), "a.eml c.eml");
    EXPECT_EQ(Panel("count"), "2 messages");
}

TEST_F(MainJobs, ATickThatGaveWayListsTheNewMessageNextTime) {
    AddThree();
    Set("AutoRefresh", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    AddMessage("new.eml", 9);
    files_.SetLatency(100ms);
    BeginTick();
    files_.SetLatency(0ms);
    ClickRow(1);
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    Tick();
    EXPECT_EQ(Keys(), "new.eml a.eml b.eml c.eml");
    EXPECT_TRUE(IsUnread(0));
}

TEST_F(MainJobs, AListingThatStallsShowsThatTheWindowIsBusy) {
    AddThree();
    OpenRefreshed();
    files_.SetLatency(400ms);
    window_->mnuAcRefresh_Click();
    ASSERT_TRUE(WaitUntilBusy());
    EXPECT_EQ(Panel("info"), "Please wait till operation completes...");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(Find<QToolButton>("btnStop")->isVisible());
    for (const char* command : {"mnuActionsDelete", "mnuActionsUnblock", "mnuEditSelectAll", "mnuToolsOptions",
                                "mnuToolsCleansing", "mnuToolsTest", "mnuOpenFolderSelect0", "tlbMessages_delete"}) {
        EXPECT_FALSE(Action(command)->isEnabled()) << command;
    }
    EXPECT_TRUE(Action("mnuAcRefresh")->isEnabled()) << "it waits for the end of this one";
    files_.SetLatency(0ms);
    Settle();
    EXPECT_TRUE(Action("mnuToolsOptions")->isEnabled());
    EXPECT_FALSE(Find<QToolButton>("btnStop")->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
}

TEST_F(MainJobs, AShortJobShowsNothingOfBeingBusy) {
    AddThree();
    OpenRefreshed();
    bool wasBusy = false;
    QObject::connect(&window_->Panels(), &StatusPanels::Changed,
                     [&] { wasBusy |= window_->Panels().Info().text.startsWith(QStringLiteral("Please wait")); });
    window_->Jobs().disconnect(SIGNAL(BusyDue(int))); // a slow machine may make it due
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_FALSE(wasBusy);
    EXPECT_EQ(Keys(), "b.eml c.eml");
}

TEST_F(MainJobs, AJobThatBeganWhileTheWindowWasHiddenIsShownWithTheWindow) {
    AddThree();
    OpenRefreshed();
    window_->hide();
    files_.SetLatency(300ms);
    window_->mnuAcRefresh_Click();
    QTest::qWait(200);
    EXPECT_TRUE(List()->isEnabled()) << "nobody sees it";
    window_->show();
    ASSERT_TRUE(window_->Jobs().IsAtWork());
    EXPECT_FALSE(List()->isEnabled());
    EXPECT_FALSE(Action("mnuActionsDelete")->isEnabled());
    EXPECT_TRUE(Find<QToolButton>("btnStop")->isVisible());
    files_.SetLatency(0ms);
    Settle();
    EXPECT_TRUE(List()->isEnabled());
}

TEST_F(MainJobs, AnEntryThatCannotRunNowKeepsItsMark) {
    AddThree();
    OpenRefreshed();
    window_->Jobs().disconnect(SIGNAL(BusyDue(int))); // as in the moment before a job is shown
    files_.SetLatency(100ms);
    window_->mnuAcRefresh_Click();
    ASSERT_TRUE(window_->Jobs().IsAtWork());
    Action("mnuViewContents")->trigger();
    EXPECT_TRUE(Action("mnuViewContents")->isChecked());
    files_.SetLatency(0ms);
    Settle();
}

TEST_F(MainJobs, AStoppedLookIntoAMessageLeavesNoChangesUnderWay) {
    AddThree();
    OpenRefreshed();
    CallGate gate;
    window_->Jobs().Call(
        WindowJobs::Effect::Reads,
        [&gate]() -> WindowJobs::Error {
            gate.Pass(0);
            return {};
        },
        [](const WindowJobs::Error&) {});
    window_->Jobs().GiveUp();
    EXPECT_FALSE(window_->Jobs().LeftChangesUnderWay());
    window_->Jobs().Call(
        WindowJobs::Effect::Changes,
        [&gate]() -> WindowJobs::Error {
            gate.Pass(0);
            return {};
        },
        [](const WindowJobs::Error&) {});
    window_->Jobs().GiveUp();
    EXPECT_TRUE(window_->Jobs().LeftChangesUnderWay());
    gate.LetAll();
    pool_.WaitForDone();
}

TEST_F(MainJobs, EscapeStopsADeleteAndTheRestOfTheRowsStay) {
    BeginToDelete(200); // they take seconds, so that the job is still at work on a slow machine
    Escape();
    Settle();
    const int rows = window_->Messages().Count();
    EXPECT_GT(rows, 0);
    EXPECT_LT(rows, 200);
    EXPECT_EQ(FilesLeft(), rows);
    EXPECT_TRUE(List()->isEnabled());
    EXPECT_EQ(window_->State().SelectedCount, 1) << "the row that followed";
}

TEST_F(MainJobs, TheButtonStopsAJobToo) {
    BeginToDelete(200);
    QTest::mouseClick(Find<QToolButton>("btnStop"), Qt::LeftButton);
    Settle();
    EXPECT_GT(window_->Messages().Count(), 0);
    EXPECT_EQ(FilesLeft(), window_->Messages().Count());
}

TEST_F(MainJobs, ADialogHasNoHourglassOverIt) {
    BeginToDelete(60);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    const auto hourglassIsGone = [] { return QApplication::overrideCursor() == nullptr; };
    bool wasAtWork = false;
    DialogVisit visit("frmAbout", [&](const QDialog&) {
        EXPECT_TRUE(QTest::qWaitFor(hourglassIsGone, patience));
        wasAtWork = window_->Jobs().IsAtWork();
    });
    Action("mnuHelpAbout")->trigger();
    EXPECT_TRUE(visit.Happened());
    EXPECT_TRUE(wasAtWork) << "the job ended too soon to show anything";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !hourglassIsGone() || !window_->Jobs().IsAtWork(); }, patience));
    Settle();
    EXPECT_TRUE(hourglassIsGone());
}

TEST_F(MainJobs, KeysAndClicksDuringAJobAreDropped) {
    BeginToDelete(10);
    const QItemSelection selected = List()->selectionModel()->selection();
    QTest::keyClick(List(), Qt::Key_Down);
    QTest::keyClick(List(), Qt::Key_Delete);
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, CentreOfRow(2));
    QTest::keyClick(window_.get(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(List()->selectionModel()->selection(), selected);
    AddMessage("later.eml", 99);
    Settle();
    EXPECT_EQ(window_->Messages().Count(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(FilesLeft(), 1) << "no key was kept for later";
}

TEST_F(MainJobs, F5DuringAJobComesAfterIt) {
    BeginToDelete(5);
    window_->mnuAcRefresh_Click();
    AddMessage("later.eml", 99);
    const int before = refreshes_;
    ASSERT_TRUE(WaitForRefreshes(before + 1));
    EXPECT_EQ(Keys(), "later.eml");
}

TEST_F(MainJobs, ClosingDuringADeleteLosesNoOtherMessage) {
    BeginToDelete(20);
    window_->close();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(window_->Jobs().LeftChangesUnderWay());
    pool_.WaitForDone();
    EXPECT_GT(FilesLeft(), 0);
}

TEST_F(MainJobs, KeysFollowTheSelectionThoughTheCurrentRowIsNotPartOfIt) {
    AddThree();
    OpenRefreshed();
    ClickRow(0);
    ClickRow(1, Qt::ControlModifier);
    ClickRow(1, Qt::ControlModifier);
    ASSERT_EQ(SelectedKeys(), "a.eml");
    ASSERT_EQ(List()->currentIndex().row(), 1);
    auto* menu = Find<QMenu>("mnuActions");
    menu->popup({});
    EXPECT_FALSE(Action("mnuActionsDelete")->isEnabled()) << "the menu is for the current row";
    menu->close();
    QTest::keyClick(List(), Qt::Key_Delete);
    Settle();
    EXPECT_EQ(Keys(), "b.eml c.eml");
}

TEST_F(MainJobs, ASelectionThatCannotBeAddedUpCanBeDisposedOf) {
    AddThree();
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    ASSERT_FALSE(Action("mnuActionsDelete")->isEnabled());
    for (const int row : {0, 1}) {
        window_->Messages().Update(row, WithSize(window_->Messages().Row(row), qint64{2} << 30));
    }
    ClickRow(0);
    EXPECT_FALSE(errors_.isEmpty());
    EXPECT_TRUE(Action("mnuActionsDelete")->isEnabled());
    EXPECT_TRUE(Button("tlbMessages", "delete")->isEnabled());
}

TEST_F(MainJobs, ARowMarkedAsUnreadIsReadAgainByAClick) {
    AddThree();
    OpenRefreshed();
    ClickRow(1);
    Action("mnuEditMarkUnread")->trigger();
    ASSERT_TRUE(IsUnread(1));
    ClickRow(1);
    EXPECT_FALSE(IsUnread(1));
}

TEST_F(MainJobs, ToleratingInBulkModeWaitsForTheSender) {
    EXPECT_EQ(SenderOfferedInBulkMode("X-Sender: Bob@Friend.example\nFrom: bob\n\n"),
              QStringLiteral("Bob@Friend.example"));
}

TEST_F(MainJobs, ToleratingInBulkModeTakesTheSenderFromTheFieldOfTheServer) {
    Set("ServerProfile", "rspamd");
    EXPECT_EQ(SenderOfferedInBulkMode("Return-Path: <Bob@Friend.example>\nX-Sender: eve@spam.example\n"
                                      "X-Rspamd-Score: 20\nFrom: bob\n\n"),
              QStringLiteral("Bob@Friend.example"));
    EXPECT_EQ(Cell(0, ColumnScl), "20");
}

TEST_F(MainJobs, AnEscapeThatLeavesTheMenuBarKeepsTheSelection) {
    AddThree();
    OpenRefreshed();
    ClickRow(1);
    window_->menuBar()->setFocus();
    QTest::keyClick(window_->menuBar(), Qt::Key_Escape);
    EXPECT_EQ(SelectedKeys(), "b.eml");
}

TEST_F(MainJobs, ALastMessageThatHasGoneIsToldOnce) {
    AddThree();
    Set("AutoRefresh", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    files_.Remove(QStringLiteral("/archive/a.eml"));
    AddMessage("new.eml", 9);
    Tick();
    EXPECT_TRUE(Panel("info").find("F5") != std::string::npos) << Panel("info");
    window_->Panels().SetInfo(QStringLiteral("something else"));
    Tick();
    EXPECT_EQ(Panel("info"), "something else");
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Keys(), "new.eml b.eml c.eml");
}

TEST_F(MainJobs, TicksTellOnceThatThereAreTooManyFiles) {
    AddThree();
    Set("AutoRefresh", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    for (int number = 0; number < 32'767; ++number) {
        files_.Add(QStringLiteral("/archive/%1.txt").arg(number), "x", 0);
    }
    files_.LetFoldersTellStatus([](const QString&) { return true; });
    Tick();
    ASSERT_TRUE(QTest::qWaitFor([this] { return errors_.size() == 1; }, patience));
    Tick();
    Tick();
    QTest::qWait(50);
    EXPECT_EQ(errors_.size(), 1);
    EXPECT_EQ(window_->Messages().Count(), 3);
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_TRUE(QTest::qWaitFor([this] { return errors_.size() == 2; }, patience)) << "who asks is answered";
}

} // namespace
} // namespace quellbox
