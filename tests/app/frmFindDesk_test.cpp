#include "tests/messages/ListRows.h"
#include "tests/support/MainWindowFixture.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace quellbox {
namespace {

/// The list holds the rows a.eml, b.eml and c.eml, in this order, of which the first is selected.
class MainFind : public MainWindowTest {
protected:
    void SetUp() override {
        AddThree();
        Set("HeaderField", "3");
    }

    void OpenWindow() {
        OpenRefreshed();
        QObject::connect(window_.get(), &frmMain::NothingFound, [this] { ++beeps_; });
    }

    AppState& State() { return window_->State(); }

    /// Runs `act` on the find dialog as soon as it is active.
    void OnDialog(std::function<void(QDialog&)> act) {
        dialogSeen_ = false;
        poll_.callOnTimeout(window_.get(), [this, act = std::move(act)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || dialog->objectName() != QLatin1String("frmFind") ||
                QApplication::activeWindow() != dialog) {
                return;
            }
            poll_.stop();
            QObject::disconnect(&poll_, nullptr, window_.get(), nullptr);
            dialogSeen_ = true;
            act(*dialog);
        });
        poll_.start(1);
    }

    static void Click(QDialog& dialog, const char* name) {
        dialog.findChild<QPushButton*>(QLatin1String(name))->click();
    }

    static QLineEdit& Edit(QDialog& dialog) { return *dialog.findChild<QComboBox*>()->lineEdit(); }

    /// Opens the dialog with a command, types a text and presses Enter.
    void Search(const char* text, const char* command = "mnuEditFind") {
        OnDialog([text](QDialog& dialog) {
            Edit(dialog).clear();
            QTest::keyClicks(&Edit(dialog), QLatin1String(text));
            QTest::keyClick(&Edit(dialog), Qt::Key_Return);
        });
        Action(command)->trigger();
        Settle();
        EXPECT_TRUE(dialogSeen_);
    }

    /// Presses a key in the list, which has the focus once the window is active again.
    void Press(Qt::Key key) {
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return List()->hasFocus(); }, patience));
        QTest::keyClick(List(), key);
    }

    void Cancel(const char* command) {
        OnDialog([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        Action(command)->trigger();
        Settle();
        EXPECT_TRUE(dialogSeen_);
    }

    QString StoredText(int index) {
        return store_.Value(QStringLiteral("Find"), QString::number(index)).value_or(QStringLiteral("absent"));
    }

    int beeps_ = 0;
    bool dialogSeen_ = false;
    QTimer poll_;
};

TEST_F(MainFind, FindSelectsTheRowAloneAndFocusesTheList) {
    OpenWindow();
    ASSERT_EQ(SelectedKeys(), "a.eml");
    Search("ABOUT B");
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(List()->currentIndex().row(), 1);
    EXPECT_EQ(window_->focusWidget(), List());
    EXPECT_EQ(State().SelectedCount, 1);
    EXPECT_EQ(Panel("info"), "b.eml");
    EXPECT_EQ(State().FindText, QStringLiteral("ABOUT B"));
    EXPECT_EQ(State().FindPosition, 2);
    EXPECT_TRUE(Action("mnuActionsDelete")->isEnabled());
    EXPECT_EQ(beeps_, 0);
}

TEST_F(MainFind, FindNextAddsTheNextRowAndWrapsOnlyFromTheLast) {
    OpenWindow();
    Search("about");
    EXPECT_EQ(SelectedKeys(), "a.eml");
    Press(Qt::Key_F3);
    EXPECT_EQ(SelectedKeys(), "a.eml b.eml");
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(State().FindPosition, 3);
    EXPECT_EQ(Panel("info"), "3 selected");
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(State().FindPosition, 1);
    EXPECT_EQ(List()->currentIndex().row(), 0);
}

TEST_F(MainFind, AMissIsShownInThePanelAndBeeps) {
    OpenWindow();
    Search("abc");
    EXPECT_EQ(Panel("info"), "'abc' not found in header field SUBJECT");
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_TRUE(State().FindText.isEmpty());
    EXPECT_EQ(State().FindPosition, 0);
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainFind, AfterAMissFindNextSelectsTheFirstRowAndFindAllAsks) {
    OpenWindow();
    Search("abc");
    Press(Qt::Key_F3);
    EXPECT_EQ(SelectedKeys(), "a.eml");
    Cancel("mnuEditFindAll");
}

TEST_F(MainFind, AnEmptyListMissesAtOnce) {
    OpenWindow();
    window_->Messages().Clear();
    State().FindText = QStringLiteral("about");
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(beeps_, 1);
    EXPECT_EQ(Panel("info"), "'about' not found in header field SUBJECT");
}

TEST_F(MainFind, FindAllAsksForATextAndSelectsEveryMatchInOneChange) {
    OpenWindow();
    std::string caption;
    int changes = 0;
    OnDialog([&](QDialog& dialog) {
        caption = dialog.windowTitle().toStdString();
        window_->ClearSelection();
        QObject::connect(List()->selectionModel(), &QItemSelectionModel::selectionChanged, [&] { ++changes; });
        QTest::keyClicks(&Edit(dialog), QStringLiteral("about"));
        Click(dialog, "btnOK");
    });
    Action("mnuEditFindAll")->trigger();
    Settle();
    EXPECT_EQ(caption, "Find All");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(SelectedKeys(), "a.eml b.eml c.eml");
    EXPECT_EQ(Panel("info"), "3 selected");
    EXPECT_EQ(List()->currentIndex().row(), 2);
}

TEST_F(MainFind, FindNextAfterFindAllMissesUntilRowsAreAdded) {
    AddMessage("d.eml", 0);
    OpenWindow();
    State().FindText = QStringLiteral("about b");
    Action("mnuEditFindAll")->trigger();
    Settle();
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(beeps_, 1);
    State().FindText = QStringLiteral("about b");
    Action("mnuEditFindAll")->trigger();
    Settle();
    window_->Messages().Append({RowWith(QStringLiteral("about b"), QStringLiteral("b2.eml"))});
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "a.eml b.eml b2.eml");
}

