#include "app/BarChart.h"
#include "app/frmOverview.h"
#include "tests/support/AccessibleNames.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/RealFolderWindow.h"
#include "whitelist/WhitelistStore.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>

#include <utility>

namespace quellbox {
namespace {

class OverviewDeskTest : public RealFolderWindowTest {
protected:
    static QByteArray Message(const QByteArray& sender, const QByteArray& subject, const QByteArray& scl) {
        return "X-SENDER: " + sender + "\r\nX-SCL: " + scl +
               " 99.00%\r\nFrom: f@x.org\r\nTo: ann@x.org\r\nSubject: " + subject + "\r\n\r\ntext\r\n";
    }

    /// Two messages of a.example and one of b.example.
    void OpenThree() {
        Write(Archive(Name(1)), Message("x@a.example", "Invoice 1", "9"));
        Write(Archive(Name(2)), Message("y@a.example", "Invoice 2", "9"));
        Write(Archive(Name(3)), Message("z@b.example", "Other", "7"));
        Open();
    }

    frmOverview* Overview() { return Find<frmOverview>("frmOverview"); }

    template <class Type>
    Type* In(const char* name) {
        auto* found = Overview()->findChild<Type*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    BarChart* Chart(const char* name) { return In<BarChart>(name); }

    void ShowOverview(qint64 messages) {
        Command("mnuToolsOverview")->trigger();
        ASSERT_NE(Overview(), nullptr);
        ASSERT_TRUE(WaitForCount(messages));
        ASSERT_TRUE(QTest::qWaitFor([this] {
            Overview()->activateWindow();
            return QApplication::activeWindow() == Overview();
        }));
    }

    /// Waits until the pictures are of so many messages.
    bool WaitForCount(qint64 messages) {
        return QTest::qWaitFor([this, messages] {
            qint64 counted = 0;
            for (const OverviewBar& bar : Chart("chtSenders")->Picture().bars) {
                counted += bar.Count();
            }
            return counted == messages;
        });
    }

    void ClickBar(const char* chart, OverviewPlace place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(Chart(chart), Qt::LeftButton, modifiers, Chart(chart)->RectOf(place).center());
    }

    /// The subjects of the selected messages.
    std::string Selected() {
        QStringList subjects;
        for (const RowRange& range : List()->SelectedRanges()) {
            for (int row = range.first; row <= range.last; ++row) {
                subjects.append(window->Messages().Row(row).Cell(ColumnSubject));
            }
        }
        return subjects.join(QStringLiteral(", ")).toStdString();
    }

    /// Chooses a toleration level in the options.
    void ChooseLevel(const char* option) {
        const DialogVisit visit("frmOptions", [option](QDialog& dialog) {
            auto* button = dialog.findChild<QAbstractButton*>(QLatin1String(option));
            auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"));
            for (int tab = 0; tab < tabs->count(); ++tab) {
                if (tabs->widget(tab)->isAncestorOf(button)) {
                    tabs->setCurrentIndex(tab);
                }
            }
            button->click();
            dialog.findChild<QAbstractButton*>(QStringLiteral("cmdOK"))->click();
        });
        Command("mnuToolsOptions")->trigger();
        EXPECT_TRUE(visit.Happened());
        Settle();
    }

    /// Types words that narrow the list, or with an empty text shows all again.
    void Narrow(const char* words) {
        auto* field = Find<QLineEdit>("txtQuick");
        if (!field->isVisible()) {
            Command("mnuEditQuick")->trigger();
        }
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QLatin1String(words));
        Settle();
    }

    bool WaitForCaption(const char* caption) {
        return QTest::qWaitFor([this, caption] { return Overview()->windowTitle() == QLatin1String(caption); });
    }

