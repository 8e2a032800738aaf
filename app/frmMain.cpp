#include "app/frmMain.h"

#include "app/HelpDesk.h"
#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "app/TrayPresence.h"
#include "dialogs/frmFind.h"
#include "mail/DisplayText.h"
#include "settings/Placement.h"
#include "settings/SettingsTable.h"
#include "settings/frmMessageBox.h"
#include "settings/frmPlacement.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QMenu>

#include <utility>

namespace quellbox {

frmMain::frmMain(MainPorts ports, const QString& archive) : ports_(std::move(ports)) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/quellbox.svg")));
    LoadSettings();
    if (!archive.isEmpty()) {
        state_.ArchiveDir = archive;
    }
    CreateMenus();
    CreateContents();
    CreateToolbars();
    CreatePanes();
    ConnectList();
    CreateTray();
    CreateHelp();
    ConnectJobs();
    ApplySettings();
    connect(&timer_, &RefreshTimer::Tick, this, [this] { Guarded([this] { tmrRefresh_Timer(); }); });
    connect(this, &frmMain::NothingFound, this, &QApplication::beep);
    timer_.StartFirst();
    qApp->installEventFilter(this);
}

frmMain::~frmMain() {
    contents_.reset();
    help_.reset();
    qApp->removeEventFilter(this);
}

void frmMain::LoadSettings() {
    state_.FilterCaptions = MakeFilterCaptions();
    loadErrors_ = ports_.store.TakeWarnings() + quellbox::LoadSettings(ports_.store, ports_.program.Directory, state_);
    state_.UserName = ports_.shell.UserName();
}

void frmMain::ApplySettings() {
    SetMenuPictures();
    RestoreWindowPlacement(*this, ports_.store);
    UpdateMainCaption();
    const bool filterPressed = state_.FilterDays != 0 && state_.FilterMessages != 0;
    buttons_[QStringLiteral("filter")]->setChecked(filterPressed);
    state_.ActiveFilterDays = filterPressed ? QString::number(state_.FilterDays) : QStringLiteral("0");
    buttons_[QStringLiteral("attachment")]->setChecked(state_.ContentsAttachment != 0);
    buttons_[QStringLiteral("collapse")]->setChecked(state_.ContentsCollapse != 0);
    contents_->SetToggles({state_.ContentsCollapse != 0, state_.ContentsAttachment != 0});
    mnuViewStatus->setChecked(state_.StatusBar);
    mnuViewToolbar->setChecked(state_.Toolbar);
    mnuViewContents->setChecked(state_.Contents);
    mnuViewHide->setChecked(state_.HideMinimized);
    mnuViewBulk->setChecked(state_.BulkMode);
    mnuViewFormat->setChecked(true);
    ShowBulkMode();
    tray_->FollowEntry();
    LayOut();
    DividePanes();
    ShowSortArrow();
    UpdateSelectionStatus();
    if (!loadErrors_.isEmpty()) {
        // The box comes with the first turn of the event loop, above the window.
        QTimer::singleShot(0, this, [this] { ReportError(loadErrors_.join(QStringLiteral("\n\n"))); });
    }
}

void frmMain::CreateTray() {
    tray_ = std::make_unique<TrayPresence>(
        TrayParts{*this, *mnuViewHide, *mnuTray, ports_.tray, state_, ports_.program.Title});
    connect(tray_.get(), &TrayPresence::Told, &panels_, &StatusPanels::SetInfo);
}

void frmMain::CreateHelp() {
    help_ =
        std::make_unique<HelpDesk>(HelpParts{ports_.files, ports_.store, ports_.shell, ports_.program, timer_, *this});
    connect(help_.get(), &HelpDesk::Failed, this, &frmMain::ReportError);
}

void frmMain::UpdateMainCaption() {
    setWindowTitle(QStringLiteral("Quellbox - ") + WindowTitle(state_.ArchiveDir));
}

void frmMain::SaveAllSettings() {
    SaveWindowPlacement(*this, ports_.store);
    state_.FilterMessages = buttons_[QStringLiteral("filter")]->isChecked() ? 1 : 0;
    state_.ContentsAttachment = buttons_[QStringLiteral("attachment")]->isChecked() ? 1 : 0;
    state_.ContentsCollapse = buttons_[QStringLiteral("collapse")]->isChecked() ? 1 : 0;
    state_.StatusBar = mnuViewStatus->isChecked();
    state_.Toolbar = mnuViewToolbar->isChecked();
    state_.HideMinimized = mnuViewHide->isChecked();
    state_.BulkMode = mnuViewBulk->isChecked();
    state_.Contents = mnuViewContents->isChecked();
    // While a pane is hidden its splitter tells nothing; what showing it would restore is kept instead.
    state_.Whole = ToTwips(mnuViewContents->isChecked() ? splWhole->sizes().value(0) : listPaneSize_);
    state_.Bottom = ToTwips(mnuViewFormat->isChecked() && mnuViewContents->isChecked() ? splBottom->sizes().value(0)
                                                                                       : treePaneSize_);
    SaveSettings(ports_.store, state_);
}

void frmMain::closeEvent(QCloseEvent* event) {
    closing_ = true;
    timer_.Close();
    jobs_.Close();
    contents_->Close();
    help_->Close();
    tray_->Close();
    const bool historyIsPending = UnloadFind();
    if (ports_.savesSettings && !isMinimized()) {
        Guarded([this] { SaveAllSettings(); });
    } else if (historyIsPending) {
        Guarded([this] { ports_.store.Flush(); });
    }
    // Something may have become of the settings while the program ran; nobody else would tell it.
    if (const QStringList warnings = ports_.store.TakeWarnings(); !warnings.isEmpty()) {
        ReportError(warnings.join(QStringLiteral("\n\n")));
    }
    QMainWindow::closeEvent(event);
}

void frmMain::ReportError(const QString& text) {
    if (ports_.reportError) {
        ports_.reportError(text);
        return;
    }
    const RefreshTimer::Hold rest(timer_);
    ShowMessageBox(QMessageBox::Warning, {QStringLiteral("msgError"), QStringLiteral("Quellbox"), text}, this);
}

} // namespace quellbox