TEST_F(MainFind, FindAllWithARememberedTextGoesOnAndKeepsTheSelection) {
    OpenWindow();
    Search("about");
    List()->selectionModel()->clearSelection();
    Action("mnuEditFindAll")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "b.eml c.eml");
    EXPECT_EQ(State().FindAll, -1);
}

TEST_F(MainFind, CancelLeavesSelectionAndSearchButTakesTheField) {
    OpenWindow();
    Search("about b");
    OnDialog([](QDialog& dialog) {
        dialog.findChild<QRadioButton*>(QStringLiteral("optField4"))->click();
        Click(dialog, "btnCancel");
    });
    Action("mnuEditFind")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(State().FindText, QStringLiteral("about b"));
    EXPECT_EQ(State().FindPosition, 2);
    EXPECT_EQ(State().HeaderField, 4);
}

TEST_F(MainFind, TheTextStaysUntilACancelUnloadsTheDialog) {
    OpenWindow();
    Search("about b");
    QStringList texts;
    const auto noteAndCancel = [&texts](QDialog& dialog) {
        texts += Edit(dialog).text();
        Click(dialog, "btnCancel");
    };
    for (int time = 0; time < 2; ++time) {
        OnDialog(noteAndCancel);
        Action("mnuEditFind")->trigger();
        Settle();
    }
    EXPECT_EQ(texts, QStringList({QStringLiteral("about b"), QString()}));
    EXPECT_EQ(window_->findChild<QDialog*>(QStringLiteral("frmFind")), nullptr);
}

TEST_F(MainFind, TheHistoryIsStoredWhenTheDialogIsCancelled) {
    store_.SetValue(QStringLiteral("Find"), QStringLiteral("0"), QStringLiteral("kept"));
    store_.SetValue(QStringLiteral("Find"), QStringLiteral("2"), QStringLiteral("behind a gap"));
    OpenWindow();
    Search("about b");
    Cancel("mnuEditFind");
    EXPECT_EQ(StoredText(0), QStringLiteral("kept"));
    EXPECT_EQ(StoredText(1), QStringLiteral("about b"));
    EXPECT_EQ(StoredText(2), QStringLiteral("absent"));
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainFind, TheHistoryIsStoredWhenTheWindowCloses) {
    OpenWindow();
    Search("about b");
    window_->close();
    EXPECT_EQ(StoredText(0), QStringLiteral("about b"));
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainFind, TheHistoryIsStoredEvenWhenTheWindowClosesMinimized) {
    OpenWindow();
    Search("about b");
    window_->showMinimized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->isMinimized(); }, patience));
    window_->close();
    EXPECT_EQ(StoredText(0), QStringLiteral("about b"));
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainFind, AnUnwritableStoreIsReportedOnce) {
    OpenWindow();
    store_.SetUnwritable();
    Cancel("mnuEditFind");
    EXPECT_EQ(errors_.size(), 1);
    Search("about b");
    EXPECT_EQ(SelectedKeys(), "b.eml");
    window_->close();
    EXPECT_EQ(errors_.size(), 2);
}

