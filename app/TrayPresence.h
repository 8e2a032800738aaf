#pragma once

#include "app/TrayIcon.h"
#include "settings/AppState.h"

#include <QAction>
#include <QTimer>

namespace quellbox {

/// What the presence in the notification area works with; all of it outlives it.
struct TrayParts {
    QWidget& window;
    QAction& mnuViewHide; ///< checked, the window hides when it is minimized
    QMenu& mnuTray;
    TrayIcon* icon;  ///< null is a desktop without a notification area
    AppState& state; ///< keeps `SavedWindowState`
    QString title;   ///< of the program
};

/// Hides the window in the notification area and brings it back. It sees for itself when the window is minimized, and
/// hides it only where an icon can bring it back.
class TrayPresence : public QObject {
    Q_OBJECT

public:
    explicit TrayPresence(const TrayParts& parts);
    ~TrayPresence() override;

    /// The icon is there while mnuViewHide is checked.
    void FollowEntry();

    /// Says in the tool tip of mnuViewHide whether it can work on this desktop right now.
    void ExplainHiding();

    /// Tells the number of messages in the tip of the icon.
    void ShowCount(const QString& count);

    /// A window of the program has come or gone: while there is one beside the main window, no menu is offered.
    void OfferMenu();

    /// Lets the icon take clicks beside a modal dialog. To be called when one may have come or gone.
    void KeepUsableBesideDialogs();

    /// Brings the window back. What it was active in gets the focus when the window has been shown.
    void RestoreFromTray();
    void mnuTrRestore_Click();

    /// The window is closed: the icon goes, and nothing is hidden or brought back any more.
    void Close();

    void mnuViewHide_Click();
    void mnuTrExit_Click();

Q_SIGNALS:
    /// Something to say about what the user has just chosen.
    void Told(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ConnectIcon();
    bool Exists() const;
    void ShowTrayIcon(int show, const QString& tip);
    void HideWhenMinimized();
    void RememberWindowState();
    void SetSavedWindowState();
    void BringToFront();
    bool OtherFormIsLoaded() const;
    void traSystemTray_RightButton();
    void tmrTray_Timer();

    TrayParts parts_;
    QTimer* tmrTray; // runs while the window is hidden
    bool isClosed_ = false;
};

} // namespace quellbox
