#include "tests/support/MainWindowFixture.h"

#include <QMenuBar>

namespace quellbox {
namespace {

class MainMenus : public MainWindowTest {
protected:
    /// Every entry of a menu: name, caption and shortcut; of a separator the name alone.
    QStringList Entries(const char* name) const {
        QStringList lines;
        for (const QAction* entry : Find<QMenu>(name)->actions()) {
            const QString shortcut = entry->shortcut().toString(QKeySequence::PortableText);
            lines += entry->isSeparator()
                         ? entry->objectName()
                         : QStringLiteral("%1|%2|%3").arg(entry->objectName(), entry->text(), shortcut);
        }
        return lines;
    }

    /// Every button of a toolbar: key, tool tip, and whether it has two states.
    QStringList Buttons(const char* name) const {
        QStringList lines;
        for (const QAction* button : Find<QToolBar>(name)->actions()) {
            lines += QStringLiteral("%1|%2|%3")
                         .arg(button->property("key").toString(), button->toolTip(),
                              button->isCheckable() ? QStringLiteral("two") : QStringLiteral("one"));
        }
        return lines;
    }
};

struct MenuCase {
    const char* menu;
    const char* caption;
    std::vector<const char*> entries;
};

TEST_F(MainMenus, NamesCaptionsAndShortcuts) {
    const std::vector<MenuCase> cases = {
        {"mnuFile",
         "&File",
         {"mnuOpenFolder|Folder|", "mnuFileExportBar", "mnuFileExport|&Export List...|", "mnuFileExitBar",
          "mnuFiExit|E&xit|"}},
        {"mnuOpenFolder", "Folder", {"mnuOpenFolderSelect0|Archive...|", "mnuOpenFolderSelect1|Pickup...|"}},
        {"mnuEdit",
         "&Edit",
         {"mnuEditUndo|&Undo|Ctrl+Z", "mnuEditUndoBar", "mnuEditSelectNone|Select &None|Ctrl+N",
          "mnuEditSelectAll|Select &All|Ctrl+A", "mnuEditMarkBar", "mnuEditMarkRead|Mar&k as Read|",
          "mnuEditMarkUnread|Mark as U&nread|", "mnuEditMarkAllRead|Mark All as R&ead|", "mnuEditFindBar",
          "mnuEditFind|&Find...|Ctrl+F", "mnuEditFindNext|Find &Next|F3", "mnuEditFindAll|Find A&ll|Shift+F3",
          "mnuEditQuick|Filter &by text|Ctrl+Shift+F"}},
        {"mnuView",
         "&View",
         {"mnuViewBulk|Bulk mode|Ctrl+B", "mnuViewHideBar", "mnuViewHide|&Hide when Minimized|",
          "mnuViewToolbar|&Toolbar|", "mnuViewStatus|&Status Bar|", "mnuViewMessageBar",
          "mnuViewContents|Message &contents|", "mnuViewFormat|Format &layout|",
          "mnuViewReadable|&Readable text|Ctrl+R"}},
        {"mnuActions",
         "&Actions",
         {"mnuAcRefresh|&Refresh|F5", "mnuActionsDeleteBar", "mnuActionsDelete|&Delete|Del",
          "mnuActionsUnblock|&Unblock|Ctrl+U", "mnuActionsTolerate|&Tolerate...|Ctrl+T"}},
        // Two of its entries are for Alt+O, as they are named: the key goes from one to the other, and Enter chooses.
        // The overview has a key of its own besides.
        {"mnuTools",
         "&Tools",
         {"mnuToolsTest|Pickup &Test...|", "mnuToolsCleansing|&Cleansing Wizard...|Ctrl+C",
          "mnuToolsHistory|&History...|", "mnuToolsOverview|&Overview...|Ctrl+O", "mnuToolsOptionsBar",
          "mnuToolsOptions|&Options...|"}},
        {"mnuHelp",
         "&Help",
         {"mnuHelpStarting0|&Getting Started|", "mnuHelpStarting1|Suggestions|", "mnuHelpCheckBar",
          "mnuHelpCheck|Check for Program &Update...|", "mnuHelpFeedback|Give &Feedback...|", "mnuHelpAboutBar",
          "mnuHelpAbout|&About this Program...|"}},
        {"mnuMessage",
         "Message",
         {"mnuMessageDelete|&Delete|", "mnuMessageUnblock|&Unblock|", "mnuMessageTolerate|&Tolerate...|",
          "mnuBarHelpView", "mnuMessageFind|&Find...|", "mnuMessageView|&View|"}},
        {"mnuTray", "Tray", {"mnuTrRestore|Restore|", "mnuTrExBar", "mnuTrExit|Exit|"}},
    };
    Open();
    for (const MenuCase& menu : cases) {
        QStringList expected;
        for (const char* entry : menu.entries) {
            expected += QLatin1String(entry);
        }
        EXPECT_EQ(Find<QMenu>(menu.menu)->title().toStdString(), menu.caption);
        EXPECT_EQ(Entries(menu.menu).join(QLatin1Char('\n')).toStdString(),
                  expected.join(QLatin1Char('\n')).toStdString());
    }
}

TEST_F(MainMenus, TheMenuBarShowsSixMenus) {
    Open();
    QStringList names;
    for (const QAction* menu : window_->menuBar()->actions()) {
        names += menu->objectName();
    }
    EXPECT_EQ(names.join(QLatin1Char(' ')).toStdString(), "mnuFile mnuEdit mnuView mnuActions mnuTools mnuHelp");
}

TEST_F(MainMenus, KeysAndToolTipsOfTheMessagesToolbar) {
    Open();
    EXPECT_EQ(Buttons("tlbMessages").join(QLatin1Char('\n')).toStdString(),
              "delete|Delete selected message(s) permanently|one\n"
              "unblock|Unblock and deliver selected message(s)|one\n"
              "tolerate|Add sender(s) to whitelist for toleration|one\n"
              "find|Find text in message header|one\n"
              "filter|Filter the message display|two\n"
              "cleansing|Launch cleansing wizard|one\n"
              "whitelist|Maintain whitelist of tolerated senders|one");
}

TEST_F(MainMenus, KeysAndToolTipsOfTheContentsToolbar) {
    Open();
    EXPECT_EQ(Buttons("tlbContents").join(QLatin1Char('\n')).toStdString(),
              "collapse|Collapse or Expand all parts|two\n"
              "attachment|Reveal attachment|two");
}

TEST_F(MainMenus, EveryButtonHasAPictureAndCarriesItsKey) {
    Open();
    for (const char* name : {"tlbMessages", "tlbContents"}) {
        auto* bar = Find<QToolBar>(name);
        for (QAction* button : bar->actions()) {
            EXPECT_FALSE(button->icon().pixmap(24, 24).isNull()) << button->objectName().toStdString();
            EXPECT_EQ(bar->widgetForAction(button)->property("key"), button->property("key"));
        }
    }
}

TEST_F(MainMenus, ExitClosesTheWindow) {
    Open();
    Action("mnuFiExit")->trigger();
    Settle();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(store_.FlushCount(), 1);
}

} // namespace
} // namespace quellbox