TEST_F(MainFind, ClosingTheWindowEndsTheDialogAndStoresItsHistory) {
    OpenWindow();
    Search("about b");
    OnDialog([this](QDialog&) { window_->close(); });
    Action("mnuEditFind")->trigger();
    Settle();
    EXPECT_TRUE(dialogSeen_);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(StoredText(0), QStringLiteral("about b"));
    EXPECT_EQ(SelectedKeys(), "b.eml");
}

TEST_F(MainFind, TheContextMenuSearchesTheColumnOfTheLastMousePress) {
    OpenWindow();
    const QPoint cell = List()->visualRect(List()->model()->index(1, ColumnTo)).center();
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, cell);
    Settle();
    Search("to-c", "mnuMessageFind");
    EXPECT_EQ(State().HeaderField, ColumnTo);
    EXPECT_EQ(SelectedKeys(), "c.eml");
    Search("about", "mnuMessageFind");
    EXPECT_EQ(Panel("info"), "'about' not found in header field TO");
}

TEST_F(MainFind, EveryColumnIsSearchedThatTheMouseWasPressedIn) {
    OpenWindow();
    const QHeaderView* header = List()->header();
    for (const Column column : {ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnScl}) {
        // The outermost pixels still belong to the column.
        const int left = header->sectionViewportPosition(column);
        for (const int x : {left + 1, left + header->sectionSize(column) - 1}) {
            State().HeaderField = ColumnBytes;
            QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, QPoint(x, CentreOfRow(1).y()));
            Cancel("mnuMessageFind");
            EXPECT_EQ(State().HeaderField, column) << "pixel " << x;
        }
    }
}

TEST_F(MainFind, TheDateIsSearchedAsTheListShowsIt) {
    OpenWindow();
    State().HeaderField = ColumnDate;
    Search(Cell(2, ColumnDate).c_str());
    EXPECT_EQ(SelectedKeys(), "c.eml");
}

TEST_F(MainFind, ColumnsThatDoNotExistAreMissed) {
    OpenWindow();
    for (const qint16 column : {qint16{9}, qint16{-3}}) {
        State().HeaderField = column;
        State().FindText = QStringLiteral("about");
        Action("mnuEditFindNext")->trigger();
        Settle();
        EXPECT_EQ(Panel("info"), "'about' not found in header field " + std::to_string(column));
    }
    EXPECT_EQ(beeps_, 2);
}

TEST_F(MainFind, ATextOf10000CharactersIsReportedInThePanel) {
    OpenWindow();
    const int width = window_->width();
    State().FindText = QString(10'000, QLatin1Char('&'));
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(Panel("info").size(), 10'000 + std::string("'' not found in header field SUBJECT").size());
    EXPECT_EQ(window_->width(), width);
    EXPECT_LE(window_->minimumSizeHint().width(), width);
}

TEST_F(MainFind, TheButtonAsksFirstAndThenFindsTheNext) {
    OpenWindow();
    Search("about", "tlbMessages_find");
    EXPECT_EQ(SelectedKeys(), "a.eml");
    Button("tlbMessages", "find")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "a.eml b.eml");
}

TEST_F(MainFind, CommandsAreEnabledByRowsAndFindNextInTheMenuByAText) {
    OpenWindow();
    EXPECT_TRUE(Button("tlbMessages", "find")->isEnabled());
    for (const char* command : {"mnuEditFind", "mnuEditFindAll", "mnuMessageFind", "mnuEditFindNext"}) {
        EXPECT_TRUE(Action(command)->isEnabled()) << command;
    }
    auto* menu = Find<QMenu>("mnuEdit");
    menu->popup({});
    EXPECT_FALSE(Action("mnuEditFindNext")->isEnabled());
    menu->close();
    State().FindText = QStringLiteral("x");
    menu->popup({});
    EXPECT_TRUE(Action("mnuEditFindNext")->isEnabled());
    menu->close();
    window_->Messages().Clear();
    window_->UpdateSelectionStatus();
    EXPECT_FALSE(Button("tlbMessages", "find")->isEnabled());
    EXPECT_FALSE(menu->menuAction()->isEnabled());
}

TEST_F(MainFind, FindNextByItsKeyWorksAfterTheMenuWasOpenWithoutAText) {
    OpenWindow();
    auto* menu = Find<QMenu>("mnuEdit");
    menu->popup({});
    menu->close();
    Search("about");
    Press(Qt::Key_F3);
    EXPECT_EQ(SelectedKeys(), "a.eml b.eml");
}

TEST_F(MainFind, SelectNoneStartsTheNextSearchAtTheTop) {
    OpenWindow();
    Search("about");
    Action("mnuEditSelectNone")->trigger();
    Settle();
    EXPECT_EQ(State().FindPosition, 0);
    EXPECT_EQ(State().FindText, QStringLiteral("about"));
    Action("mnuEditFindNext")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "a.eml");
}

