#include "app/TrayIcon.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>

namespace quellbox {

SystemTrayIcon::SystemTrayIcon(QObject* parent)
    : TrayIcon(parent), icon_(QIcon(QStringLiteral(":/icons/quellbox.svg"))) {
    setObjectName(QStringLiteral("traSystemTray"));
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT LeftButton();
        } else if (reason == QSystemTrayIcon::Context) {
            Q_EMIT RightButton();
        }
    });
}

bool SystemTrayIcon::IsAvailable() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void SystemTrayIcon::SetPresence(int presence) {
    icon_.setVisible(presence == 1);
}

void SystemTrayIcon::SetTip(const QString& tip) {
    icon_.setToolTip(tip);
}

void SystemTrayIcon::SetText(const QString& text) {
    text_ = text;
}

// A desktop that draws menus by itself gives the menu a platform menu. Elsewhere the menu is not handed over: it would
// come up even where a right click is to do something else.
void SystemTrayIcon::SetMenu(QMenu* menu) {
    menu_ = menu;
    icon_.setContextMenu(menu);
    hostDrawsMenu_ = menu != nullptr && menu->platformMenu() != nullptr;
    if (!hostDrawsMenu_) {
        icon_.setContextMenu(nullptr);
    }
}

bool SystemTrayIcon::HostDrawsMenu() const {
    return hostDrawsMenu_;
}

// Without the activation a click elsewhere would not close the menu everywhere.
void SystemTrayIcon::PopUpMenu() {
    if (menu_ == nullptr) {
        return;
    }
    menu_->popup(QCursor::pos());
    if (QWindow* window = menu_->windowHandle()) {
        window->requestActivate();
    }
}

// Some notification areas embed a small window of this program.
void SystemTrayIcon::BelongTo(QWindow* owner) {
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QSystemTrayIconSys") && widget->windowHandle() != nullptr) {
            widget->windowHandle()->setTransientParent(owner);
        }
    }
}

} // namespace quellbox
