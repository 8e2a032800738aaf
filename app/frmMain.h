#pragma once

#include "app/ContentsPane.h"
#include "app/ErrorReport.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "messages/SortState.h"
#include "messages/StatusPanels.h"
#include "platform/Shell.h"
#include "platform/Volumes.h"
#include "settings/ProgramInfo.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>

#include <functional>
#include <memory>
#include <optional>

namespace quellbox {

class HelpDesk;
class frmFind;
class MessageListView;
class StatusBarView;
class TrayIcon;
class TrayPresence;

/// The ports that the main window works with; they outlive it.
struct MainPorts {
    FileSystem& files;
    SettingsStore& store;
    const Clock& clock;
    const Shell& shell;
    WorkPool& pool;
    const Volumes& volumes;
    const ProgramInfo& program;
    TrayIcon* tray = nullptr; ///< null is a desktop without a notification area
    /// How long the panes may show the message before, until the one that was clicked is there: no longer than a frame
    /// or two, yet long enough for an ordinary message, which so appears without the panes being empty in between.
    std::chrono::milliseconds patience{24};
    /// Takes the errors that the user is to read; none given, each is shown in a message box.
    std::function<void(const QString& text)> reportError{};
    /// Whether closing the window stores the settings.
    bool savesSettings = true;
};

/// The main window. It owns the program's state and hands events to the stages behind it.
class frmMain : public QMainWindow {
    Q_OBJECT

public:
    /// `archive`, when it is not empty, is the archive of this session: it takes the place of the stored one without
    /// being stored. It ends with a separator.
    explicit frmMain(MainPorts ports, const QString& archive = QString());
    ~frmMain() override;

    /// Begins a refresh; a full one when `LastAddedFile` is empty. Does nothing while a job runs.
    void RefreshArchive(bool markNew);

    /// The Refresh command: a full refresh with the current filter, at once or when the present job has ended.
    void mnuAcRefresh_Click();

    /// Counts the selection, fills the panels and sets what is enabled. Returns the number of selected rows.
    qint16 UpdateSelectionStatus();

    /// Deselects every row and empties the contents panes; the next search starts at the top.
    void ClearSelection();

    /// Enters or leaves the busy state around a long operation of `maximum` steps.
    void SetBusy(bool busy, int maximum);

    /// Writes every setting back to the store.
    void SaveAllSettings();

    /// How the last refresh pass ended; one that ended with an error counts as cancelled.
    RefreshOutcome Outcome() const { return outcome_; }

    AppState& State() { return state_; }
    MessageListModel& Messages() { return model_; }
    StatusPanels& Panels() { return panels_; }

    /// True while something of a message that was clicked is still to be read.
    bool IsLoading() const { return contents_->IsLoading(); }

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
    // frmMain.cpp: creation, loading, unloading
    void LoadSettings();
    void ApplySettings();
    void CreateTray();
    void CreateHelp();
    void UpdateMainCaption();
    void ReportError(const QString& text);
    template <class Handler>
    void Guarded(Handler handler);

    // frmMainMenus.cpp
    void CreateMenus();
    void CreateToolbars();
    QAction* AddEntry(QMenu* menu, const char* name, const QString& caption, const QString& shortcut = {});
    void AddBar(QMenu* menu, const char* name);
    QAction* AddButton(QToolBar* bar, const char* key, const QString& toolTip, bool twoState);
    void SetMenuPictures();

    // frmMainLayout.cpp
    void CreatePanes();
    void LayOut();
    void DividePanes();
    void LetPanesHaveFocus();
    void ShowContentsBand();
    void mnuViewContents_Click();
    void mnuViewFormat_Click();
    void mnuViewToolbar_Click();
    void mnuViewStatus_Click();
    void mnuView_Click();
    bool HoldsBack(const QObject* watched, const QEvent& event) const;
    void splWhole_Moved();
    void splBottom_Moved();
    bool WindowKeyDown(QWidget& widget, QEvent* event);
    void FormKeyDown(int key);
    void FormShownOrHidden(const QWidget* form);

    // frmMainList.cpp
    void ConnectList();
    void lvwMessages_ColumnClick(int column);
    void lvwMessages_ItemClick(int row);
    void lvwMessages_KeyDown();
    void lvwMessages_KeyPress();
    void lvwMessages_DblClick();
    void lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x);
    void lvwMessages_MouseUp();
    void PopUpMessageMenu(QPoint screen);
    void ShowSortArrow();
    void TakeHeaders(const QString& path, const HeaderFields& headers);
    void ShowCommands();
    void OfferView();
    void mnuEdit_Click();
    void mnuEditSelectAll_Click();
    void mnuEditSelectNone_Click();
    void mnuEditMarkRead_Click();
    void mnuEditMarkUnread_Click();
    void MarkSelected(bool unread);
    void MarkItemBold(int row, bool bold);
    void mnuEditMarkAllRead_Click();

    // frmMainRefresh.cpp
    void ConnectJobs();
    void jobs_ActivityChanged();
    void jobs_RefreshEnded(const RefreshResult& result);
    void ShowRefreshed(const RefreshResult& result);
    void ShowWhatIsListed(const RefreshResult& result);
    void TellWhyNothingIsListed(const RefreshResult& result);
    void RefreshIfDue();
    bool MayChange();
    bool EndRefresh();
    void ShowFirstMessage();
    void ShowBusy();
    void ShowDone();
    void ShowProgress(int value);
    void tmrRefresh_Timer();
    void FirstTick();
    void ClearMessageView();
    void ClearContents();
    void ShowFileProgress(bool show, int maximum);
    void mnuViewBulk_Click();
    void ShowBulkMode();
    void SortList();