    /// The entries of the menu that pops up there.
    std::string MenuAt(BarChart* chart, QPoint at, QContextMenuEvent::Reason reason) {
        if (reason == QContextMenuEvent::Mouse) {
            QTest::mouseClick(chart, Qt::RightButton, Qt::NoModifier, at);
        }
        QContextMenuEvent event(reason, at, chart->mapToGlobal(at));
        QApplication::sendEvent(chart, &event);
        QStringList entries;
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (const QAction* action : menu->actions()) {
                entries.append(action->text());
            }
            menu->close();
        }
        return entries.join(u'|').toStdString();
    }

    static void AddToWhitelist(QDialog& dialog) {
        dialog.findChild<QPushButton*>(QStringLiteral("btnAdd"))->click();
        dialog.findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    }

    std::string Told() { return In<QLabel>("lblTold")->text().toStdString(); }

    QStringList Unblocked() {
        QStringList lines;
        const auto* list = In<QTreeWidget>("lvwUnblocked");
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            lines.append(list->topLevelItem(row)->text(0) + QLatin1Char(' ') + list->topLevelItem(row)->text(1));
        }
        return lines;
    }
};

TEST_F(OverviewDeskTest, ShowsWhatIsListed) {
    OpenThree();
    ShowOverview(3);
    EXPECT_FALSE(Overview()->isModal());
    EXPECT_EQ(Chart("chtSenders")->Picture().bars.front().label.toStdString(), "a.example");
    EXPECT_EQ(Chart("chtSubjects")->Picture().bars.front().label.toStdString(), "Invoice …");
    EXPECT_EQ(Chart("chtLevels")->Picture().series, QStringList({QStringLiteral("7"), QStringLiteral("9")}));
    EXPECT_EQ(Chart("chtRecipients")->Picture().bars.size(), 1U);
    EXPECT_EQ(Chart("chtDays")->Picture().bars.size(), 1U);
    EXPECT_EQ(Overview()->windowTitle().toStdString(), "Overview of 3 messages");
}

TEST_F(OverviewDeskTest, FollowsTheList) {
    OpenThree();
    ShowOverview(3);
    Write(Archive(Name(4)), Message("z@b.example", "Other", "7"));
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_TRUE(WaitForCount(4));
    Command("mnuEditSelectAll")->trigger();
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_TRUE(WaitForCount(0));
    EXPECT_TRUE(Chart("chtDays")->Picture().bars.empty());
    EXPECT_FALSE(In<QToolButton>("btnDaysSave")->isEnabled());
}

