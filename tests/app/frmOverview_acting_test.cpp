#include "tests/app/OverviewWindow.h"

namespace quellbox {
namespace {

TEST_F(OverviewDeskTest, ToleratingIsOfferedWhereTheWhitelistIsUsed) {
    OpenThree();
    ShowOverview(3);
    ASSERT_NO_FATAL_FAILURE(UnblockFirstDomain());
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
