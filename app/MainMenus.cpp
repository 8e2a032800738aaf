#include "app/MainMenus.h"

#include <QIcon>
#include <QMenuBar>

namespace quellbox {

/// A text to be translated, with what tells the translator which of two equal texts it is.
struct MainMenus::Text {
    Text(const char* itsSource = nullptr, const char* itsComment = nullptr) : source(itsSource), comment(itsComment) {}

    const char* source;
    const char* comment;
};

/// One line of a menu: an entry, a bar where it has no text, or a menu of its own where that has the name.
struct MainMenus::EntryInfo {
    enum Kind {
        Plain,
        Toggle,
        List,       ///< changes the list, its selection or the settings
        ListOnce,   ///< the same, and a key held down must not go through the list, message by message
        ListToggle, ///< the same as List, and a toggle
    };

    const char* name;
    Text text = {};
    const char* shortcut = "";
    Kind kind = Plain;
    const char* icon = nullptr;
};

struct MainMenus::MenuInfo {
    const char* name;
    const char* title;
    bool isInBar;
    const char* defaultEntry;
    std::vector<EntryInfo> entries;
};

struct MainMenus::ButtonInfo {
    const char* bar;
    const char* key;
    const char* toolTip;
    bool isToggle;
};

namespace {

QIcon Picture(const char* name) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

} // namespace

// A menu comes before the one that it is in.
const std::vector<MainMenus::MenuInfo>& MainMenus::MenuTable() {
    using Info = EntryInfo;
    static const std::vector<MenuInfo> table = {
        {"mnuOpenFolder",
         QT_TR_NOOP("Folder"),
         false,
         nullptr,
         {
             {"mnuOpenFolderSelect0", QT_TR_NOOP("Archive..."), "", Info::List},
             {"mnuOpenFolderSelect1", QT_TR_NOOP("Pickup..."), "", Info::List},
         }},
        {"mnuFile",
         QT_TR_NOOP("&File"),
         true,
         nullptr,
         {
             {"mnuOpenFolder"},
             {"mnuFileExportBar"},
             {"mnuFileExport", QT_TR_NOOP("&Export List..."), "", Info::List},
             {"mnuFileExitBar"},
             {"mnuFiExit", QT_TR_NOOP("E&xit")},
         }},
        {"mnuEdit",
         QT_TR_NOOP("&Edit"),
         true,
         nullptr,
         {
             {"mnuEditUndo", QT_TR_NOOP("&Undo"), "Ctrl+Z", Info::ListOnce},
             {"mnuEditUndoBar"},
             {"mnuEditSelectNone", QT_TR_NOOP("Select &None"), "Ctrl+N", Info::List},
             {"mnuEditSelectAll", QT_TR_NOOP("Select &All"), "Ctrl+A", Info::List},
             {"mnuEditMarkBar"},
             {"mnuEditMarkRead", QT_TR_NOOP("Mar&k as Read"), "", Info::List},
             {"mnuEditMarkUnread", QT_TR_NOOP("Mark as U&nread"), "", Info::List},
             {"mnuEditMarkAllRead", QT_TR_NOOP("Mark All as R&ead"), "", Info::List},
             {"mnuEditFindBar"},
             {"mnuEditFind", QT_TR_NOOP("&Find..."), "Ctrl+F", Info::List},
             {"mnuEditFindNext", QT_TR_NOOP("Find &Next"), "F3", Info::List},
             {"mnuEditFindAll", QT_TR_NOOP("Find A&ll"), "Shift+F3", Info::List},
             {"mnuEditQuick", QT_TR_NOOP("Filter &by text"), "Ctrl+Shift+F", Info::ListToggle},
         }},
        {"mnuView",
         QT_TR_NOOP("&View"),
         true,
         nullptr,
         {
             {"mnuViewBulk", QT_TR_NOOP("Bulk mode"), "Ctrl+B", Info::Toggle},
             {"mnuViewHideBar"},
             {"mnuViewHide", QT_TR_NOOP("&Hide when Minimized"), "", Info::Toggle},
             {"mnuViewToolbar", QT_TR_NOOP("&Toolbar"), "", Info::Toggle},
             {"mnuViewStatus", QT_TR_NOOP("&Status Bar"), "", Info::Toggle},
             {"mnuViewMessageBar"},
             {"mnuViewContents", QT_TR_NOOP("Message &contents"), "", Info::ListToggle},
             {"mnuViewFormat", QT_TR_NOOP("Format &layout"), "", Info::Toggle},
             {"mnuViewReadable", QT_TR_NOOP("&Readable text"), "Ctrl+R", Info::Toggle},
         }},
        {"mnuActions",
         QT_TR_NOOP("&Actions"),
         true,
         nullptr,
         {
             {"mnuAcRefresh", QT_TR_NOOP("&Refresh"), "F5", Info::Plain, "refresh"},
             {"mnuActionsDeleteBar"},
             {"mnuActionsDelete", QT_TR_NOOP("&Delete"), "Del", Info::ListOnce, "delete"},
             {"mnuActionsUnblock", QT_TR_NOOP("&Unblock"), "Ctrl+U", Info::ListOnce, "unblock"},
             {"mnuActionsTolerate", QT_TR_NOOP("&Tolerate..."), "Ctrl+T", Info::ListOnce, "tolerate"},
         }},
        {"mnuTools",
         QT_TR_NOOP("&Tools"),
         true,
         nullptr,
         {
             {"mnuToolsTest", QT_TR_NOOP("Pickup &Test..."), "", Info::List},
             {"mnuToolsCleansing", QT_TR_NOOP("&Cleansing Wizard..."), "Ctrl+C", Info::List},
             {"mnuToolsHistory", QT_TR_NOOP("&History...")},
             {"mnuToolsOverview", QT_TR_NOOP("&Overview..."), "Ctrl+O"},
             {"mnuToolsOptionsBar"},
             {"mnuToolsOptions", QT_TR_NOOP("&Options..."), "", Info::List},
         }},
        {"mnuHelp",
         QT_TR_NOOP("&Help"),
         true,
         nullptr,
         {
             {"mnuHelpStarting0", QT_TR_NOOP("&Getting Started")},
             {"mnuHelpStarting1", QT_TR_NOOP("Suggestions")},
             {"mnuHelpCheckBar"},
             {"mnuHelpCheck", QT_TR_NOOP("Check for Program &Update...")},
             {"mnuHelpFeedback", QT_TR_NOOP("Give &Feedback...")},
             {"mnuHelpAboutBar"},
             {"mnuHelpAbout", QT_TR_NOOP("&About this Program...")},
         }},
        {"mnuMessage",
         QT_TR_NOOP("Message"),
         false,
         "mnuMessageView",
         {
             {"mnuMessageDelete", QT_TR_NOOP("&Delete"), "", Info::List},
             {"mnuMessageUnblock", QT_TR_NOOP("&Unblock"), "", Info::List},
             {"mnuMessageTolerate", QT_TR_NOOP("&Tolerate..."), "", Info::List},
             {"mnuBarHelpView"},
             {"mnuMessageFind", QT_TR_NOOP("&Find..."), "", Info::List},
             {"mnuMessageView", QT_TRANSLATE_NOOP3("quellbox::MainMenus", "&View", "what to do with a message"), "",
              Info::List},
         }},
        {"mnuTray",
         QT_TR_NOOP("Tray"),
         false,
         "mnuTrRestore",
         {
             {"mnuTrRestore", QT_TR_NOOP("Restore")},
             {"mnuTrExBar"},
             {"mnuTrExit", QT_TR_NOOP("Exit")},
         }},
    };
    return table;
}

const std::vector<MainMenus::ButtonInfo>& MainMenus::ButtonTable() {
    static const std::vector<ButtonInfo> table = {
        {"tlbMessages", "delete", QT_TR_NOOP("Delete selected message(s) permanently"), false},
        {"tlbMessages", "unblock", QT_TR_NOOP("Unblock and deliver selected message(s)"), false},
        {"tlbMessages", "tolerate", QT_TR_NOOP("Add sender(s) to whitelist for toleration"), false},
        {"tlbMessages", "find", QT_TR_NOOP("Find text in message header"), false},
        {"tlbMessages", "filter", QT_TR_NOOP("Filter the message display"), true},
        {"tlbMessages", "cleansing", QT_TR_NOOP("Launch cleansing wizard"), false},
        {"tlbMessages", "whitelist", QT_TR_NOOP("Maintain whitelist of tolerated senders"), false},
        {"tlbContents", "collapse", QT_TR_NOOP("Collapse or Expand all parts"), true},
        {"tlbContents", "attachment", QT_TR_NOOP("Reveal attachment"), true},
    };
    return table;
}

MainMenus::MainMenus(QMainWindow& window)
    : window_(window), tlbMessages(AddBar("tlbMessages", tr("Messages"))),
      tlbContents(AddBar("tlbContents", tr("Contents"))) {
    for (const MenuInfo& info : MenuTable()) {
        QMenu& menu = AddMenu(info);
        if (info.isInBar) {
            window.menuBar()->addMenu(&menu);
        }
    }
    for (const ButtonInfo& info : ButtonTable()) {
        AddButton(info);
    }
    // The menu is disabled while the list is empty, as it is after the action that is to be taken back.
    window.addAction(&Entry("mnuEditUndo"));
    // Its key works without the menu having been opened, even with an empty text, which occurs everywhere.
    connect(&Menu("mnuEdit"), &QMenu::aboutToHide, this, [this] { Show(shown_); });
    connect(&Menu("mnuActions"), &QMenu::aboutToHide, this, [this] { Show(shown_); });
}

QMenu& MainMenus::AddMenu(const MenuInfo& info) {
    auto* menu = new QMenu(tr(info.title), &window_);
    const QLatin1String name(info.name);
    menu->setObjectName(name);
    menu->menuAction()->setObjectName(name);
    menu->setToolTipsVisible(true);
    menus_.insert(name, menu);
    for (const EntryInfo& entry : info.entries) {
        AddEntry(*menu, entry);
    }
    if (info.defaultEntry != nullptr) {
        menu->setDefaultAction(&Entry(info.defaultEntry));
    }
    return *menu;
}

void MainMenus::AddEntry(QMenu& menu, const EntryInfo& info) {
    const QLatin1String name(info.name);
    if (QMenu* inner = menus_.value(name)) {
        menu.addMenu(inner);
        return;
    }
    if (info.text.source == nullptr) {
        menu.addSeparator()->setObjectName(name);
        return;
    }
    auto* entry = new QAction(tr(info.text.source, info.text.comment), &window_);
    entry->setObjectName(name);
    entry->setShortcut(QKeySequence(QLatin1String(info.shortcut)));
    entry->setCheckable(info.kind == EntryInfo::Toggle || info.kind == EntryInfo::ListToggle);
    entry->setAutoRepeat(info.kind != EntryInfo::ListOnce);
    if (info.icon != nullptr) {
        entry->setIcon(Picture(info.icon));
    }
    if (info.kind != EntryInfo::Plain && info.kind != EntryInfo::Toggle) {
        listCommands_.append(entry);
    }
    entries_.insert(name, entry);
    menu.addAction(entry);
}

QToolBar* MainMenus::AddBar(const char* name, const QString& title) {
    auto* bar = new QToolBar(title, &window_);
    bar->setObjectName(QLatin1String(name));
    bar->setOrientation(Qt::Vertical);
    bar->setMovable(false);
    bar->setIconSize({24, 24});
    return bar;
}

void MainMenus::AddButton(const ButtonInfo& info) {
    QToolBar* bar = tlbMessages->objectName() == QLatin1String(info.bar) ? tlbMessages : tlbContents;
    const QString toolTip = tr(info.toolTip);
    auto* button = new QAction(Picture(info.key), toolTip, &window_);
    const QLatin1String key(info.key);
    button->setObjectName(bar->objectName() + QLatin1Char('_') + key);
    button->setProperty("key", QString(key));
    button->setToolTip(toolTip);
    button->setCheckable(info.isToggle);
    bar->addAction(button);
    if (QWidget* widget = bar->widgetForAction(button)) {
        widget->setProperty("key", QString(key));
        widget->setFocusPolicy(Qt::TabFocus);
    }
    buttons_.insert(key, button);
}

void MainMenus::Show(const CommandStates& can) {
    shown_ = can;
    for (QAction* entry : listCommands_) {
        entry->setEnabled(can.list);
    }
    Menu("mnuEdit").menuAction()->setEnabled(can.edit);
    Entry("mnuEditUndo").setEnabled(can.undo);
    Entry("mnuFileExport").setEnabled(can.exportList);
    Entry("mnuMessageView").setEnabled(can.view);
    for (const char* key : {"delete", "unblock", "collapse", "attachment"}) {
        Button(key).setEnabled(can.onSelected);
    }
    Button("tolerate").setEnabled(can.tolerate);
    Button("find").setEnabled(can.find);
    Button("filter").setEnabled(can.filter);
    Button("cleansing").setEnabled(can.list);
    Button("whitelist").setEnabled(can.whitelist);
    for (const char* name : {"mnuActionsDelete", "mnuActionsUnblock"}) {
        Entry(name).setEnabled(can.onSelected);
    }
    Entry("mnuActionsTolerate").setEnabled(can.tolerate);
    Entry("mnuMessageTolerate").setEnabled(can.tolerateMenu);
    for (const char* name : {"mnuAcRefresh", "mnuViewBulk"}) {
        Entry(name).setEnabled(can.refresh);
    }
}

void MainMenus::mnuEdit_Click(bool canFindNext) {
    Entry("mnuEditFindNext").setEnabled(shown_.list && canFindNext);
}

// While the menu is open its entries are for the current row; the keys are for the selection.
void MainMenus::mnuActions_Click(bool currentRowIsSelected) {
    for (const char* name : {"mnuActionsDelete", "mnuActionsUnblock"}) {
        Entry(name).setEnabled(shown_.onSelected && currentRowIsSelected);
    }
}

} // namespace quellbox