TEST_F(OverviewDeskTest, AClickOnABarSelectsItsMessages) {
    OpenThree();
    ShowOverview(3);
    ClickBar("chtSenders", {0});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
    EXPECT_EQ(window->State().SelectedCount, 2);
    EXPECT_EQ(Told(), "2 messages selected");
    EXPECT_TRUE(Command("mnuActionsDelete")->isEnabled());
    ClickBar("chtSenders", {1});
    EXPECT_EQ(Selected(), "Other");
    EXPECT_EQ(Told(), "One message selected");
    ClickBar("chtSenders", {0}, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Other");
    EXPECT_EQ(window->State().SelectedCount, 3);
}

TEST_F(OverviewDeskTest, APartOfADayIsSelectedAndTheWholeOfIt) {
    OpenThree();
    ShowOverview(3);
    ClickBar("chtDays", {0, 0});
    EXPECT_EQ(Selected(), "Other");
    ClickBar("chtDays", {0, 1});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
    const QRect day = Chart("chtDays")->RectOf({0});
    QTest::mouseClick(Chart("chtDays"), Qt::LeftButton, Qt::NoModifier, {day.center().x(), day.bottom() - 2});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Other");
}

TEST_F(OverviewDeskTest, TheSelectedGroupIsDisposedOf) {
    OpenThree();
    ShowOverview(3);
    ClickBar("chtSubjects", {0});
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_TRUE(QFileInfo::exists(Pickup(Name(1))));
    EXPECT_TRUE(QFileInfo::exists(Pickup(Name(2))));
    EXPECT_TRUE(QFileInfo::exists(Archive(Name(3))));
    EXPECT_TRUE(WaitForCount(1));
}

TEST_F(OverviewDeskTest, KeysAloneReachEveryBarAndSelect) {
    OpenThree();
    ShowOverview(3);
    BarChart* senders = Chart("chtSenders");
    senders->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(senders->Current(), OverviewPlace{0});
    QTest::keyClick(senders, Qt::Key_Down);
    QTest::keyClick(senders, Qt::Key_Return);
    EXPECT_EQ(Selected(), "Other");
    QTest::keyClick(senders, Qt::Key_Home);
    QTest::keyClick(senders, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Other");
    BarChart* days = Chart("chtDays");
    days->setFocus(Qt::TabFocusReason);
    QTest::keyClick(days, Qt::Key_Up);
    QTest::keyClick(days, Qt::Key_Up);
    EXPECT_EQ(days->Current(), (OverviewPlace{0, 1}));
    QTest::keyClick(days, Qt::Key_Space);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
}

TEST_F(OverviewDeskTest, TabGoesThroughEverythingOnce) {
    OpenThree();
    ShowOverview(3);
    Chart("chtDays")->setFocus(Qt::TabFocusReason);
    QStringList names;
    for (int step = 0; step < 18; ++step) {
        names.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(names.join(u' ').toStdString(),
              "chtDays btnDaysTable btnDaysSave chtLevels btnLevelsTable btnLevelsSave chtSenders btnSendersTable "
              "btnSendersSave chtRecipients btnRecipientsTable btnRecipientsSave chtSubjects btnSubjectsTable "
              "btnSubjectsSave lvwUnblocked btnClose btnHelp");
    EXPECT_EQ(QApplication::focusWidget(), Chart("chtDays"));
}

TEST_F(OverviewDeskTest, TheFocusStaysOnItsBarWhenThePicturesChange) {
    OpenThree();
    ShowOverview(3);
    BarChart* senders = Chart("chtSenders");
    senders->setFocus(Qt::TabFocusReason);
    QTest::keyClick(senders, Qt::Key_End);
    EXPECT_EQ(senders->Current(), OverviewPlace{1});
    for (int number = 4; number < 7; ++number) {
        Write(Archive(Name(number)), Message("z@b.example", "Other", "7"));
    }
    window->mnuAcRefresh_Click();
    Settle();
    ASSERT_TRUE(WaitForCount(6));
    EXPECT_EQ(senders->Current(), OverviewPlace{0}) << "b.example is the first one now";
}

TEST_F(OverviewDeskTest, APictureIsATableInWhichRowsSelect) {
    OpenThree();
    ShowOverview(3);
    QTest::mouseClick(In<QToolButton>("btnSendersTable"), Qt::LeftButton);
    auto* table = In<QTableView>("tblSenders");
    EXPECT_TRUE(table->isVisible());
    EXPECT_EQ(table->model()->index(0, 0).data().toString().toStdString(), "a.example");
    EXPECT_EQ(table->model()->index(0, 1).data().toString().toStdString(), "2");
    EXPECT_EQ(table->model()->headerData(0, Qt::Horizontal).toString().toStdString(), "Sender domain");
    table->setFocus();
    const QPoint secondRow = table->visualRect(table->model()->index(1, 0)).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, secondRow);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, secondRow);
    EXPECT_EQ(Selected(), "Other");
    QTest::keyClick(table, Qt::Key_Up);
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
    QTest::keyClick(table, Qt::Key_Down);
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_EQ(Selected(), "Other");
    QTest::keyClick(table, Qt::Key_Up);
    QTest::keyClick(table, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Other");
}

TEST_F(OverviewDeskTest, CtrlCCopiesTheTable) {
    OpenThree();
    ShowOverview(3);
    Chart("chtSenders")->setFocus();
    QTest::keyClick(Chart("chtSenders"), Qt::Key_C, Qt::ControlModifier);
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text().toStdString(), "Sender domain\tMessages\na.example\t2\nb.example\t1\n");
    EXPECT_EQ(copied->data(QStringLiteral("text/csv")).toStdString(),
              "\"Sender domain\",\"Messages\"\r\n\"a.example\",2\r\n\"b.example\",1\r\n");
    QApplication::clipboard()->clear();
    QTest::mouseClick(In<QToolButton>("btnLevelsTable"), Qt::LeftButton);
    In<QTableView>("tblLevels")->setFocus();
    QTest::keyClick(In<QTableView>("tblLevels"), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Rating\tMessages\n9\t2\n7\t1\n");
}

TEST_F(OverviewDeskTest, APictureIsSavedInEachForm) {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    OpenThree();
    ShowOverview(3);
    for (const char* ending : {"png", "svg", "csv"}) {
        const QString file = root.path() + QStringLiteral("/picture.") + QLatin1String(ending);
        const DialogVisit visit("dlgExport", [&file](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file);
            dialog.accept();
        });
        QTest::mouseClick(In<QToolButton>("btnSendersSave"), Qt::LeftButton);
        EXPECT_TRUE(visit.Happened());
        ASSERT_TRUE(QTest::qWaitFor([&file] { return QFileInfo::exists(file); }));
        Settle();
        EXPECT_NE(Told().find(std::string("picture.") + ending), std::string::npos) << Told();
    }
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    const QImage image(root.path() + QStringLiteral("/picture.png"));
    EXPECT_GE(image.width(), 640);
    EXPECT_TRUE(Read(root.path() + QStringLiteral("/picture.svg")).contains(">a.example</text>"));
    EXPECT_EQ(Read(root.path() + QStringLiteral("/picture.csv")),
              QByteArray("\xEF\xBB\xBF\"Sender domain\",\"Messages\"\r\n\"a.example\",2\r\n\"b.example\",1\r\n"));
}

TEST_F(OverviewDeskTest, SendersOftenUnblockedAreToleratedFromHere) {
    OpenThree();
    ShowOverview(3);
    ClickBar("chtSenders", {0});
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Unblocked().size() == 2; }));
    EXPECT_EQ(Unblocked(), QStringList({QStringLiteral("x@a.example 1"), QStringLiteral("y@a.example 1")}));
    EXPECT_FALSE(In<QPushButton>("btnTolerate")->isEnabled());
    In<QTreeWidget>("lvwUnblocked")->setCurrentItem(In<QTreeWidget>("lvwUnblocked")->topLevelItem(1));
    const DialogVisit visit("frmTolerate", AddToWhitelist);
    QTest::mouseClick(In<QPushButton>("btnTolerate"), Qt::LeftButton);
    EXPECT_TRUE(visit.Happened());
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("y@a.example")}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Unblocked().size() == 1; })) << "who is tolerated goes";
    EXPECT_TRUE(window->State().ToleranceResult.isEmpty()) << "that is another command's";
    EXPECT_EQ(window->Messages().Count(), 1);
}

