#include "app/HelpDesk.h"
#include "app/TrayPresence.h"
#include "app/frmMain.h"

#include <QIcon>
#include <QMenu>
#include <QMenuBar>

namespace quellbox {

namespace {

QIcon Picture(const char* name) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

QMenu* AddMenu(QWidget* owner, const char* name, const QString& caption) {
    auto* menu = new QMenu(caption, owner);
    menu->setObjectName(QLatin1String(name));
    menu->menuAction()->setObjectName(QLatin1String(name));
    menu->setToolTipsVisible(true);
    return menu;
}

} // namespace

QAction* frmMain::AddEntry(QMenu* menu, const char* name, const QString& caption, const QString& shortcut) {
    auto* entry = new QAction(caption, this);
    entry->setObjectName(QLatin1String(name));
    entry->setShortcut(QKeySequence(shortcut));
    menu->addAction(entry);
    return entry;
}

void frmMain::AddBar(QMenu* menu, const char* name) {
    menu->addSeparator()->setObjectName(QLatin1String(name));
}

void frmMain::CreateMenus() {
    const auto on = [this](QAction* entry, auto handler) {
        connect(entry, &QAction::triggered, this, [this, handler] { Guarded(handler); });
    };
    // What changes the list, its selection or the settings waits for no job, and none may run.
    const auto change = [this](QAction* entry, auto handler) {
        listCommands_.push_back(entry);
        connect(entry, &QAction::triggered, this, [this, handler] {
            if (MayChange()) {
                Guarded(handler);
            }
        });
    };
    mnuFile = AddMenu(this, "mnuFile", tr("&File"));
    QMenu* mnuOpenFolder = AddMenu(this, "mnuOpenFolder", tr("Folder"));
    mnuFile->addMenu(mnuOpenFolder);
    QAction* archive = AddEntry(mnuOpenFolder, "mnuOpenFolderSelect0", tr("Archive..."));
    QAction* pickup = AddEntry(mnuOpenFolder, "mnuOpenFolderSelect1", tr("Pickup..."));
    AddBar(mnuFile, "mnuFileExitBar");
    change(archive, [this] { mnuOpenFolderSelect_Click(0); });
    change(pickup, [this] { mnuOpenFolderSelect_Click(1); });
    QAction* exit = AddEntry(mnuFile, "mnuFiExit", tr("E&xit"));
    connect(exit, &QAction::triggered, this, &QWidget::close);

    mnuEdit = AddMenu(this, "mnuEdit", tr("&Edit"));
    change(AddEntry(mnuEdit, "mnuEditSelectNone", tr("Select &None"), QStringLiteral("Ctrl+N")),
           [this] { mnuEditSelectNone_Click(); });
    change(AddEntry(mnuEdit, "mnuEditSelectAll", tr("Select &All"), QStringLiteral("Ctrl+A")),
           [this] { mnuEditSelectAll_Click(); });
    AddBar(mnuEdit, "mnuEditMarkBar");
    change(AddEntry(mnuEdit, "mnuEditMarkRead", tr("Mar&k as Read")), [this] { mnuEditMarkRead_Click(); });
    change(AddEntry(mnuEdit, "mnuEditMarkUnread", tr("Mark as U&nread")), [this] { mnuEditMarkUnread_Click(); });
    change(AddEntry(mnuEdit, "mnuEditMarkAllRead", tr("Mark All as R&ead")), [this] { mnuEditMarkAllRead_Click(); });
    AddBar(mnuEdit, "mnuEditFindBar");
    QAction* find = AddEntry(mnuEdit, "mnuEditFind", tr("&Find..."), QStringLiteral("Ctrl+F"));
    mnuEditFindNext = AddEntry(mnuEdit, "mnuEditFindNext", tr("Find &Next"), QStringLiteral("F3"));
    QAction* findAll = AddEntry(mnuEdit, "mnuEditFindAll", tr("Find A&ll"), QStringLiteral("Shift+F3"));
    change(find, [this] { mnuEditFind_Click(); });
    change(mnuEditFindNext, [this] { mnuEditFindNext_Click(); });
    change(findAll, [this] { mnuEditFindAll_Click(); });
    connect(mnuEdit, &QMenu::aboutToShow, this, &frmMain::mnuEdit_Click);
    // Its key works without the menu having been opened, even with an empty text, which occurs everywhere.
    connect(mnuEdit, &QMenu::aboutToHide, this, [this] { mnuEditFindNext->setEnabled(true); });

    mnuView = AddMenu(this, "mnuView", tr("&View"));
    mnuViewBulk = AddEntry(mnuView, "mnuViewBulk", tr("Bulk mode"), QStringLiteral("Ctrl+B"));
    AddBar(mnuView, "mnuViewHideBar");
    mnuViewHide = AddEntry(mnuView, "mnuViewHide", tr("&Hide when Minimized"));
    mnuViewToolbar = AddEntry(mnuView, "mnuViewToolbar", tr("&Toolbar"));
    mnuViewStatus = AddEntry(mnuView, "mnuViewStatus", tr("&Status Bar"));
    AddBar(mnuView, "mnuViewMessageBar");
    mnuViewContents = AddEntry(mnuView, "mnuViewContents", tr("Message &contents"));
    mnuViewFormat = AddEntry(mnuView, "mnuViewFormat", tr("Format &layout"));
    for (QAction* toggle : {mnuViewBulk, mnuViewHide, mnuViewToolbar, mnuViewStatus, mnuViewContents, mnuViewFormat}) {
        toggle->setCheckable(true);
    }
    on(mnuViewBulk, [this] { mnuViewBulk_Click(); });
    on(mnuViewToolbar, [this] { mnuViewToolbar_Click(); });
    on(mnuViewStatus, [this] { mnuViewStatus_Click(); });
    change(mnuViewContents, [this] { mnuViewContents_Click(); });
    on(mnuViewFormat, [this] { mnuViewFormat_Click(); });
    on(mnuViewHide, [this] { tray_->mnuViewHide_Click(); });
    connect(mnuView, &QMenu::aboutToShow, this, &frmMain::mnuView_Click);

    mnuActions = AddMenu(this, "mnuActions", tr("&Actions"));
    mnuAcRefresh = AddEntry(mnuActions, "mnuAcRefresh", tr("&Refresh"), QStringLiteral("F5"));
    on(mnuAcRefresh, [this] { mnuAcRefresh_Click(); });
    AddBar(mnuActions, "mnuActionsDeleteBar");
    mnuActionsDelete = AddEntry(mnuActions, "mnuActionsDelete", tr("&Delete"), QStringLiteral("Del"));
    mnuActionsUnblock = AddEntry(mnuActions, "mnuActionsUnblock", tr("&Unblock"), QStringLiteral("Ctrl+U"));
    mnuActionsTolerate = AddEntry(mnuActions, "mnuActionsTolerate", tr("&Tolerate..."), QStringLiteral("Ctrl+T"));
    change(mnuActionsDelete, [this] { mnuActionsDelete_Click(); });
    change(mnuActionsUnblock, [this] { mnuActionsUnblock_Click(); });
    change(mnuActionsTolerate, [this] { TolerateSelectedSender(); });
    connect(mnuActions, &QMenu::aboutToShow, this, &frmMain::mnuActions_Click);
    connect(mnuActions, &QMenu::aboutToHide, this, &frmMain::ShowCommands);

    // Each of these acts on the next message as soon as one is done; a key held down must not go through the list.
    for (QAction* command : {mnuActionsDelete, mnuActionsUnblock, mnuActionsTolerate}) {
        command->setAutoRepeat(false);
    }

    mnuTools = AddMenu(this, "mnuTools", tr("&Tools"));
    QAction* test = AddEntry(mnuTools, "mnuToolsTest", tr("Pickup &Test..."));
    mnuToolsCleansing = AddEntry(mnuTools, "mnuToolsCleansing", tr("&Cleansing Wizard..."), QStringLiteral("Ctrl+C"));
    AddBar(mnuTools, "mnuToolsOptionsBar");
    mnuToolsOptions = AddEntry(mnuTools, "mnuToolsOptions", tr("&Options..."));

    change(test, [this] { SendPickupTest(); });
    change(mnuToolsCleansing, [this] { mnuToolsCleansing_Click(); });

    change(mnuToolsOptions, [this] { mnuToolsOptions_Click(); });

    mnuHelp = AddMenu(this, "mnuHelp", tr("&Help"));
    QAction* starting = AddEntry(mnuHelp, "mnuHelpStarting0", tr("&Getting Started"));
    QAction* suggestions = AddEntry(mnuHelp, "mnuHelpStarting1", tr("Suggestions"));
    AddBar(mnuHelp, "mnuHelpCheckBar");
    QAction* check = AddEntry(mnuHelp, "mnuHelpCheck", tr("Check for Program &Update..."));
    QAction* feedback = AddEntry(mnuHelp, "mnuHelpFeedback", tr("Give &Feedback..."));
    AddBar(mnuHelp, "mnuHelpAboutBar");
    QAction* about = AddEntry(mnuHelp, "mnuHelpAbout", tr("&About this Program..."));

    on(starting, [this] { help_->mnuHelpStarting_Click(0); });
    on(suggestions, [this] { help_->mnuHelpStarting_Click(1); });
    on(check, [this] { help_->mnuHelpCheck_Click(); });
    on(feedback, [this] { help_->mnuHelpFeedback_Click(); });
    on(about, [this] { help_->mnuHelpAbout_Click(); });

    for (QMenu* menu : {mnuFile, mnuEdit, mnuView, mnuActions, mnuTools, mnuHelp}) {
        menuBar()->addMenu(menu);
    }

    mnuMessage = AddMenu(this, "mnuMessage", tr("Message"));
    change(AddEntry(mnuMessage, "mnuMessageDelete", tr("&Delete")), [this] { mnuMessageDelete_Click(); });
    change(AddEntry(mnuMessage, "mnuMessageUnblock", tr("&Unblock")), [this] { mnuMessageUnblock_Click(); });
    mnuMessageTolerate = AddEntry(mnuMessage, "mnuMessageTolerate", tr("&Tolerate..."));
    change(mnuMessageTolerate, [this] { TolerateSelectedSender(); });
    AddBar(mnuMessage, "mnuBarHelpView");
    QAction* findHere = AddEntry(mnuMessage, "mnuMessageFind", tr("&Find..."));
    change(findHere, [this] { mnuMessageFind_Click(); });
    mnuMessageView = AddEntry(mnuMessage, "mnuMessageView", tr("&View", "what to do with a message"));
    change(mnuMessageView, [this] { mnuMessageView_Click(); });
    mnuMessage->setDefaultAction(mnuMessageView);

    mnuTray = AddMenu(this, "mnuTray", tr("Tray"));
    QAction* restore = AddEntry(mnuTray, "mnuTrRestore", tr("Restore"));
    AddBar(mnuTray, "mnuTrExBar");
    QAction* trayExit = AddEntry(mnuTray, "mnuTrExit", tr("Exit"));
    on(restore, [this] { tray_->mnuTrRestore_Click(); });
    on(trayExit, [this] { tray_->mnuTrExit_Click(); });
    mnuTray->setDefaultAction(restore);
}

QAction* frmMain::AddButton(QToolBar* bar, const char* key, const QString& toolTip, bool twoState) {
    auto* button = new QAction(Picture(key), toolTip, this);
    const QString name = QLatin1String(key);
    button->setObjectName(bar->objectName() + QLatin1Char('_') + name);
    button->setProperty("key", name);
    button->setToolTip(toolTip);
    button->setCheckable(twoState);
    bar->addAction(button);
    if (QWidget* widget = bar->widgetForAction(button)) {
        widget->setProperty("key", name);
        widget->setFocusPolicy(Qt::TabFocus);
    }
    buttons_.insert(name, button);
    return button;
}

void frmMain::CreateToolbars() {
    tlbMessages = new QToolBar(tr("Messages"), this);
    tlbMessages->setObjectName(QStringLiteral("tlbMessages"));
    tlbContents = new QToolBar(tr("Contents"), this);
    tlbContents->setObjectName(QStringLiteral("tlbContents"));
    for (QToolBar* bar : {tlbMessages, tlbContents}) {
        bar->setOrientation(Qt::Vertical);
        bar->setMovable(false);
        bar->setIconSize({24, 24});
    }
    AddButton(tlbMessages, "delete", tr("Delete selected message(s) permanently"), false);
    AddButton(tlbMessages, "unblock", tr("Unblock and deliver selected message(s)"), false);
    AddButton(tlbMessages, "tolerate", tr("Add sender(s) to whitelist for toleration"), false);
    AddButton(tlbMessages, "find", tr("Find text in message header"), false);
    AddButton(tlbMessages, "filter", tr("Filter the message display"), true);
    AddButton(tlbMessages, "cleansing", tr("Launch cleansing wizard"), false);
    AddButton(tlbMessages, "whitelist", tr("Maintain whitelist of tolerated senders"), false);
    AddButton(tlbContents, "collapse", tr("Collapse or Expand all parts"), true);
    AddButton(tlbContents, "attachment", tr("Reveal attachment"), true);
    connect(tlbMessages, &QToolBar::actionTriggered, this, [this](const QAction* button) {
        const QString key = button->property("key").toString();
        if (key == QLatin1String("filter") || MayChange()) {
            Guarded([this, key] { tlbMessages_ButtonClick(key); });
        }
    });
    connect(tlbContents, &QToolBar::actionTriggered, this, [this](const QAction* button) {
        contents_->tlbContents_ButtonClick(button->property("key").toString(), button->isChecked());
    });
}

void frmMain::SetMenuPictures() {
    mnuAcRefresh->setIcon(Picture("refresh"));
    mnuActionsDelete->setIcon(Picture("delete"));
    mnuActionsUnblock->setIcon(Picture("unblock"));
    mnuActionsTolerate->setIcon(Picture("tolerate"));
}

} // namespace quellbox
