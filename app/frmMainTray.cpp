#include "app/TrayIcon.h"
#include "app/frmMain.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>

#include <algorithm>

namespace quellbox {

namespace {

// How long a hidden window may stay out of reach after the notification area has gone.
constexpr int trayWatchMs = 2000;

// The help window is none, since help may be read beside everything.
bool IsForm(const QWidget* widget) {
    return widget->isWindow() &&
           (qobject_cast<const QDialog*>(widget) != nullptr || (widget->objectName().startsWith(QLatin1String("frm")) &&
                                                                widget->objectName() != QLatin1String("frmHelp")));
}

} // namespace

void frmMain::ConnectTray() {
    tmrTray = new QTimer(this);
    tmrTray->setObjectName(QStringLiteral("tmrTray"));
    tmrTray->setInterval(trayWatchMs);
    connect(tmrTray, &QTimer::timeout, this, [this] { Guarded([this] { tmrTray_Timer(); }); });
    if (ports_.tray == nullptr) {
        return;
    }
    ports_.tray->SetMenu(mnuTray);
    connect(ports_.tray, &TrayIcon::LeftButton, this, [this] { Guarded([this] { RestoreFromTray(); }); });
    connect(ports_.tray, &TrayIcon::RightButton, this, [this] { Guarded([this] { traSystemTray_RightButton(); }); });
    connect(mnuTray, &QMenu::aboutToShow, this, [this] {
        if (ports_.tray->HostDrawsMenu()) {
            Guarded([this] { traSystemTray_RightButton(); });
        }
    });
}

bool frmMain::TrayExists() const {
    return ports_.tray != nullptr && ports_.tray->IsAvailable();
}

void frmMain::mnuViewHide_Click() {
    ShowTrayIcon(mnuViewHide->isChecked() ? 1 : 0, ports_.program.Title);
    ExplainHiding();
    if (mnuViewHide->isChecked() && !TrayExists()) {
        panels_.SetInfo(mnuViewHide->toolTip());
    }
}

// The entry is a setting and can be changed anywhere, also for another desktop; its tip says when it cannot work here.
void frmMain::ExplainHiding() {
    mnuViewHide->setToolTip(TrayExists() ? QString()
                                         : tr("This desktop has no notification area, so the window is only "
                                              "minimized"));
}

void frmMain::ShowTrayIcon(int show, const QString& tip) {
    if (ports_.tray == nullptr) {
        return;
    }
    ports_.tray->SetPresence(show);
    if (show == 1) {
        ports_.tray->SetTip(tip);
    } else {
        ports_.tray->SetText(tip);
    }
}

// Without a notification area nothing could bring the window back.
void frmMain::HideWhenMinimized() {
    if (isMinimized() && isVisible() && mnuViewHide->isChecked() && !closing_ && TrayExists()) {
        hide();
        tmrTray->start();
    }
}

void frmMain::tmrTray_Timer() {
    if (isVisible() || closing_) {
        tmrTray->stop();
    } else if (!TrayExists()) {
        RestoreFromTray();
    }
}

void frmMain::RememberWindowState() {
    if (!isMinimized()) {
        state_.SavedWindowState = isMaximized() ? 2 : 0;
    }
}

void frmMain::SetSavedWindowState() {
    const Qt::WindowStates others = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
    setWindowState(others | (state_.SavedWindowState == 2 ? Qt::WindowMaximized : Qt::WindowNoState));
}

bool frmMain::OtherFormIsLoaded() const {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [this](const QWidget* window) {
        return window != this && window->isVisible() && IsForm(window);
    });
}

// Where the desktop draws the menu, an empty one is the only way to offer none.
void frmMain::OfferTrayMenu() {
    const bool offered = ports_.tray == nullptr || !ports_.tray->HostDrawsMenu() || !OtherFormIsLoaded();
    for (QAction* entry : mnuTray->actions()) {
        entry->setVisible(offered);
    }
}

void frmMain::traSystemTray_RightButton() {
    if (OtherFormIsLoaded()) {
        SetSavedWindowState();
    } else if (!ports_.tray->HostDrawsMenu()) {
        ports_.tray->PopUpMenu();
    }
}

void frmMain::RestoreFromTray() {
    SetSavedWindowState();
    show();
    tmrTray->stop();
    QCoreApplication::processEvents();
    if (closing_) {
        return;
    }
    QWidget* active = QApplication::activeModalWidget();
    if (active == nullptr) {
        active = QApplication::activeWindow() != nullptr ? QApplication::activeWindow() : this;
    }
    // Many desktops minimize dialogs together with their window, but bring back only the window.
    for (QWidget* form = active; form != nullptr; form = form->parentWidget()) {
        form = form->window();
        form->setWindowState(form->windowState() & ~Qt::WindowMinimized);
    }
    active->raise();
    active->activateWindow();
}

void frmMain::mnuTrExit_Click() {
    SetSavedWindowState();
    show();
    close();
}

} // namespace quellbox