TEST_F(OverviewDeskTest, WhileSomethingIsDoneNothingIsSelected) {
    OpenThree();
    ShowOverview(3);
    window->Jobs().Call(
        WindowJobs::Effect::Reads,
        []() -> WindowJobs::Error {
            QThread::msleep(200);
            return std::nullopt;
        },
        [](const WindowJobs::Error&) {});
    ClickBar("chtSenders", {0});
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Told(), "Something else is being done. Try again when it has ended.");
    Settle();
    ClickBar("chtSenders", {0});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
}

TEST_F(OverviewDeskTest, AssistiveToolsHearEachBarAndPressIt) {
    OpenThree();
    ShowOverview(3);
    QAccessibleInterface* senders = QAccessible::queryAccessibleInterface(Chart("chtSenders"));
    ASSERT_NE(senders, nullptr);
    EXPECT_EQ(senders->role(), QAccessible::Chart);
    EXPECT_EQ(senders->text(QAccessible::Name).toStdString(), "Sender domains");
    ASSERT_EQ(senders->childCount(), 2);
    QAccessibleInterface* first = senders->child(0);
    EXPECT_EQ(first->text(QAccessible::Name).toStdString(), "a.example: 2 messages");
    EXPECT_EQ(first->text(QAccessible::Value).toStdString(), "2");
    EXPECT_EQ(first->parent(), senders);
    EXPECT_EQ(senders->indexOfChild(first), 0);
    EXPECT_EQ(senders->childAt(first->rect().center().x(), first->rect().center().y()), first);
    senders->child(1)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(senders->focusChild(), senders->child(1));
    EXPECT_TRUE(senders->child(1)->state().focused);
    first->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
    Command("mnuActionsDelete")->trigger();
    Settle();
    ASSERT_TRUE(WaitForCount(1));
    EXPECT_EQ(senders->childCount(), 1);
    EXPECT_FALSE(senders->child(1));
}

