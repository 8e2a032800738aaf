#include "tests/app/OverviewWindow.h"

namespace quellbox {
namespace {

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
    ASSERT_NO_FATAL_FAILURE(UnblockFirstDomain());
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

} // namespace
} // namespace quellbox
