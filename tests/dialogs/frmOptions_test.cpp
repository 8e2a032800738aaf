#include "tests/dialogs/OptionsTest.h"

using namespace quellbox;

TEST_F(Options, HasItsTexts) {
    Open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Options"));
    const QStringList tabs{QStringLiteral("&General"),    QStringLiteral("&Directories"), QStringLiteral("&Filtering"),
                           QStringLiteral("&Toleration"), QStringLiteral("&Settings"),    QStringLiteral("&History"),
                           QStringLiteral("&Server")};
    const QStringList keys{QStringLiteral("general"),    QStringLiteral("directories"), QStringLiteral("filter"),
                           QStringLiteral("toleration"), QStringLiteral("settings"),    QStringLiteral("history"),
                           QStringLiteral("server")};
    ASSERT_EQ(Tabs()->count(), 7);
    for (int tab = 0; tab < 7; ++tab) {
        EXPECT_EQ(Tabs()->tabText(tab), tabs[tab]);
        EXPECT_EQ(Tabs()->tabBar()->tabData(tab).toString(), keys[tab]);
        EXPECT_FALSE(Tabs()->tabIcon(tab).pixmap(16, 16).isNull());
    }
    const std::vector<std::pair<const char*, const char*>> texts = {
        {"optDays0", "&No filtering, show all"},
        {"optDays1", "To&day's messages only"},
        {"optDays2", "The last &two days"},
        {"optDays7", "Full &week"},
        {"optToleration2", "&Automatic (in background during refresh)"},
        {"optToleration1", "Manual (by you)"},
        {"optToleration0", "&Disabled (whitelist switched off)"},
        {"chkAutoRefresh", "&Auto Refresh / Action (in seconds)"},
        {"chkRawBody", "&Go to end of message contents in RAW viewer window"},
        {"chkOutlookExpress", "Use OutlookE&xpress as message viewer"},
        {"chkKeepDeleted", "&Keep deleted messages, so that deleting can be undone"},
        {"btnArchive", "Select"},
        {"btnPickup", "Select"},
        {"btnTolerate", "Select"},
        {"cmdOK", "OK"},
        {"cmdCancel", "Cancel"},
        {"cmdHelp", "Help"},
    };
    for (const auto& [name, text] : texts) {
        EXPECT_EQ(Find<QAbstractButton>(name)->text().toStdString(), text);
    }
    const std::vector<std::pair<const char*, const char*>> boxes = {
        {"fraArchive", "&Archive"}, {"fraPickup", "&Pickup"}, {"fraFiltering", "&Rule"}, {"fraToleration", "&Level"}};
    for (const auto& [name, title] : boxes) {
        EXPECT_EQ(Find<QGroupBox>(name)->title().toStdString(), title);
    }
    EXPECT_EQ(Find<QLabel>("lblTolerate")->text(), QStringLiteral("Whitelist of tolerated senders"));
    EXPECT_EQ(Find<QLabel>("lblDirectories")->text(),
              QStringLiteral("Use select ... button to choose folders on your Exchange server, accessible via drive "
                             "letter mapping or UNC-path."));
    EXPECT_EQ(Check("chkRawBody")->toolTip(), QStringLiteral("This option didn't work well..."));
    EXPECT_EQ(Check("chkOutlookExpress")->toolTip(), QStringLiteral("Use this option with great care!"));
    EXPECT_EQ(Slider()->minimum(), 5);
    EXPECT_EQ(Slider()->maximum(), 60);
    EXPECT_EQ(Slider()->singleStep(), 1);
    EXPECT_EQ(Slider()->pageStep(), 5);
    EXPECT_EQ(Slider()->tickInterval(), 10);
    EXPECT_TRUE(Find<QPushButton>("cmdOK")->isDefault());
}

TEST_F(Options, ShowsTheSettings) {
    state.FilterDays = 7;
    state.TolerationLevel = 1;
    state.RawBody = 1;
    Open();
    EXPECT_EQ(CheckedOptions(), "optDays7 optToleration1");
    EXPECT_EQ(Slider()->value(), 30);
    EXPECT_EQ(Interval()->text(), QStringLiteral("30"));
    EXPECT_TRUE(Check("chkRawBody")->isChecked());
    EXPECT_TRUE(Check("chkAutoRefresh")->isChecked());
    EXPECT_FALSE(Check("chkOutlookExpress")->isChecked());
    EXPECT_EQ(Find<QLineEdit>("txtArchive")->text(), QStringLiteral("/archive/"));
    EXPECT_EQ(Find<QLineEdit>("txtPickup")->text(), QStringLiteral("/pickup/"));
    EXPECT_TRUE(Find<QLineEdit>("txtArchive")->isReadOnly());
    EXPECT_TRUE(Find<QLineEdit>("txtPickup")->isReadOnly());
}

TEST_F(Options, ABoxIsCheckedByExactlyOne) {
    state.AutoRefresh = -1;
    state.RawBody = 2;
    Open(4);
    EXPECT_FALSE(Check("chkAutoRefresh")->isChecked());
    EXPECT_FALSE(Check("chkRawBody")->isChecked());
    EXPECT_FALSE(Slider()->isEnabled());
    EXPECT_FALSE(Interval()->isEnabled());
}