TEST_F(OverviewDeskTest, APartOfADayIsNamedWithItsRating) {
    OpenThree();
    ShowOverview(3);
    QAccessibleInterface* days = QAccessible::queryAccessibleInterface(Chart("chtDays"));
    ASSERT_EQ(days->childCount(), 3) << "the day and two ratings";
    const QString day = Chart("chtDays")->Picture().bars.front().label;
    EXPECT_EQ(days->child(0)->text(QAccessible::Name), day + QStringLiteral(": 3 messages"));
    EXPECT_EQ(days->child(2)->text(QAccessible::Name), day + QStringLiteral(", rating 9: 2 messages"));
}

TEST_F(OverviewDeskTest, EachPictureIsPaintedInTheColoursOfTheDesktop) {
    OpenThree();
    ShowOverview(3);
    BarChart* chart = Chart("chtSenders");
    const QColor light = chart->grab().toImage().pixelColor(2, 2);
    EXPECT_EQ(light, chart->palette().color(QPalette::Base));
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Highlight, Qt::yellow);
    chart->setPalette(dark);
    const QImage painted = chart->grab().toImage();
    EXPECT_EQ(painted.pixelColor(2, 2), QColor(Qt::black));
    const QPointF inBar = chart->Inside().topLeft() + chart->Shown().shapes.front().rect.center();
    EXPECT_EQ(painted.pixelColor((inBar * painted.devicePixelRatio()).toPoint()), QColor(Qt::yellow));
}

TEST_F(OverviewDeskTest, ThePlaceOfTheWindowIsKept) {
    OpenThree();
    ShowOverview(3);
    Overview()->setGeometry(100, 60, 900, 600);
    Overview()->close();
    EXPECT_EQ(store.Value(QStringLiteral("Settings"), QStringLiteral("OverviewWidth")), QString::number(900 * 15));
    EXPECT_EQ(store.Value(QStringLiteral("Settings"), QStringLiteral("OverviewHeight")), QString::number(600 * 15));
}

TEST_F(OverviewDeskTest, TheWindowClosesWithTheProgram) {
    OpenThree();
    ShowOverview(3);
    const QPointer<frmOverview> overview = Overview();
    window->close();
    EXPECT_FALSE(overview && overview->isVisible());
}

