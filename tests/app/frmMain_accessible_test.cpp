#include "app/MessageListView.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmOverview.h"
#include "contents/frmView.h"
#include "dialogs/frmCleansing.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmOwnServer.h"
#include "history/frmHistory.h"
#include "messages/frmFailures.h"
#include "tests/support/AccessibleNames.h"
#include "tests/support/MainWindowFixture.h"
#include "whitelist/frmTolerate.h"

#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTreeWidget>

namespace quellbox {
namespace {

class MainAccessible : public MainWindowTest {
protected:
    /// What assistive tools hear of a control: its name.
    std::string NameOf(const char* control) const { return Interface(control)->text(QAccessible::Name).toStdString(); }

    QAccessible::Role RoleOf(const char* control) const { return Interface(control)->role(); }

    QAccessibleInterface* Interface(const char* control) const {
        return QAccessible::queryAccessibleInterface(Find<QWidget>(control));
    }

    static QAccessibleInterface* InterfaceIn(const QWidget& window, const char* control) {
        auto* found = window.findChild<QWidget*>(QLatin1String(control));
        EXPECT_NE(found, nullptr) << control;
        return QAccessible::queryAccessibleInterface(found);
    }
};

TEST_F(MainAccessible, EveryControlOfTheMainWindowHasANameAndARole) {
    AddThree();
    OpenRefreshed();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(*window_, &focusable), "");
    EXPECT_GE(focusable, 3 + 9) << "the three panes and the nine buttons";
}

TEST_F(MainAccessible, PanesAreAListATreeAndAText) {
    Open();
    EXPECT_EQ(NameOf("lvwMessages"), "Messages");
    EXPECT_EQ(NameOf("trvMessage"), "Message format layout");
    EXPECT_EQ(NameOf("rtfRaw"), "Raw message contents");
    EXPECT_EQ(RoleOf("lvwMessages"), QAccessible::Tree);
    EXPECT_EQ(RoleOf("trvMessage"), QAccessible::Tree);
    EXPECT_EQ(RoleOf("rtfRaw"), QAccessible::EditableText);
    EXPECT_TRUE(Interface("rtfRaw")->state().readOnly);
}

TEST_F(MainAccessible, ToolbarButtonsAreNamedAsTheirToolTips) {
    Open();
    for (const char* name : {"tlbMessages", "tlbContents"}) {
        auto* bar = Find<QToolBar>(name);
        EXPECT_FALSE(NameOf(name).empty()) << name;
        for (QAction* button : bar->actions()) {
            QAccessibleInterface* control = QAccessible::queryAccessibleInterface(bar->widgetForAction(button));
            EXPECT_EQ(control->text(QAccessible::Name), button->toolTip());
            EXPECT_EQ(control->role(), button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button);
        }
    }
}

TEST_F(MainAccessible, PanelsSayWhatTheyAreAbout) {
    AddThree();
    Open();
    EXPECT_EQ(NameOf("stbBottom_size"), "Size or time");
    EXPECT_EQ(NameOf("stbBottom_count"), "Number of messages");
    ASSERT_TRUE(WaitForRefreshes(1));
    QCoreApplication::processEvents();
    EXPECT_EQ(NameOf("stbBottom_info"), "State: a.eml");
    EXPECT_EQ(NameOf("stbBottom_count"), "Number of messages: 3 messages");
}

TEST_F(MainAccessible, DividersAndProgressAreNamed) {
    Open();
    for (const char* name : {"splWhole", "splBottom"}) {
        QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(Splitter(name)->handle(1));
        EXPECT_EQ(bar->text(QAccessible::Name).left(7).toStdString(), "Divider") << name;
    }
    EXPECT_EQ(NameOf("prbFiles"), "Progress");
    EXPECT_EQ(RoleOf("prbFiles"), QAccessible::ProgressBar);
}

TEST_F(MainAccessible, RowsTellTheirCellsAndWhetherTheyAreUnread) {
    AddThree();
    OpenRefreshed();
    QAccessibleTableInterface* table = Interface("lvwMessages")->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), 3);
    EXPECT_EQ(table->cellAt(1, ColumnSubject)->text(QAccessible::Name).toStdString(), "about b.eml");
    window_->Messages().MarkRows(1, 1, true);
    EXPECT_EQ(table->cellAt(1, ColumnSubject)->text(QAccessible::Name).toStdString(), "about b.eml, unread");
}

