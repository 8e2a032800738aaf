#pragma once

#include "app/TrayIcon.h"

#include <QAction>

namespace quellbox {

/// A notification area that comes and goes as a test says, and an icon in it that a test clicks.
class FakeTray : public TrayIcon {
public:
    bool IsAvailable() const override { return available; }
    void SetPresence(int value) override { presence = value; }
    void SetTip(const QString& value) override { tip = value; }
    void SetText(const QString& value) override { text = value; }
    void SetMenu(QMenu* value) override { menu = value; }
    bool HostDrawsMenu() const override { return hostDrawsMenu; }
    void PopUpMenu() override { ++popUps; }

    void BelongTo(QWindow* value) override { owner = value; }

    void ClickLeft() { Q_EMIT LeftButton(); }

    /// A desktop that draws the menu shows it without a word but the menu's own signal.
    void ClickRight() {
        if (hostDrawsMenu) {
            Q_EMIT menu->aboutToShow();
        } else {
            Q_EMIT RightButton();
        }
    }

    /// The names of what can be seen in the menu.
    std::string MenuEntries() const {
        QStringList names;
        for (const QAction* entry : menu->actions()) {
            if (entry->isVisible()) {
                names += entry->objectName();
            }
        }
        return names.join(QLatin1Char(' ')).toStdString();
    }

    bool available = true;
    bool hostDrawsMenu = false;
    int presence = -1; ///< -1 before the first SetPresence()
    int popUps = 0;
    QString tip;
    QString text;
    QMenu* menu = nullptr;
    QWindow* owner = nullptr;
};

} // namespace quellbox