TEST_F(OverviewDeskTest, ToleratingIsOfferedWhereTheWhitelistIsUsed) {
    OpenThree();
    ShowOverview(3);
    ClickBar("chtSenders", {0});
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Unblocked().size() == 2; }));
    In<QTreeWidget>("lvwUnblocked")->setCurrentItem(In<QTreeWidget>("lvwUnblocked")->topLevelItem(0));
    EXPECT_TRUE(In<QPushButton>("btnTolerate")->isEnabled());
    EXPECT_TRUE(In<QAction>("actTolerateDays")->isEnabled());
    const QString tip = In<QPushButton>("btnTolerate")->toolTip();
    ChooseLevel("optToleration0");
    EXPECT_FALSE(In<QPushButton>("btnTolerate")->isEnabled());
    EXPECT_FALSE(In<QAction>("actTolerateDays")->isEnabled());
    EXPECT_EQ(In<QPushButton>("btnTolerate")->toolTip().toStdString(),
              "The whitelist is switched off. Tools > Options..., page Toleration, switches it on.");
    In<QTreeWidget>("lvwUnblocked")->setCurrentItem(In<QTreeWidget>("lvwUnblocked")->topLevelItem(1));
    EXPECT_FALSE(In<QPushButton>("btnTolerate")->isEnabled()) << "another sender makes no difference";
    ChooseLevel("optToleration1");
    EXPECT_TRUE(In<QPushButton>("btnTolerate")->isEnabled());
    EXPECT_TRUE(In<QAction>("actTolerateDays")->isEnabled());
    EXPECT_EQ(In<QPushButton>("btnTolerate")->toolTip(), tip);
}

TEST_F(OverviewDeskTest, WithoutAWhitelistNothingIsOfferedFromTheBeginning) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("TolerationLevel"), QStringLiteral("0"));
    OpenThree();
    ShowOverview(3);
    for (const char* action : {"actTolerateDays", "actTolerateLevels", "actTolerateSenders", "actTolerateRecipients",
                               "actTolerateSubjects"}) {
        EXPECT_FALSE(In<QAction>(action)->isEnabled()) << action;
    }
}

TEST_F(OverviewDeskTest, TheSendersOfAGroupAreToleratedOneAfterTheOther) {
    Write(Archive(Name(4)), Message("X@A.example", "Invoice 4", "9"));
    Write(Archive(Name(5)), Message("nobody", "Invoice 5", "9"));
    OpenThree();
    ShowOverview(5);
    Chart("chtSubjects")->SetCurrent({0});
    {
        const DialogVisit first("frmTolerate", AddToWhitelist);
        const DialogVisit second("frmTolerate", AddToWhitelist);
        In<QAction>("actTolerateSubjects")->trigger();
        EXPECT_TRUE(first.Happened());
        EXPECT_TRUE(second.Happened());
    }
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("x@a.example"), QStringLiteral("y@a.example")}));
    EXPECT_TRUE(window->State().ToleranceResult.isEmpty()) << "that is another command's";
    EXPECT_EQ(window->Messages().Count(), 5);
    In<QAction>("actTolerateSubjects")->trigger();
    EXPECT_EQ(Told(), "None of these messages has a sender that could be added to the whitelist.");
}

TEST_F(OverviewDeskTest, OnlyTheSendersInSightAreTolerated) {
    OpenThree();
    ShowOverview(3);
    Narrow("Other");
    ASSERT_TRUE(WaitForCount(1));
    QTest::mouseClick(In<QToolButton>("btnLevelsTable"), Qt::LeftButton);
    In<QTableView>("tblLevels")->setFocus();
    In<QTableView>("tblLevels")->setCurrentIndex(In<QTableView>("tblLevels")->model()->index(0, 0));
    const DialogVisit visit("frmTolerate", AddToWhitelist);
    In<QAction>("actTolerateLevels")->trigger();
    EXPECT_TRUE(visit.Happened());
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("z@b.example")}));
}

TEST_F(OverviewDeskTest, TheTableStaysWithItsGroup) {
    OpenThree();
    ShowOverview(3);
    QTest::mouseClick(In<QToolButton>("btnSendersTable"), Qt::LeftButton);
    auto* table = In<QTableView>("tblSenders");
    table->setFocus();
    table->setCurrentIndex(table->model()->index(1, 0));
    for (int number = 4; number < 7; ++number) {
        Write(Archive(Name(number)), Message("z@b.example", "Other", "7"));
    }
    window->mnuAcRefresh_Click();
    Settle();
    ASSERT_TRUE(WaitForCount(6));
    EXPECT_EQ(table->currentIndex().row(), 0) << "b.example is the first one now";
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_EQ(Selected(), "Other, Other, Other, Other");
    Command("mnuActionsDelete")->trigger();
    Settle();
    ASSERT_TRUE(WaitForCount(2));
    EXPECT_FALSE(table->currentIndex().isValid()) << "no other group takes its place";
}