TEST_F(MainAccessible, EveryMenuEntryHasAName) {
    Open();
    for (const QMenu* menu : window_->findChildren<QMenu*>(QRegularExpression(QStringLiteral("^mnu")))) {
        QAccessibleInterface* control = QAccessible::queryAccessibleInterface(const_cast<QMenu*>(menu));
        EXPECT_EQ(control->role(), QAccessible::PopupMenu);
        for (int index = 0; index < control->childCount(); ++index) {
            QAccessibleInterface* entry = control->child(index);
            EXPECT_TRUE(entry->role() == QAccessible::Separator || !entry->text(QAccessible::Name).isEmpty())
                << menu->objectName().toStdString() << ' ' << index;
        }
    }
}

TEST_F(MainAccessible, TheWhitelistDialogIsNamed) {
    AppState state;
    frmTolerate dialog(store_, state, nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 7) << "the entry field and six buttons";
}

TEST_F(MainAccessible, TheCleansingDialogIsNamed) {
    AppState state;
    frmCleansing dialog({files_, pool_, clock_}, state, nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 7) << "four options and three buttons";
}

TEST_F(MainAccessible, TheFindDialogIsNamed) {
    AppState state;
    RefreshTimer timer(state);
    frmFind dialog(store_, state, timer, nullptr);
    dialog.Prepare();
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 8) << "the text, the fields and three buttons";
}

TEST_F(MainAccessible, TheWindowOfFailuresIsNamed) {
    FailureList failures;
    failures.TakeAction({FileFailure(QStringLiteral("/archive/a.eml"), QStringLiteral("for some reason"))}, noon_);
    frmFailures dialog(failures, nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 4) << "the list and three buttons";
}

TEST_F(MainAccessible, TheWindowOfTheHistoryIsNamed) {
    Journal journal(pool_, clock_, {});
    frmHistory window(journal, nullptr);
    window.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(window, &focusable), "");
    EXPECT_GE(focusable, 8) << "field, two choices, list, details and buttons";
}

TEST_F(MainAccessible, TheOverviewIsNamedAsPicturesAndAsTables) {
    frmOverview window(nullptr);
    std::vector<MessageRow> rows;
    rows.emplace_back(QStringLiteral("a.eml"), 1, 0, MessageTexts{});
    window.ShowOverview(CountOverview(rows, false));
    window.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(window, &focusable), "");
    EXPECT_GE(focusable, 18) << "five pictures with two buttons each, the list and three buttons";
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (button->isCheckable()) {
            button->click();
        }
    }
    EXPECT_EQ(NamelessControls(window, &focusable), "");
}

TEST_F(MainAccessible, TheDirectoryDialogIsNamed) {
    AppState state;
    frmFolders dialog({files_, volumes_, pool_}, state, nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 5) << "drives, directories, the check box and two buttons";
}

TEST_F(MainAccessible, TheOptionsDialogIsNamedOnEachTab) {
    AppState state;
    OptionsCalls calls;
    frmOptions dialog(files_, pool_, program_, state, std::move(calls), nullptr);
    dialog.show();
    auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        int focusable = 0;
        EXPECT_EQ(NamelessControls(dialog, &focusable), "") << tab;
        EXPECT_GE(focusable, 4) << "the tabs, three buttons and what is on tab " << tab;
    }
}

