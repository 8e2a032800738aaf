#include "dialogs/frmOptions.h"

#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

class Options : public testing::Test {
protected:
    Options() {
        state.ArchiveDir = QStringLiteral("/archive/");
        state.PickupDir = QStringLiteral("/pickup/");
        state.RefreshInterval = 30;
        state.AutoRefresh = 1;
    }

    void Open(int tab = 0) {
        state.OptionsTab = tab;
        Reopen();
    }

    void Reopen() {
        OptionsCalls calls;
        calls.runTimer = [this](bool run) { timer.append(run); };
        calls.filterTaken = [this](bool changed) { filterTaken.append(changed); };
        calls.selectDirectory = [this](qint16 index) {
            selected.append(index);
            (index == 0 ? state.ArchiveDir : state.PickupDir) = QStringLiteral("/new&%1/").arg(index);
            return index == 0 ? state.ArchiveDir : state.PickupDir;
        };
        calls.maintainWhitelist = [this] { ++whitelists; };
        dialog = std::make_unique<frmOptions>(files, program, state, std::move(calls), nullptr);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    template <class T>
    T* Find(const char* name) const {
        T* found = dialog->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QTabWidget* Tabs() const { return Find<QTabWidget>("tbsOptions"); }
    QRadioButton* Option(const char* name) const { return Find<QRadioButton>(name); }
    QCheckBox* Check(const char* name) const { return Find<QCheckBox>(name); }
    QLineEdit* Interval() const { return Find<QLineEdit>("txtRefreshInterval"); }
    QSlider* Slider() const { return Find<QSlider>("sliRefreshInterval"); }
    QWidget* Focus() const { return dialog->focusWidget(); }

    static void Click(QWidget* widget) {
        ASSERT_TRUE(widget->isVisible() && widget->isEnabled()) << widget->objectName().toStdString();
        // An option button listens at its circle and its text, which begin at its left edge.
        const QPoint left(10, widget->height() / 2);
        QTest::mouseClick(widget, Qt::LeftButton, {}, qobject_cast<QRadioButton*>(widget) != nullptr ? left : QPoint());
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(Focus(), key, modifiers); }

    /// Types into the interval and leaves it.
    void Enter(const QString& text) {
        Interval()->setFocus();
        Interval()->selectAll();
        QTest::keyClick(Interval(), Qt::Key_Backspace);
        QTest::keyClicks(Interval(), text);
        Slider()->setFocus();
    }

    /// The frames that are shown, and of these the enabled ones, as in "2/2".
    std::string Frames() const {
        QString shown;
        QString enabled;
        for (int index = 0; index < 5; ++index) {
            const auto* frame = Find<QWidget>(qPrintable(QStringLiteral("fraOptions%1").arg(index)));
            shown += frame->isVisible() ? QString::number(index) : QString();
            enabled += frame->isEnabled() ? QString::number(index) : QString();
        }
        return (shown + QLatin1Char('/') + enabled).toStdString();
    }

    /// The names of the checked option buttons, sorted.
    std::string CheckedOptions() const {
        QStringList names;
        for (const QRadioButton* button : dialog->findChildren<QRadioButton*>()) {
            if (button->isChecked()) {
                names += button->objectName();
            }
        }
        names.sort();
        return names.join(QLatin1Char(' ')).toStdString();
    }

    MemoryFileSystem files;
    ProgramInfo program = TestProgram(QStringLiteral("/prog/"));
    AppState state;
    QList<bool> timer;
    QList<bool> filterTaken;
    QList<qint16> selected;
    int whitelists = 0;
    std::unique_ptr<frmOptions> dialog;
};

} // namespace

TEST_F(Options, HasItsTexts) {
    Open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Options"));
    const QStringList tabs{QStringLiteral("&General"), QStringLiteral("&Directories"), QStringLiteral("&Filtering"),
                           QStringLiteral("&Toleration"), QStringLiteral("&Settings")};
    const QStringList keys{QStringLiteral("general"), QStringLiteral("directories"), QStringLiteral("filter"),
                           QStringLiteral("toleration"), QStringLiteral("settings")};
    ASSERT_EQ(Tabs()->count(), 5);
    for (int tab = 0; tab < 5; ++tab) {
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
    for (int tab : {3, 1, 4, 2, 0}) {
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
    EXPECT_EQ(Tabs()->currentIndex(), 4);
}

TEST_F(Options, CtrlTabGoesRoundFromEveryControl) {
    Open(4);
    Press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(Tabs()->currentIndex(), 0);
    for (const char* name : {"trvOptions", "btnArchive", "optDays0", "btnTolerate", "txtRefreshInterval", "trvOptions",
                             "cmdOK", "cmdHelp"}) {
        const int before = Tabs()->currentIndex();
        Find<QWidget>(name)->setFocus();
        ASSERT_EQ(Focus()->objectName().toStdString(), name);
        Press(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(Tabs()->currentIndex(), (before + 1) % 5) << name;
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

TEST_F(Options, TypesOnlyDigitsAndFullStops) {
    Open(4);
    Interval()->setFocus();
    Interval()->selectAll();
    QTest::keyClicks(Interval(), QStringLiteral("-a1,e .5+x"));
    EXPECT_EQ(Interval()->text(), QStringLiteral("1.5"));
    QTest::keyClick(Interval(), Qt::Key_Backspace);
    EXPECT_EQ(Interval()->text(), QStringLiteral("1."));
    QTest::keyClick(Interval(), Qt::Key_Home);
    QTest::keyClick(Interval(), Qt::Key_Delete);
    EXPECT_EQ(Interval()->text(), QStringLiteral("."));
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("\u00e9"));
    QCoreApplication::sendEvent(Interval(), &composed);
    EXPECT_EQ(Interval()->text(), QStringLiteral("."));
    composed.setCommitString(QStringLiteral("7"));
    QCoreApplication::sendEvent(Interval(), &composed);
    EXPECT_EQ(Interval()->text(), QStringLiteral("7."));
    EXPECT_EQ(Slider()->value(), 30);
}

TEST_F(Options, LeavingTheIntervalSetsTheSliderRoundedAndWithinItsBounds) {
    Open(4);
    const std::vector<std::pair<const char*, int>> cases = {
        {"1.5", 5},   {"2.5", 5},    {"5.5", 6}, {"6.5", 6},          {"7.5", 8}, {"42", 42}, {"59.5", 60},
        {"60.5", 60}, {"61", 60},    {"4.4", 5}, {"99999999999", 60}, {"", 5},    {"..", 5},  {".", 5},
        {"1.5.2", 5}, {"9.9.9", 10}, {"0", 5}};
    for (const auto& [text, seconds] : cases) {
        Enter(QLatin1String(text));
        EXPECT_EQ(Slider()->value(), seconds) << text;
        EXPECT_EQ(Interval()->text().toInt(), seconds) << text;
    }
}

TEST_F(Options, WhatIsPastedIsReadAsANumberToo) {
    Open(4);
    const std::vector<std::pair<const char*, int>> cases = {
        {"1e9", 60}, {"-7", 5}, {"abc", 5}, {"1e999", 60}, {" 12 s", 12}};
    for (const auto& [text, seconds] : cases) {
        Interval()->setFocus();
        Interval()->selectAll();
        Interval()->insert(QLatin1String(text));
        Slider()->setFocus();
        EXPECT_EQ(Slider()->value(), seconds) << text;
    }
}

TEST_F(Options, TheIntervalFollowsTheSlider) {
    Open(4);
    Slider()->setFocus();
    Press(Qt::Key_Right);
    EXPECT_EQ(Interval()->text(), QStringLiteral("31"));
    Press(Qt::Key_PageUp);
    EXPECT_EQ(Interval()->text(), QStringLiteral("36"));
    Press(Qt::Key_End);
    EXPECT_EQ(Interval()->text(), QStringLiteral("60"));
    Press(Qt::Key_Home);
    EXPECT_EQ(Interval()->text(), QStringLiteral("5"));
}

TEST_F(Options, AStoredIntervalOutsideTheBoundsIsShownWithinThem) {
    for (const auto& [stored, shown] : {std::pair{600, 60}, {0, 5}, {-3, 5}, {32767, 60}, {4, 5}}) {
        state.RefreshInterval = static_cast<qint16>(stored);
        Open(4);
        EXPECT_EQ(Slider()->value(), shown);
        EXPECT_EQ(Interval()->text().toInt(), shown);
        Click(Find<QPushButton>("cmdCancel"));
        EXPECT_EQ(state.RefreshInterval, stored);
        Open(4);
        Click(Find<QPushButton>("cmdOK"));
        EXPECT_EQ(state.RefreshInterval, shown);
    }
}

TEST_F(Options, AutoRefreshSwitchesTheIntervalAtOnce) {
    Open(4);
    EXPECT_TRUE(Slider()->isEnabled());
    EXPECT_TRUE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    EXPECT_FALSE(Slider()->isEnabled());
    EXPECT_FALSE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    EXPECT_TRUE(Slider()->isEnabled());
    EXPECT_TRUE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    EXPECT_EQ(timer, QList<bool>({false}));
    Click(Find<QPushButton>("cmdOK"));
    dialog.reset();
    EXPECT_EQ(state.AutoRefresh, 0);
    EXPECT_EQ(timer, QList<bool>({false, true}));
}

TEST_F(Options, TheTimerRestsWhileTheDialogExists) {
    Open();
    EXPECT_EQ(timer, QList<bool>({false}));
    dialog->close();
    dialog.reset();
    EXPECT_EQ(timer, QList<bool>({false, true}));
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