    // frmMainActions.cpp
    void ProcessSelectedMessages(qint16 action);
    void jobs_DisposalEnded(const DisposalResult& result);
    void OfferToTolerate(int row);
    void ShowNextMessage(int row);
    void mnuActions_Click();
    void mnuActionsDelete_Click();
    void mnuActionsUnblock_Click();
    void mnuMessageDelete_Click();
    void mnuMessageUnblock_Click();
    void TolerateSelectedSender();
    void MaintainWhitelist();
    void tlbMessages_ButtonClick(const QString& key);

    // frmMainFind.cpp
    void mnuEditFind_Click();
    void mnuEditFindNext_Click();
    void mnuEditFindAll_Click();
    void mnuMessageFind_Click();
    void ShowFindDialog();
    bool UnloadFind();
    void FindNext();

    // frmMainFolders.cpp
    QString SelectDirectory(qint16 index);
    void LeaveArchive();
    void mnuOpenFolderSelect_Click(qint16 index);

    // frmMainCleansing.cpp
    void mnuToolsCleansing_Click();
    void CleanseArchive();
    void jobs_CleansingEnded(const CleansingResult& result);

    // frmMainPickupTest.cpp
    void SendPickupTest();
    void ConfirmAndSend();

    // frmMainOptions.cpp
    void mnuToolsOptions_Click();
    void stbBottom_PanelClick(const QString& key);
    void ToggleFilter();
    void ShowOptions();
    void ShowOptionsOn(int tab);

    // frmMainContents.cpp
    void CreateContents();
    int SelectedRow() const;
    QString MessagePath(int row) const;
    int RowOfPath(const QString& path) const;
    void ShowMessage(int row);
    void ShowWholeText();
    void MarkAsRead(const QString& path);
    void mnuMessageView_Click();

    MainPorts ports_;
    AppState state_;
    MessageListModel model_;
    StatusPanels panels_;
    SortState sort_;
    QStringList loadErrors_; // reported once the window is shown
    bool busyIsShown_ = false;
    bool hourglassIsShown_ = false;
    bool closing_ = false;
    RefreshTimer timer_{state_, this};
    WindowJobs jobs_{{ports_.files, ports_.store, ports_.clock, ports_.pool}, state_, model_};
    int selectedRows_ = 0; // as last counted
    bool offersView_ = true;
    bool refreshIsDue_ = false; // the Refresh command was given while a job ran
    bool refreshIsByTick_ = false;
    bool gaveWay_ = false;            // a look for new messages is being ended in favour of the user
    bool cannotFollowIsTold_ = false; // that the message listed last has gone
    bool tooManyIsTold_ = false;
    std::optional<qint32> cleansed_;                     // messages that a run has removed, until its refresh has ended
    RefreshOutcome outcome_ = RefreshOutcome::Completed; // of the latest refresh
    bool LoadOnItemClick = false;
    Qt::MouseButton LastMouseButton = Qt::NoButton;
    int ClickedColumn = 0;
    int listPaneSize_ = 0; // pixels; what "Message contents" restores
    int treePaneSize_ = 0; // pixels; what "Format layout" restores
    std::unique_ptr<ContentsPane> contents_;
    std::unique_ptr<TrayPresence> tray_;
    std::unique_ptr<frmFind> find_; // stays hidden after OK
    std::unique_ptr<HelpDesk> help_;

    MessageListView* lvwMessages = nullptr;
    QSplitter* splWhole = nullptr;
    QSplitter* splBottom = nullptr;
    QWidget* clbLeft = nullptr;
    QToolBar* tlbMessages = nullptr;
    QToolBar* tlbContents = nullptr;
    StatusBarView* stbBottom = nullptr;

    QMenu* mnuFile = nullptr;
    QMenu* mnuEdit = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuActions = nullptr;
    QMenu* mnuTools = nullptr;
    QMenu* mnuHelp = nullptr;
    QMenu* mnuMessage = nullptr;
    QMenu* mnuTray = nullptr;
    QAction* mnuEditFindNext = nullptr;
    QAction* mnuViewBulk = nullptr;
    QAction* mnuViewHide = nullptr;
    QAction* mnuViewToolbar = nullptr;
    QAction* mnuViewStatus = nullptr;
    QAction* mnuViewContents = nullptr;
    QAction* mnuViewFormat = nullptr;
    QAction* mnuAcRefresh = nullptr;
    QAction* mnuActionsDelete = nullptr;
    QAction* mnuActionsUnblock = nullptr;
    QAction* mnuActionsTolerate = nullptr;
    QAction* mnuToolsOptions = nullptr;
    QAction* mnuToolsCleansing = nullptr;
    QAction* mnuMessageTolerate = nullptr;
    QAction* mnuMessageView = nullptr;
    QHash<QString, QAction*> buttons_;   // of both toolbars, by key
    std::vector<QAction*> listCommands_; // that can be used only while no job runs
};

/// Runs a handler so that a run-time error ends in a message box and the program goes on.
template <class Handler>
void frmMain::Guarded(Handler handler) {
    RunReporting(handler, [this](const QString& text) { ReportError(text); });
}

} // namespace quellbox