TEST_F(OverviewDeskTest, TheListGetsTheFocusAndNoMessageIsShownForSeveral) {
    OpenThree();
    ShowOverview(3);
    Click(2);
    Tree()->setFocus();
    ASSERT_FALSE(Raw()->toPlainText().isEmpty());
    ClickBar("chtSenders", {0}, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Other");
    EXPECT_TRUE(Raw()->toPlainText().isEmpty());
    EXPECT_EQ(window->focusWidget(), List());
    EXPECT_EQ(QApplication::activeWindow(), Overview()) << "the window beside it stays behind";
}

TEST_F(OverviewDeskTest, ThePlaceAmongTheUnblockedSendersIsKept) {
    std::vector<UnblockedSender> senders;
    for (int number = 0; number < 60; ++number) {
        senders.push_back({QStringLiteral("s%1@x.org").arg(number), 60 - number, 0});
    }
    frmOverview overview(nullptr);
    overview.ShowUnblocked(senders);
    overview.show();
    auto* list = overview.findChild<QTreeWidget*>(QStringLiteral("lvwUnblocked"));
    list->setCurrentItem(list->topLevelItem(40));
    const int scrolled = list->verticalScrollBar()->value();
    EXPECT_GT(scrolled, 0);
    const QTreeWidgetItem* first = list->topLevelItem(0);
    overview.ShowUnblocked(senders);
    EXPECT_EQ(list->topLevelItem(0), first) << "there is nothing to be shown anew";
    std::swap(senders[40], senders[41]);
    overview.ShowUnblocked(senders);
    ASSERT_NE(list->currentItem(), nullptr);
    EXPECT_EQ(list->currentItem()->text(0).toStdString(), "s40@x.org");
    EXPECT_TRUE(list->topLevelItem(41)->isSelected());
    EXPECT_EQ(list->verticalScrollBar()->value(), scrolled);
    EXPECT_TRUE(overview.findChild<QPushButton*>(QStringLiteral("btnTolerate"))->isEnabled());
}

TEST_F(OverviewDeskTest, WhereRatingsMeanSomethingElseNowNothingIsSelected) {
    OpenThree();
    ShowOverview(3);
    window->Messages().SetRatesByNumber(true);
    ClickBar("chtLevels", {0});
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Told(), "The list is being counted anew. Try again in a moment.");
    window->Messages().SetRatesByNumber(false);
    ClickBar("chtLevels", {0});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
}

TEST_F(OverviewDeskTest, BulkModeIsToldAsLongAsItIsOn) {
    OpenThree();
    ShowOverview(3);
    EXPECT_FALSE(In<QLabel>("lblBulk")->isVisible());
    Command("mnuViewBulk")->trigger();
    Settle();
    EXPECT_TRUE(In<QLabel>("lblBulk")->isVisible());
    Command("mnuViewBulk")->trigger();
    Settle();
    EXPECT_FALSE(In<QLabel>("lblBulk")->isVisible());
}

TEST_F(OverviewDeskTest, TheMenuIsThatOfTheBarOrOfThePicture) {
    OpenThree();
    ShowOverview(3);
    BarChart* senders = Chart("chtSenders");
    const std::string ofBar = "Select Messages|Add to Selection|Tolerate Senders...|Copy Table|Save...";
    const QPoint beside(senders->width() / 2, senders->height() - 8);
    EXPECT_EQ(MenuAt(senders, senders->RectOf({1}).center(), QContextMenuEvent::Mouse), ofBar);
    EXPECT_EQ(senders->Current(), OverviewPlace{1});
    EXPECT_EQ(MenuAt(senders, beside, QContextMenuEvent::Mouse), "Copy Table|Save...");
    EXPECT_EQ(MenuAt(senders, beside, QContextMenuEvent::Keyboard), ofBar) << "of the bar that has the focus";
    EXPECT_EQ(senders->Current(), OverviewPlace{1});
}

