#include "app/frmMain.h"

#include "app/ActionDesk.h"
#include "app/BusyDisplay.h"
#include "app/ContentsPane.h"
#include "app/DeliveryDesk.h"
#include "app/ExpiryDesk.h"
#include "app/ExportDesk.h"
#include "app/FindDesk.h"
#include "app/HelpDesk.h"
#include "app/HistoryDesk.h"
#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/OverviewDesk.h"
#include "app/PanesLayout.h"
#include "app/QuickDesk.h"
#include "app/RefreshDesk.h"
#include "app/SetupDesk.h"
#include "app/StatusBarView.h"
#include "app/ToolsDesk.h"
#include "app/TrayPresence.h"
#include "mail/DisplayText.h"
#include "settings/SettingsTable.h"
#include "settings/frmMessageBox.h"
#include "settings/frmPlacement.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QMenuBar>
#include <QSysInfo>
#include <QTimer>

#include <utility>

namespace quellbox {

frmMain::frmMain(MainPorts ports, const QString& archive)
    : ports_(std::move(ports)), loadErrors_(LoadSettings(archive)),
      errors_([this](const QString& text) { ReportError(text); }), journal_(ports_.pool, ports_.clock, HistoryPlace()),
      jobs_({ports_.files, ports_.store, ports_.clock, ports_.pool}, state_, model_),
      menus_(std::make_unique<MainMenus>(*this)), lvwMessages(new MessageListView(model_, this)),
      stbBottom(new StatusBarView(panels_, this)),
      contents_(std::make_unique<ContentsPane>(
          ContentsPorts{ports_.files, ports_.store, ports_.pool, state_, ports_.patience}, this)),
      parts_{ports_, state_,  model_, panels_, failures_,    jobs_,      journal_,
             timer_, errors_, *this,  *menus_, *lvwMessages, *contents_, *stbBottom} {
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/quellbox.svg")));
    CreateDesks();
    ConnectParts();
    ConnectFileAndEdit();
    ConnectView();
    ConnectActionsAndTools();
    ConnectHelpAndTray();
    ConnectToolbars();
    ApplySettings();
    timer_.StartFirst();
    qApp->installEventFilter(this);
}

frmMain::~frmMain() {
    qApp->removeEventFilter(this); // the windows of the parts go when some parts have gone
}

/// Returns what the user is to know about settings that cannot be used.
QStringList frmMain::LoadSettings(const QString& archive) {
    state_.FilterCaptions = MakeFilterCaptions();
    QStringList errors =
        ports_.store.TakeWarnings() + quellbox::LoadSettings(ports_.store, ports_.program.Directory, state_);
    state_.UserName = ports_.shell.UserName();
    if (!archive.isEmpty()) {
        state_.ArchiveDir = archive;
    }
    return errors;
}

Journal::Place frmMain::HistoryPlace() const {
    return {ports_.historyFile, state_.UserName, QSysInfo::machineHostName(), state_.HistoryDays > 0};
}

// Each is made with those before it that it builds on.
void frmMain::CreateDesks() {
    panes_ = std::make_unique<PanesLayout>(parts_);
    busy_ = std::make_unique<BusyDisplay>(parts_);
    list_ = std::make_unique<ListDesk>(parts_, *busy_);
    delivery_ = std::make_unique<DeliveryDesk>(parts_);
    refresh_ = std::make_unique<RefreshDesk>(parts_, *busy_, *list_, *delivery_);
    expiry_ = std::make_unique<ExpiryDesk>(parts_, *refresh_);
    actions_ = std::make_unique<ActionDesk>(parts_, *list_, *delivery_);
    find_ = std::make_unique<FindDesk>(parts_, *list_);
    quick_ = std::make_unique<QuickDesk>(parts_, *list_, *panes_);
    export_ = std::make_unique<ExportDesk>(parts_);
    history_ = std::make_unique<HistoryDesk>(parts_, *list_, *refresh_, *export_);
    overview_ = std::make_unique<OverviewDesk>(parts_, *list_, *actions_, *export_);
    setup_ = std::make_unique<SetupDesk>(parts_, *list_, *refresh_, [this] { actions_->MaintainWhitelist(); });
    tools_ = std::make_unique<ToolsDesk>(parts_, *refresh_, *setup_, *delivery_);
    tray_ = std::make_unique<TrayPresence>(TrayParts{*this, menus_->Entry("mnuViewHide"), menus_->Menu("mnuTray"),
                                                     ports_.tray, state_, ports_.program.Title});
    help_ =
        std::make_unique<HelpDesk>(HelpParts{ports_.files, ports_.store, ports_.shell, ports_.program, timer_, *this});
}

void frmMain::ConnectParts() {
    connect(list_.get(), &ListDesk::Counted, tray_.get(), &TrayPresence::ShowCount);
    connect(refresh_.get(), &RefreshDesk::Refreshed, this, &frmMain::Refreshed);
    connect(refresh_.get(), &RefreshDesk::DailyRefreshed, delivery_.get(), &DeliveryDesk::BringBackLeftBehind);
    connect(find_.get(), &FindDesk::NothingFound, this, &frmMain::NothingFound);
    connect(this, &frmMain::NothingFound, this, &QApplication::beep);
    connect(setup_.get(), &SetupDesk::ArchiveChosen, this, &frmMain::UpdateMainCaption);
    connect(setup_.get(), &SetupDesk::ArchiveChosen, history_.get(), &HistoryDesk::LookForUndo);
    connect(setup_.get(), &SetupDesk::PasswordEntered, delivery_.get(), &DeliveryDesk::ForgetPassword);
    connect(tray_.get(), &TrayPresence::Told, &panels_, &StatusPanels::SetInfo);
    connect(help_.get(), &HelpDesk::Failed, this, &frmMain::ReportError);
    connect(&failures_, &FailureList::Changed, this, [this] { stbBottom->ShowFailures(failures_.Count()); });
    connect(stbBottom, &StatusBarView::FailuresClick, this,
            errors_.Guarded(actions_.get(), &ActionDesk::btnFailures_Click));
    connect(stbBottom, &StatusBarView::PanelClick, this,
            errors_.Guarded(setup_.get(), &SetupDesk::stbBottom_PanelClick));
}

/// Connects an entry of a menu with what it does. What changes the list, its selection or the settings waits for no
/// job, and none may run.
template <class Handler>
void frmMain::On(const char* entry, Handler handler) {
    const bool needsIdleness = menus_->NeedsIdleness(entry);
    QAction& action = menus_->Entry(entry);
    connect(&action, &QAction::triggered, this, [this, needsIdleness, handler, &action] {
        if (!needsIdleness || jobs_.MakeWay()) {
            errors_.Guard(handler);
        } else if (action.isCheckable()) {
            action.toggle(); // back
        }
    });
}

void frmMain::ConnectFileAndEdit() {
    On("mnuOpenFolderSelect0", [this] { setup_->mnuOpenFolderSelect_Click(0); });
    On("mnuOpenFolderSelect1", [this] { setup_->mnuOpenFolderSelect_Click(1); });
    On("mnuFileExport", [this] { export_->mnuFileExport_Click(); });
    On("mnuFiExit", [this] { close(); });
    On("mnuEditUndo", [this] { history_->mnuEditUndo_Click(); });
    On("mnuEditSelectNone", [this] { list_->mnuEditSelectNone_Click(); });
    On("mnuEditSelectAll", [this] { list_->mnuEditSelectAll_Click(); });
    On("mnuEditMarkRead", [this] { list_->mnuEditMarkRead_Click(); });
    On("mnuEditMarkUnread", [this] { list_->mnuEditMarkUnread_Click(); });
    On("mnuEditMarkAllRead", [this] { list_->mnuEditMarkAllRead_Click(); });
    On("mnuEditFind", [this] { find_->mnuEditFind_Click(); });
    On("mnuEditFindNext", [this] { find_->mnuEditFindNext_Click(); });
    On("mnuEditFindAll", [this] { find_->mnuEditFindAll_Click(); });
    On("mnuEditQuick", [this] { quick_->mnuEditQuick_Click(); });
    connect(&menus_->Menu("mnuEdit"), &QMenu::aboutToShow, list_.get(), &ListDesk::mnuEdit_Click);
}

void frmMain::ConnectView() {
    On("mnuViewBulk", [this] { refresh_->mnuViewBulk_Click(); });
    On("mnuViewHide", [this] { tray_->mnuViewHide_Click(); });
    On("mnuViewToolbar", [this] { panes_->mnuViewToolbar_Click(); });
    On("mnuViewStatus", [this] { panes_->mnuViewStatus_Click(); });
    On("mnuViewContents", [this] {
        panes_->mnuViewContents_Click();
        if (menus_->Entry("mnuViewContents").isChecked()) {
            list_->ShowSelected();
        }
    });
    On("mnuViewFormat", [this] { panes_->mnuViewFormat_Click(); });
    On("mnuViewReadable", [this] { mnuViewReadable_Click(); });
    connect(&menus_->Menu("mnuView"), &QMenu::aboutToShow, panes_.get(), &PanesLayout::mnuView_Click);
    connect(&menus_->Menu("mnuView"), &QMenu::aboutToShow, tray_.get(), &TrayPresence::ExplainHiding);
}

void frmMain::mnuViewReadable_Click() {
    state_.ReadableText = menus_->Entry("mnuViewReadable").isChecked();
    contents_->ShowAnew();
}

void frmMain::ConnectActionsAndTools() {
    On("mnuAcRefresh", [this] { refresh_->mnuAcRefresh_Click(); });
    On("mnuActionsDelete", [this] { actions_->mnuActionsDelete_Click(); });
    On("mnuActionsUnblock", [this] { actions_->mnuActionsUnblock_Click(); });
    On("mnuActionsTolerate", [this] { actions_->TolerateSelectedSender(); });
    connect(&menus_->Menu("mnuActions"), &QMenu::aboutToShow, list_.get(), &ListDesk::mnuActions_Click);
    On("mnuToolsTest", [this] { tools_->SendPickupTest(); });
    On("mnuToolsCleansing", [this] { tools_->mnuToolsCleansing_Click(); });
    On("mnuToolsHistory", [this] { history_->mnuToolsHistory_Click(); });
    On("mnuToolsOverview", [this] { overview_->mnuToolsOverview_Click(); });
    On("mnuToolsOptions", [this] { setup_->mnuToolsOptions_Click(); });
    On("mnuMessageDelete", [this] { actions_->mnuMessageDelete_Click(); });
    On("mnuMessageUnblock", [this] { actions_->mnuMessageUnblock_Click(); });
    On("mnuMessageTolerate", [this] { actions_->TolerateSelectedSender(); });
    On("mnuMessageFind", [this] { find_->mnuMessageFind_Click(); });
    On("mnuMessageView", [this] { list_->mnuMessageView_Click(); });
}

void frmMain::ConnectHelpAndTray() {
    On("mnuHelpStarting0", [this] { help_->mnuHelpStarting_Click(0); });
    On("mnuHelpStarting1", [this] { help_->mnuHelpStarting_Click(1); });
    On("mnuHelpCheck", [this] { help_->mnuHelpCheck_Click(); });
    On("mnuHelpFeedback", [this] { help_->mnuHelpFeedback_Click(); });
    On("mnuHelpAbout", [this] { help_->mnuHelpAbout_Click(); });
    On("mnuTrRestore", [this] { tray_->mnuTrRestore_Click(); });
    On("mnuTrExit", [this] { tray_->mnuTrExit_Click(); });
}

void frmMain::ConnectToolbars() {
    connect(&menus_->Messages(), &QToolBar::actionTriggered, this, [this](const QAction* button) {
        const QString key = button->property("key").toString();
        if (key == QLatin1String("filter") || jobs_.MakeWay()) {
            errors_.Guard([this, key] { tlbMessages_ButtonClick(key); });
        }
    });
    connect(&menus_->Contents(), &QToolBar::actionTriggered, this, [this](const QAction* button) {
        contents_->tlbContents_ButtonClick(button->property("key").toString(), button->isChecked());
    });
}

void frmMain::tlbMessages_ButtonClick(const QString& key) {
    if (key == QLatin1String("unblock")) {
        actions_->ProcessSelectedMessages(Action::unblock);
    } else if (key == QLatin1String("delete")) {
        actions_->ProcessSelectedMessages(Action::remove);
    } else if (key == QLatin1String("tolerate")) {
        actions_->TolerateSelectedSender();
    } else if (key == QLatin1String("find")) {
        find_->btnFind_Click();
    } else if (key == QLatin1String("filter")) {
        setup_->ToggleFilter();
    } else if (key == QLatin1String("cleansing")) {
        tools_->mnuToolsCleansing_Click();
    } else if (key == QLatin1String("whitelist")) {
        actions_->MaintainWhitelist();
    }
}

void frmMain::ApplySettings() {
    RestoreWindowPlacement(*this, ports_.store);
    UpdateMainCaption();
    const bool filterPressed = state_.FilterDays != 0 && state_.FilterMessages != 0;
    menus_->Button("filter").setChecked(filterPressed);
    state_.ActiveFilterDays = filterPressed ? QString::number(state_.FilterDays) : QStringLiteral("0");
    menus_->Button("attachment").setChecked(state_.ContentsAttachment != 0);
    menus_->Button("collapse").setChecked(state_.ContentsCollapse != 0);
    contents_->SetToggles({state_.ContentsCollapse != 0, state_.ContentsAttachment != 0});
    menus_->Entry("mnuViewHide").setChecked(state_.HideMinimized);
    menus_->Entry("mnuViewBulk").setChecked(state_.BulkMode);
    menus_->Entry("mnuViewReadable").setChecked(state_.ReadableText);
    refresh_->ShowBulkMode();
    tray_->FollowEntry();
    panes_->Restore(state_);
    list_->UpdateSelectionStatus();
    lvwMessages->setFocus();
    if (!loadErrors_.isEmpty()) {
        // The box comes with the first turn of the event loop, above the window.
        QTimer::singleShot(0, this, [this] { ReportError(loadErrors_.join(QStringLiteral("\n\n"))); });
    }
}

void frmMain::SaveAllSettings() {
    SaveWindowPlacement(*this, ports_.store);
    state_.FilterMessages = menus_->Button("filter").isChecked() ? 1 : 0;
    state_.ContentsAttachment = menus_->Button("attachment").isChecked() ? 1 : 0;
    state_.ContentsCollapse = menus_->Button("collapse").isChecked() ? 1 : 0;
    state_.HideMinimized = menus_->Entry("mnuViewHide").isChecked();
    state_.BulkMode = menus_->Entry("mnuViewBulk").isChecked();
    panes_->Save(state_);
    SaveSettings(ports_.store, state_);
}

void frmMain::RefreshArchive(bool markNew) {
    refresh_->RefreshArchive(markNew);
}

void frmMain::mnuAcRefresh_Click() {
    refresh_->mnuAcRefresh_Click();
}

RefreshOutcome frmMain::Outcome() const {
    return refresh_->Outcome();
}

qint16 frmMain::UpdateSelectionStatus() {
    return list_->UpdateSelectionStatus();
}

void frmMain::ClearSelection() {
    list_->ClearSelection();
}

void frmMain::SetBusy(bool busy, int maximum) {
    busy_->SetBusy(busy, maximum);
}

bool frmMain::IsLoading() const {
    return contents_->IsLoading();
}

void frmMain::UpdateMainCaption() {
    setWindowTitle(QStringLiteral("Quellbox - ") + WindowTitle(state_.ArchiveDir));
    HintAtDirectories();
}

// Who starts the program for the first time sees the files of its own folder.
void frmMain::HintAtDirectories() {
    const bool isSetUp = state_.ArchiveDir != Folder(ports_.program.Directory);
    lvwMessages->ShowHint(isSetUp
                              ? QString()
                              : tr("These are the files of the program's own folder. Choose the directory with the "
                                   "blocked messages by File > Folder > Archive..., and the one from which the mail "
                                   "server delivers by File > Folder > Pickup..."));
}

void frmMain::ReportError(const QString& text) {
    if (ports_.reportError) {
        ports_.reportError(text);
        return;
    }
    const RefreshTimer::Hold rest(timer_);
    ShowMessageBox(QMessageBox::Warning, {QStringLiteral("msgError"), QStringLiteral("Quellbox"), text}, this);
}

void frmMain::closeEvent(QCloseEvent* event) {
    timer_.Close();
    tools_->Close();
    jobs_.Close();
    expiry_->Close();
    delivery_->Close();
    history_->Close();
    overview_->Close();
    journal_.Hurry();
    contents_->Close();
    help_->Close();
    tray_->Close();
    const bool historyIsPending = find_->UnloadFind();
    if (ports_.savesSettings && !isMinimized()) {
        errors_.Guard([this] { SaveAllSettings(); });
    } else if (historyIsPending) {
        errors_.Guard([this] { ports_.store.Flush(); });
    }
    // Something may have become of the settings while the program ran; nobody else would tell it.
    if (const QStringList warnings = ports_.store.TakeWarnings(); !warnings.isEmpty()) {
        ReportError(warnings.join(QStringLiteral("\n\n")));
    }
    QMainWindow::closeEvent(event);
}

// Before the window is shown its panes have no sizes that could be divided.
void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!event->spontaneous()) {
        panes_->LayOut();
        panes_->DividePanes();
    }
    jobs_.TellBusy(); // what began while the window was hidden
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (!isMinimized()) {
        panes_->LayOut();
    }
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        lvwMessages->FitColumns();
    }
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isKey = type == QEvent::KeyPress || type == QEvent::ShortcutOverride;
    const bool isShowing = type == QEvent::Show || type == QEvent::Hide;
    auto* widget = isKey || isShowing ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget != nullptr && isShowing && widget->isWindow() && widget != this) {
        FormShownOrHidden(widget);
    }
    if (widget != nullptr && isKey && WindowKeyDown(*widget, event)) {
        return true;
    }
    return busy_->HoldsBack(watched, *event) || QMainWindow::eventFilter(watched, event);
}

