#pragma once

#include "app/WindowJobs.h"
#include "app/WindowParts.h"
#include "archive/RefreshTimer.h"
#include "history/Journal.h"
#include "messages/FailureList.h"

#include <memory>

namespace quellbox {

class ActionDesk;
class BusyDisplay;
class DeliveryDesk;
class ExpiryDesk;
class ExportDesk;
class FindDesk;
class HelpDesk;
class HistoryDesk;
class ListDesk;
class OverviewDesk;
class PanesLayout;
class QuickDesk;
class RefreshDesk;
class SetupDesk;
class ToolsDesk;
class TrayPresence;

/// The main window. It owns the program's state and the parts that act on it, and connects the commands with them.
class frmMain : public QMainWindow {
    Q_OBJECT

public:
    /// `archive`, when it is not empty, is the archive of this session: it takes the place of the stored one without
    /// being stored. It ends with a separator.
    explicit frmMain(MainPorts ports, const QString& archive = QString());
    ~frmMain() override;

    /// As RefreshDesk has them.
    void RefreshArchive(bool markNew);
    void mnuAcRefresh_Click();
    RefreshOutcome Outcome() const;

    /// As ListDesk has them.
    qint16 UpdateSelectionStatus();
    void ClearSelection();

    /// As BusyDisplay has it.
    void SetBusy(bool busy, int maximum);

    /// Writes every setting back to the store.
    void SaveAllSettings();

    AppState& State() { return state_; }
    MessageListModel& Messages() { return model_; }
    StatusPanels& Panels() { return panels_; }

    /// True while something of a message that was clicked is still to be read.
    bool IsLoading() const;

    /// The long jobs; whoever waits for their end finds the signals there.
    WindowJobs& Jobs() { return jobs_; }

Q_SIGNALS:
    /// A refresh has ended, and is shown. One that has given way to the user is not told.
    void Refreshed();

    /// A search found nothing; the computer beeps.
    void NothingFound();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList LoadSettings(const QString& archive);
    Journal::Place HistoryPlace() const;
    void ApplySettings();
    void CreateDesks();
    void ConnectParts();
    template <class Handler>
    void On(const char* entry, Handler handler);
    void ConnectFileAndEdit();
    void ConnectView();
    void ConnectActionsAndTools();
    void ConnectHelpAndTray();
    void ConnectToolbars();
    void tlbMessages_ButtonClick(const QString& key);
    void mnuViewReadable_Click();
    void UpdateMainCaption();
    void HintAtDirectories();
    void ReportError(const QString& text);
    void FormShownOrHidden(const QWidget* form);
    bool WindowKeyDown(QWidget& widget, QEvent* event);
    void FormKeyDown(const QKeyEvent& key);

    MainPorts ports_;
    AppState state_;
    MessageListModel model_;
    StatusPanels panels_;
    FailureList failures_;
    QStringList loadErrors_; // reported once the window is shown
    ErrorReport errors_;
    RefreshTimer timer_{state_, this};
    Journal journal_;
    WindowJobs jobs_;
    std::unique_ptr<MainMenus> menus_;
    MessageListView* lvwMessages;
    StatusBarView* stbBottom;
    std::unique_ptr<ContentsPane> contents_;
    WindowParts parts_;
    std::unique_ptr<PanesLayout> panes_;
    std::unique_ptr<BusyDisplay> busy_;
    std::unique_ptr<ListDesk> list_;
    std::unique_ptr<RefreshDesk> refresh_;
    std::unique_ptr<DeliveryDesk> delivery_;
    std::unique_ptr<ExpiryDesk> expiry_;
    std::unique_ptr<ActionDesk> actions_;
    std::unique_ptr<FindDesk> find_;
    std::unique_ptr<QuickDesk> quick_;
    std::unique_ptr<ExportDesk> export_;
    std::unique_ptr<HistoryDesk> history_;
    std::unique_ptr<OverviewDesk> overview_;
    std::unique_ptr<SetupDesk> setup_;
    std::unique_ptr<ToolsDesk> tools_;
    std::unique_ptr<TrayPresence> tray_;
    std::unique_ptr<HelpDesk> help_;
};

} // namespace quellbox