TEST_F(MainAccessible, TheDialogOfAnotherServerIsNamed) {
    frmOwnServer dialog(files_, pool_, Folder(QStringLiteral("/archive/")), OwnServer(), nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_GE(focusable, 14) << "six fields, the form, three boxes and four buttons";
}

TEST_F(MainAccessible, TheAboutBoxIsNamedAndItsLinksAreButtons) {
    frmAbout dialog(MakeProgramInfo(QStringLiteral("/prog/quellbox")), files_, shell_, nullptr);
    dialog.show();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(dialog, &focusable), "");
    EXPECT_EQ(focusable, 5) << "four links and OK";
    for (const char* link : {"hypLinks0", "hypLinks1", "hypLinks2", "hypLinks3"}) {
        QAccessibleInterface* control = InterfaceIn(dialog, link);
        EXPECT_EQ(control->role(), QAccessible::Button) << link;
        EXPECT_TRUE(control->text(QAccessible::Name).contains(QStringLiteral(": "))) << link;
    }
    EXPECT_EQ(InterfaceIn(dialog, "imgLogo")->role(), QAccessible::Graphic);
    EXPECT_EQ(InterfaceIn(dialog, "imgLogo")->text(QAccessible::Name), QStringLiteral("Logo"));
}

TEST_F(MainAccessible, TheHelpIsNamedAndSaysWhatItsPanesAre) {
    frmHelp help(shell_, store_, [](const QString&) {});
    help.ShowDefaultTopic();
    int focusable = 0;
    EXPECT_EQ(NamelessControls(help, &focusable), "");
    EXPECT_GE(focusable, 5) << "two buttons, the search, the contents and the topic";
    EXPECT_EQ(InterfaceIn(help, "trvContents")->role(), QAccessible::Tree);
    EXPECT_EQ(InterfaceIn(help, "trvContents")->text(QAccessible::Name), QStringLiteral("Contents"));
    EXPECT_EQ(InterfaceIn(help, "txtTopic")->text(QAccessible::Name), QStringLiteral("Topic"));
    EXPECT_TRUE(InterfaceIn(help, "txtTopic")->state().readOnly);
    for (const char* button : {"btnBack", "btnForward", "btnSmaller", "btnLarger"}) {
        EXPECT_EQ(InterfaceIn(help, button)->role(), QAccessible::Button) << button;
        EXPECT_FALSE(InterfaceIn(help, button)->text(QAccessible::Name).isEmpty()) << button;
    }
}

TEST_F(MainAccessible, TheSearchOfTheHelpIsATextWhoseResultCanBeHeard) {
    frmHelp help(shell_, store_, [](const QString&) {});
    help.ShowDefaultTopic();
    QAccessibleInterface* search = InterfaceIn(help, "txtSearch");
    EXPECT_EQ(search->text(QAccessible::Name), QStringLiteral("Search the help"));
    EXPECT_EQ(search->role(), QAccessible::EditableText);
    EXPECT_FALSE(search->state().readOnly);
    QAccessibleTableInterface* topics = InterfaceIn(help, "trvContents")->tableInterface();
    ASSERT_NE(topics, nullptr);
    const int all = topics->rowCount();
    auto* text = help.findChild<QLineEdit*>(QStringLiteral("txtSearch"));
    QTest::keyClicks(text, QStringLiteral("postmaster"));
    Settle();
    QCoreApplication::processEvents(); // the tree lays its rows out
    EXPECT_GT(topics->rowCount(), 0);
    EXPECT_LT(topics->rowCount(), all);
    EXPECT_TRUE(InterfaceIn(help, "lblNone")->state().invisible);
    QTest::keyClicks(text, QStringLiteral(" xyzzy"));
    Settle();
    QCoreApplication::processEvents();
    EXPECT_EQ(topics->rowCount(), 0);
    EXPECT_FALSE(InterfaceIn(help, "lblNone")->state().invisible);
    EXPECT_EQ(InterfaceIn(help, "lblNone")->text(QAccessible::Name), QStringLiteral("No topic has these words."));
    EXPECT_EQ(NamelessControls(help), "");
}

TEST_F(MainAccessible, TheViewerIsNamed) {
    frmView view(store_);
    view.ShowMessage(QStringLiteral("/archive/a.eml"), QStringLiteral("text"));
    int focusable = 0;
    EXPECT_EQ(NamelessControls(view, &focusable), "");
    EXPECT_EQ(focusable, 5) << "two pages, their tabs, and the two buttons of a row of tabs that is too short for them";
}

} // namespace
} // namespace quellbox
