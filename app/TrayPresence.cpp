#include "app/TrayPresence.h"

#include "app/ModalWindow.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>

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

TrayPresence::TrayPresence(const TrayParts& parts) : QObject(&parts.window), parts_(parts), tmrTray(new QTimer(this)) {
    tmrTray->setObjectName(QStringLiteral("tmrTray"));
    tmrTray->setInterval(trayWatchMs);
    connect(tmrTray, &QTimer::timeout, this, &TrayPresence::tmrTray_Timer);
    parts_.window.installEventFilter(this);
    if (parts_.icon != nullptr) {
        ConnectIcon();
    }
}

TrayPresence::~TrayPresence() {
    if (parts_.icon != nullptr) {
        parts_.icon->SetMenu(nullptr);
    }
}

void TrayPresence::ConnectIcon() {
    parts_.icon->SetMenu(&parts_.mnuTray);
    connect(parts_.icon, &TrayIcon::LeftButton, this, &TrayPresence::RestoreFromTray);
    connect(parts_.icon, &TrayIcon::RightButton, this, &TrayPresence::traSystemTray_RightButton);
    connect(&parts_.mnuTray, &QMenu::aboutToShow, this, [this] {
        if (parts_.icon->HostDrawsMenu()) {
            traSystemTray_RightButton();
        }
    });
}

bool TrayPresence::Exists() const {
    return parts_.icon != nullptr && parts_.icon->IsAvailable();
}

void TrayPresence::FollowEntry() {
    ShowTrayIcon(parts_.mnuViewHide.isChecked() ? 1 : 0, parts_.title);
}

void TrayPresence::mnuViewHide_Click() {
    FollowEntry();
    ExplainHiding();
    if (parts_.mnuViewHide.isChecked() && !Exists()) {
        Q_EMIT Told(parts_.mnuViewHide.toolTip());
    }
}

// The entry is a setting and can be changed anywhere, also for another desktop; its tip says when it cannot work here.
void TrayPresence::ExplainHiding() {
    parts_.mnuViewHide.setToolTip(Exists() ? QString()
                                           : tr("This desktop has no notification area, so the window is only "
                                                "minimized"));
}

void TrayPresence::ShowTrayIcon(int show, const QString& tip) {
    if (parts_.icon == nullptr) {
        return;
    }
    parts_.icon->SetPresence(show);
    if (show == 1) {
        parts_.icon->SetTip(tip);
    } else {
        parts_.icon->SetText(tip);
    }
}

void TrayPresence::ShowCount(const QString& count) {
    if (parts_.icon != nullptr) {
        parts_.icon->SetTip(parts_.title + QStringLiteral(": ") + count);
    }
}

bool TrayPresence::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isStateChange = type == QEvent::WindowStateChange;
    if (type == QEvent::Resize || isStateChange) {
        RememberWindowState();
    }
    // A window cannot be hidden in the midst of what shows or minimizes it.
    if (isStateChange || (type == QEvent::Show && !event->spontaneous())) {
        QMetaObject::invokeMethod(this, &TrayPresence::HideWhenMinimized, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

// Without a notification area nothing could bring the window back.
void TrayPresence::HideWhenMinimized() {
    QWidget& window = parts_.window;
    if (window.isMinimized() && window.isVisible() && parts_.mnuViewHide.isChecked() && !isClosed_ && Exists()) {
        window.hide();
        tmrTray->start();
    }
}

void TrayPresence::tmrTray_Timer() {
    if (parts_.window.isVisible() || isClosed_) {
        tmrTray->stop();
    } else if (!Exists()) {
        RestoreFromTray();
    }
}

void TrayPresence::RememberWindowState() {
    if (!parts_.window.isMinimized()) {
        parts_.state.SavedWindowState = parts_.window.isMaximized() ? 2 : 0;
    }
}

void TrayPresence::SetSavedWindowState() {
    const Qt::WindowStates others = parts_.window.windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
    parts_.window.setWindowState(others |
                                 (parts_.state.SavedWindowState == 2 ? Qt::WindowMaximized : Qt::WindowNoState));
}

bool TrayPresence::OtherFormIsLoaded() const {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [this](const QWidget* window) {
        return window != &parts_.window && window->isVisible() && IsForm(window);
    });
}

// Where the desktop draws the menu, an empty one is the only way to offer none.
void TrayPresence::OfferMenu() {
    const bool offered = parts_.icon == nullptr || !parts_.icon->HostDrawsMenu() || !OtherFormIsLoaded();
    for (QAction* entry : parts_.mnuTray.actions()) {
        entry->setVisible(offered);
    }
}

void TrayPresence::KeepUsableBesideDialogs() {
    if (parts_.icon != nullptr) {
        parts_.icon->BelongTo(ModalWindow());
    }
}

void TrayPresence::traSystemTray_RightButton() {
    if (OtherFormIsLoaded()) {
        SetSavedWindowState();
    } else if (!parts_.icon->HostDrawsMenu()) {
        parts_.icon->PopUpMenu();
    }
}

void TrayPresence::mnuTrRestore_Click() {
    RestoreFromTray();
}

void TrayPresence::RestoreFromTray() {
    SetSavedWindowState();
    parts_.window.show();
    tmrTray->stop();
    // Which of the windows is active is known when what showing has brought about is over.
    QMetaObject::invokeMethod(this, &TrayPresence::BringToFront, Qt::QueuedConnection);
}

void TrayPresence::BringToFront() {
    if (isClosed_) {
        return;
    }
    QWidget* active = QApplication::activeModalWidget();
    if (active == nullptr) {
        active = QApplication::activeWindow() != nullptr ? QApplication::activeWindow() : &parts_.window;
    }
    // Many desktops minimize dialogs together with their window, but bring back only the window.
    for (QWidget* form = active; form != nullptr; form = form->parentWidget()) {
        form = form->window();
        form->setWindowState(form->windowState() & ~Qt::WindowMinimized);
    }
    active->raise();
    active->activateWindow();
}

void TrayPresence::mnuTrExit_Click() {
    SetSavedWindowState();
    parts_.window.show();
    parts_.window.close();
}

void TrayPresence::Close() {
    isClosed_ = true;
    ShowTrayIcon(0, parts_.title);
}

} // namespace quellbox
