#pragma once

#include "archive/RefreshTimer.h"
#include "platform/FileSystem.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"
#include "settings/ProgramInfo.h"

#include <QWidget>

#include <memory>

namespace quellbox {

class frmHelp;

/// What the help works with; all of it outlives it.
struct HelpParts {
    const FileSystem& files;
    SettingsStore& store; ///< keeps where the help window stands
    const Shell& shell;
    const ProgramInfo& program;
    RefreshTimer& timer; ///< rests while the about box is open
    QWidget& window;     ///< stands behind the about box and the system's viewer
};

/// Everything about the help: its topics, in the system's viewer or in a window of the program, the maker's pages, and
/// the about box. Other windows need not know it: what is asked for in them is answered by ShowHelpOf() and
/// ConnectHelpButton().
class HelpDesk : public QObject {
    Q_OBJECT

public:
    explicit HelpDesk(const HelpParts& parts);
    ~HelpDesk() override;

    /// Shows the topic of the window that `widget` is in, or of the next one that it stands above and that has one.
    void ShowHelpOf(const QWidget* widget);

    /// F1 was pressed in this widget. False when it stands in the help window itself and the key is for that.
    bool HelpKeyDown(const QWidget* widget);

    /// Lets the Help button of a window, if it has one, show the topic of the window.
    void ConnectHelpButton(const QWidget* form);

    /// Lets the help window be used beside a modal dialog. To be called when one may have come or gone.
    void KeepUsableBesideDialogs();

    void Close();

    /// The entries of the Help menu: index 0 is "Getting Started", 1 "Suggestions".
    void mnuHelpStarting_Click(qint16 index);
    void mnuHelpCheck_Click();
    void mnuHelpFeedback_Click();
    void mnuHelpAbout_Click();

Q_SIGNALS:
    /// Help was asked for that cannot be shown; the text is for the user.
    void Failed(const QString& text);

private:
    template <class Handler>
    void Guarded(Handler handler);
    void btnHelp_Click();
    void ShowInHelpViewer(const QString& topic, HelpCommand command, qint16 contextId);
    frmHelp& HelpWindow();

    HelpParts parts_;
    std::unique_ptr<frmHelp> help_; // made when help is first asked for
};

} // namespace quellbox