TEST_F(MainFind, DuringAPassTheCommandsDoNothing) {
    OpenWindow();
    files_.SetLatency(std::chrono::milliseconds(60));
    State().FindText = QStringLiteral("about");
    bool looked = false;
    WhileBusy([&] {
        looked = true;
        const std::string selected = SelectedKeys();
        for (const char* command : {"mnuEditFind", "mnuEditFindNext", "mnuEditFindAll", "mnuMessageFind"}) {
            Action(command)->trigger();
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << command;
        }
        EXPECT_EQ(SelectedKeys(), selected);
        EXPECT_EQ(State().FindText, QStringLiteral("about"));
    });
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_TRUE(looked);
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_EQ(beeps_, 0);
}

TEST_F(MainFind, TheRefreshTimerRestsWhileTheDialogIsActive) {
    Set("RefreshInterval", "60");
    OpenWindow();
    auto* timer = Find<QTimer>("tmrRefresh");
    ASSERT_TRUE(timer->isActive());
    OnDialog([timer](QDialog& dialog) {
        EXPECT_FALSE(timer->isActive());
        Click(dialog, "btnCancel");
    });
    Action("mnuEditFind")->trigger();
    Settle();
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 60'000);
}

TEST_F(MainFind, ARefreshThatEndsWhileTheDialogIsActiveLeavesTheTimerAtRest) {
    Set("RefreshInterval", "60");
    OpenWindow();
    auto* timer = Find<QTimer>("tmrRefresh");
    OnDialog([this, timer](QDialog& dialog) {
        window_->mnuAcRefresh_Click();
        Settle();
        EXPECT_FALSE(timer->isActive());
        QTest::keyClicks(&Edit(dialog), QStringLiteral("about c"));
        Click(dialog, "btnOK");
    });
    Action("mnuEditFind")->trigger();
    Settle();
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(SelectedKeys(), "c.eml");
}

TEST_F(MainFind, ATimerThatDidNotRunDoesNotRunAfterwards) {
    Set("RefreshInterval", "0");
    OpenWindow();
    auto* timer = Find<QTimer>("tmrRefresh");
    ASSERT_FALSE(timer->isActive());
    Search("about");
    Cancel("mnuEditFind");
    EXPECT_FALSE(timer->isActive());
}

TEST_F(MainFind, FindAllSelectsEverySecondOfAFullList) {
    OpenWindow();
    constexpr int count = 32'766;
    std::vector<MessageRow> rows;
    for (int number = 0; number < count; ++number) {
        const QString subject = number % 2 == 0 ? QStringLiteral("Even") : QStringLiteral("odd");
        rows.push_back(RowWith(subject, QString::number(number)));
    }
    window_->Messages().Clear();
    window_->Messages().Append(std::move(rows));
    State().FindText = QStringLiteral("even");
    Action("mnuEditFindAll")->trigger();
    Settle();
    EXPECT_EQ(State().SelectedCount, count / 2);
    EXPECT_EQ(State().FindPosition, count - 1);
    // The other half joins it.
    State().FindText = QStringLiteral("odd");
    State().FindPosition = 0;
    Action("mnuEditFindAll")->trigger();
    Settle();
    EXPECT_EQ(State().SelectedCount, count);
    EXPECT_EQ(Panel("info"), "32766 selected");
    EXPECT_EQ(beeps_, 0);
}

} // namespace
} // namespace quellbox