// What the other windows of the program need of this one, so that they need not know it.
void frmMain::FormShownOrHidden(const QWidget* form) {
    if (form->isVisible()) {
        help_->ConnectHelpButton(form);
    }
    tray_->OfferMenu();
    // What is modal is known only when the window has come or gone.
    QTimer::singleShot(0, this, [this] {
        help_->KeepUsableBesideDialogs();
        tray_->KeepUsableBesideDialogs();
        busy_->FollowDialogs();
    });
}

bool frmMain::WindowKeyDown(QWidget& widget, QEvent* event) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (event->type() == QEvent::KeyPress && key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier) {
        return help_->HelpKeyDown(&widget);
    }
    if (widget.window() != this) {
        return false;
    }
    // A text box would take Ctrl+A or Ctrl+C for itself; in this window the menus own their shortcuts. A key that is a
    // shortcut shows itself here only. Where a text is typed, Del and the like are for the text.
    if (event->type() == QEvent::ShortcutOverride) {
        timer_.PutOff();
        if (quick_->IsField(widget)) {
            return false;
        }
        event->ignore();
        return true;
    }
    // An Escape that leaves the menus is meant for nothing else.
    if (qobject_cast<const QMenuBar*>(&widget) != nullptr) {
        return false;
    }
    // What the focused control leaves alone passes here again on its way up.
    if (widget.hasFocus() || (&widget == this && focusWidget() == nullptr)) {
        FormKeyDown(*key);
    }
    return false;
}

// The window sees keys before its controls do. The split bars never get the focus, so no key can move them.
void frmMain::FormKeyDown(const QKeyEvent& key) {
    const bool isEscape = key.key() == Qt::Key_Escape;
    if (isEscape && key.isAutoRepeat()) {
        return;
    }
    timer_.PutOff();
    if (isEscape && jobs_.IsAtWork() && !jobs_.GivesWay()) {
        jobs_.Stop();
    } else if (isEscape && quick_->ClosesNow()) {
        jobs_.MakeWay();
        errors_.Guard([this] { quick_->Close(); });
    } else if (isEscape) {
        jobs_.MakeWay();
        state_.FindText.clear();
        errors_.Guard([this] { list_->ClearSelection(); });
        contents_->CloseViewer();
    }
}

} // namespace quellbox