TEST_F(Options, OnlyTheFrameOfTheSelectedTabIsShownAndEnabled) {
    Open();
    EXPECT_EQ(Frames(), "0/0");
    for (int tab : {3, 1, 4, 5, 2, 0}) {
        Click(Tabs()->tabBar()); // the focus is to stay on a control that is enabled
        QTest::mouseClick(Tabs()->tabBar(), Qt::LeftButton, {}, Tabs()->tabBar()->tabRect(tab).center());
        const std::string number = std::to_string(tab);
        EXPECT_EQ(Frames(), number + "/" + number);
        EXPECT_EQ(state.OptionsTab, tab);
        EXPECT_TRUE(Tabs()->isTabEnabled(tab));
    }
}

TEST_F(Options, ReopensOnTheTabSelectedLast) {
    Open(3);
    EXPECT_EQ(Tabs()->currentIndex(), 3);
    EXPECT_EQ(Frames(), "3/3");
    Press(Qt::Key_Tab, Qt::ControlModifier);
    Press(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    Reopen();
    EXPECT_EQ(Tabs()->currentIndex(), 4);
    EXPECT_EQ(Frames(), "4/4");
}

TEST_F(Options, ATabThatDoesNotExistIsTheNearestOne) {
    Open(-1);
    EXPECT_EQ(Tabs()->currentIndex(), 0);
    Open(99);
    EXPECT_EQ(Tabs()->currentIndex(), 6);
}

TEST_F(Options, CtrlTabGoesRoundFromEveryControl) {
    Open(6);
    Press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(Tabs()->currentIndex(), 0);
    for (const char* name : {"trvOptions", "btnArchive", "optDays0", "btnTolerate", "txtRefreshInterval",
                             "txtHistoryDays", "cboServer", "trvOptions", "cmdOK", "cmdHelp"}) {
        const int before = Tabs()->currentIndex();
        Find<QWidget>(name)->setFocus();
        ASSERT_EQ(Focus()->objectName().toStdString(), name);
        Press(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(Tabs()->currentIndex(), (before + 1) % 7) << name;
        ASSERT_NE(Focus(), nullptr);
        EXPECT_TRUE(Focus()->isVisible() && Focus()->isEnabled()) << name;
    }
}

TEST_F(Options, TheFocusStaysInsideWhenThePageChanges) {
    Open(1);
    Find<QWidget>("btnPickup")->setFocus();
    Press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_TRUE(Find<QWidget>("fraOptions2")->isAncestorOf(Focus()));
    EXPECT_EQ(CheckedOptions(), "optDays0 optToleration0");
}

TEST_F(Options, OkTakesEverythingOver) {
    Open(2);
    Click(Option("optDays7"));
    Tabs()->setCurrentIndex(3);
    Click(Option("optToleration2"));
    Tabs()->setCurrentIndex(4);
    Click(Check("chkOutlookExpress"));
    Click(Check("chkRawBody"));
    Enter(QStringLiteral("12"));
    EXPECT_EQ(state.FilterDays, 0);
    Click(Find<QPushButton>("cmdOK"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.FilterDays, 7);
    EXPECT_EQ(state.TolerationLevel, 2);
    EXPECT_EQ(state.RefreshInterval, 12);
    EXPECT_EQ(state.RawBody, 1);
    EXPECT_EQ(state.AutoRefresh, 1);
    EXPECT_EQ(state.OutlookExpress, 1);
    EXPECT_EQ(filterTaken, QList<bool>({true}));
}

TEST_F(Options, OkWithTheSameFilterSaysSo) {
    state.FilterDays = 2;
    Open(2);
    Click(Option("optDays7"));
    Click(Option("optDays2"));
    Click(Find<QPushButton>("cmdOK"));
    EXPECT_EQ(state.FilterDays, 2);
    EXPECT_EQ(filterTaken, QList<bool>({false}));
}

TEST_F(Options, CancelEscapeAndTheFrameTakeNothingOver) {
    for (int way = 0; way < 3; ++way) {
        Open(2);
        Click(Option("optDays1"));
        Tabs()->setCurrentIndex(4);
        Click(Check("chkRawBody"));
        Enter(QStringLiteral("10"));
        if (way == 0) {
            Click(Find<QPushButton>("cmdCancel"));
        } else if (way == 1) {
            Press(Qt::Key_Escape);
        } else {
            dialog->close();
        }
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(state.FilterDays, 0);
        EXPECT_EQ(state.RawBody, 0);
        EXPECT_EQ(state.RefreshInterval, 30);
        EXPECT_TRUE(filterTaken.isEmpty());
    }
}

TEST_F(Options, ValuesThatNoButtonStandsForAreKept) {
    for (const auto& [days, level] : {std::pair{3, 9}, {9, 3}, {-1, -1}, {32767, -32768}}) {
        state.FilterDays = static_cast<qint16>(days);
        state.TolerationLevel = static_cast<qint16>(level);
        Open(2);
        EXPECT_EQ(CheckedOptions(), "");
        Click(Find<QPushButton>("cmdOK"));
        EXPECT_EQ(state.FilterDays, days);
        EXPECT_EQ(state.TolerationLevel, level);
    }
    EXPECT_EQ(filterTaken, QList<bool>({false, false, false, false}));
    Open(2);
    Click(Option("optDays0"));
    Click(Find<QPushButton>("cmdOK"));
    EXPECT_EQ(state.FilterDays, 0);
    EXPECT_EQ(state.TolerationLevel, -32768);
    EXPECT_TRUE(filterTaken.last());
}

TEST_F(Options, DirectoriesAreSelectedAndStayAfterCancel) {
    Open(1);
    Click(Find<QPushButton>("btnArchive"));
    EXPECT_EQ(Find<QLineEdit>("txtArchive")->text(), QStringLiteral("/new&0/"));
    Click(Find<QPushButton>("btnPickup"));
    EXPECT_EQ(Find<QLineEdit>("txtPickup")->text(), QStringLiteral("/new&1/"));
    EXPECT_EQ(selected, QList<qint16>({0, 1}));
    const auto* directories = Find<QTreeWidget>("trvOptions")->topLevelItem(1);
    EXPECT_EQ(directories->child(1)->text(0), QStringLiteral("Archive: /new&0/"));
    EXPECT_EQ(directories->child(2)->text(0), QStringLiteral("Pickup: /new&1/"));
    Press(Qt::Key_Escape);
    EXPECT_EQ(state.ArchiveDir, QStringLiteral("/new&0/"));
    EXPECT_EQ(state.PickupDir, QStringLiteral("/new&1/"));
}

TEST_F(Options, TheWhitelistIsOpenedFromItsButton) {
    Open(3);
    Click(Find<QPushButton>("btnTolerate"));
    EXPECT_EQ(whitelists, 1);
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(Options, TheInformationTreeIsExpanded) {
    Open();
    const auto* tree = Find<QTreeWidget>("trvOptions");
    ASSERT_EQ(tree->topLevelItemCount(), 2);
    EXPECT_EQ(tree->topLevelItem(0)->data(0, Qt::UserRole).toString(), QStringLiteral("program"));
    EXPECT_EQ(tree->topLevelItem(1)->data(0, Qt::UserRole).toString(), QStringLiteral("directories"));
    for (int root = 0; root < 2; ++root) {
        EXPECT_TRUE(tree->topLevelItem(root)->isExpanded());
        EXPECT_EQ(tree->topLevelItem(root)->childCount(), 3);
        EXPECT_FALSE(tree->topLevelItem(root)->icon(0).pixmap(16, 16).isNull());
    }
    EXPECT_EQ(tree->topLevelItem(0)->child(1)->text(0), QStringLiteral("Build: "));
}

TEST_F(Options, HelpDoesNothing) {
    Open(2);
    Click(Find<QPushButton>("cmdHelp"));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(filterTaken.isEmpty());
}

// Everything by keys, from the tab strip through the pages to the default button.
TEST_F(Options, CanBeUsedWithoutAMouse) {
    Open(0);
    ASSERT_EQ(Focus(), Tabs()->tabBar());
    Press(Qt::Key_Right);
    Press(Qt::Key_Right);
    ASSERT_EQ(Tabs()->currentIndex(), 2);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), Option("optDays0"));
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    EXPECT_EQ(CheckedOptions(), "optDays2 optToleration0");
    Press(Qt::Key_L, Qt::AltModifier); // of another page: nothing
    EXPECT_EQ(Tabs()->currentIndex(), 2);
    Press(Qt::Key_W, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Option("optDays7")->isChecked(); }));
    Press(Qt::Key_S, Qt::AltModifier);
    ASSERT_EQ(Tabs()->currentIndex(), 4);
    Press(Qt::Key_X, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Check("chkOutlookExpress")->isChecked(); }));
    Interval()->setFocus();
    Interval()->selectAll();
    QTest::keyClicks(Interval(), QStringLiteral("45"));
    Press(Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.FilterDays, 7);
    EXPECT_EQ(state.OutlookExpress, 1);
    EXPECT_EQ(state.RefreshInterval, 45);
}

TEST_F(Options, TabReachesTheControlsOfThePageAndThenTheButtons) {
    Open(4);
    QStringList order;
    for (int step = 0; step < 9; ++step) {
        Press(Qt::Key_Tab);
        order += Focus()->objectName();
    }
    const QStringList wanted{
        QStringLiteral("chkOutlookExpress"),  QStringLiteral("chkAutoRefresh"), QStringLiteral("txtRefreshInterval"),
        QStringLiteral("sliRefreshInterval"), QStringLiteral("chkRawBody"),     QStringLiteral("cmdOK"),
        QStringLiteral("cmdCancel"),          QStringLiteral("cmdHelp"),        Tabs()->tabBar()->objectName()};
    EXPECT_EQ(order, wanted) << order.join(QLatin1Char(' ')).toStdString();
}
