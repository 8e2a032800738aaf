#pragma once

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWindow>

namespace quellbox {

/// The program's icon in the desktop's notification area, reduced to what the main window uses of it.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the desktop has a notification area right now. It may come and go while the program runs.
    virtual bool IsAvailable() const = 0;

    /// 1 shows the icon, 0 removes it.
    virtual void SetPresence(int presence) = 0;

    /// The text that the icon shows under the mouse pointer.
    virtual void SetTip(const QString& tip) = 0;

    /// The icon's second text. Nothing shows it.
    virtual void SetText(const QString& text) = 0;

    /// The menu that belongs to the icon; null takes it away. It is not owned.
    virtual void SetMenu(QMenu* menu) = 0;

    /// Whether the desktop draws the menu by itself. It then tells with the menu's signal aboutToShow() at most that it
    /// does, and can only be kept from it by a menu that has nothing visible in it.
    virtual bool HostDrawsMenu() const = 0;

    /// Pops the menu up at the mouse pointer. Only for where the desktop does not draw it.
    virtual void PopUpMenu() = 0;

    /// Lets the icon take clicks although `owner`, a modal dialog, blocks every window that does not belong to it; null
    /// when there is no such dialog.
    virtual void BelongTo(QWindow* owner) = 0;

Q_SIGNALS:
    void LeftButton();
    void RightButton();
};

/// The icon in the real notification area.
class SystemTrayIcon : public TrayIcon {
    Q_OBJECT

public:
    explicit SystemTrayIcon(QObject* parent = nullptr);

    bool IsAvailable() const override;
    void SetPresence(int presence) override;
    void SetTip(const QString& tip) override;
    void SetText(const QString& text) override;
    void SetMenu(QMenu* menu) override;
    bool HostDrawsMenu() const override;
    void PopUpMenu() override;
    void BelongTo(QWindow* owner) override;

private:
    QSystemTrayIcon icon_;
    QPointer<QMenu> menu_;
    QString text_;
    bool hostDrawsMenu_ = false;
};

} // namespace quellbox