TEST_F(OverviewDeskTest, TheTitleSaysHowManyGroupsAreShown) {
    std::vector<MessageRow> rows;
    for (int number = 0; number < 90; ++number) {
        MessageTexts texts;
        texts.tag = QStringLiteral("a@x%1.org").arg(number);
        rows.emplace_back(QString::number(number), 1, 0, texts);
    }
    frmOverview overview(nullptr);
    overview.ShowOverview(CountOverview(rows, false));
    overview.show();
    const BarChart& chart = overview.Panel(OverviewKind::Senders).Chart();
    const auto expected = [&chart] {
        return QStringLiteral("Sender domains (%1 of 90)").arg(chart.Shown().barCount).toStdString();
    };
    ASSERT_LT(chart.Shown().barCount, 90);
    const auto* title = overview.findChild<QLabel*>(QStringLiteral("lblSenders"));
    EXPECT_EQ(title->text().toStdString(), expected());
    auto* table = overview.findChild<QToolButton*>(QStringLiteral("btnSendersTable"));
    table->click();
    EXPECT_EQ(title->text().toStdString(), "Sender domains") << "a table has room for all";
    table->click();
    EXPECT_EQ(title->text().toStdString(), expected());
    const int before = chart.Shown().barCount;
    overview.resize(overview.width(), overview.height() * 3 / 2);
    QCoreApplication::processEvents();
    EXPECT_GT(chart.Shown().barCount, before);
    EXPECT_EQ(title->text().toStdString(), expected());
}

TEST_F(OverviewDeskTest, InANarrowedListABarIsOfTheRowsInSight) {
    Write(Archive(Name(4)), Message("y@a.example", "Second", "9"));
    Write(Archive(Name(5)), Message("z@b.example", "Invoice 5", "7"));
    OpenThree();
    ShowOverview(5);
    Narrow("invoice");
    ASSERT_TRUE(WaitForCount(3));
    EXPECT_EQ(Overview()->windowTitle().toStdString(), "Overview of 3 of 5 messages");
    ClickBar("chtSenders", {0});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
    EXPECT_EQ(Told(), "2 messages selected");
    ClickBar("chtSenders", {1}, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2, Invoice 5");
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_TRUE(WaitForCaption("Overview of 0 of 2 messages"));
    Narrow("");
    EXPECT_TRUE(WaitForCaption("Overview of 2 messages"));
    EXPECT_TRUE(QFileInfo::exists(Archive(Name(3))));
    EXPECT_TRUE(QFileInfo::exists(Archive(Name(4))));
    for (const int number : {1, 2, 5}) {
        EXPECT_FALSE(QFileInfo::exists(Archive(Name(number)))) << number;
    }
}

TEST_F(OverviewDeskTest, ThePicturesFollowTheWords) {
    OpenThree();
    ShowOverview(3);
    Narrow("other");
    ASSERT_TRUE(WaitForCount(1));
    EXPECT_EQ(Chart("chtSubjects")->Picture().bars.front().label.toStdString(), "Other");
    Narrow("xyzzy");
    ASSERT_TRUE(WaitForCount(0));
    EXPECT_EQ(Overview()->windowTitle().toStdString(), "Overview of 0 of 3 messages");
    EXPECT_TRUE(Chart("chtDays")->Picture().bars.empty());
    EXPECT_FALSE(In<QToolButton>("btnDaysSave")->isEnabled());
    Narrow("");
    ASSERT_TRUE(WaitForCount(3));
    EXPECT_EQ(Overview()->windowTitle().toStdString(), "Overview of 3 messages");
    ClickBar("chtSenders", {0});
    EXPECT_EQ(Selected(), "Invoice 1, Invoice 2");
}

} // namespace
} // namespace quellbox
