#pragma once

#include "archive/RefreshPass.h"
#include "contents/MessageLoader.h"
#include "contents/frmRawPane.h"
#include "contents/frmView.h"
#include "messages/SortState.h"
#include "platform/RuntimeError.h"
#include "platform/Shell.h"
#include "platform/Volumes.h"
#include "settings/ProgramInfo.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QPointer>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <optional>

namespace quellbox {

class frmFind;
class MessageListView;
class StatusBarView;
class TrayIcon;
class frmHelp;

/// The ports that the main window works with; they outlive it.
struct MainPorts {
    FileSystem& files;
    SettingsStore& store;
    const Clock& clock;
    const Shell& shell;
    QThreadPool& pool;
    const Volumes& volumes;
    const ProgramInfo& program;
    TrayIcon* tray = nullptr; ///< null is a desktop without a notification area
    /// How long a click waits for its message before the window goes on without it: no longer than a frame or two, yet
    /// long enough for an ordinary message, which so appears without the panes being empty in between.
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

    /// One refresh pass; a full one when `LastAddedFile` is empty. Does nothing while a pass runs.
    void RefreshArchive(bool markNew);

    /// The Refresh command: a full refresh with the current filter.
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
    bool IsLoading() const { return loader_->IsBusy(); }

Q_SIGNALS:
    /// A refresh pass has ended.
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
    /// What is done with a message that is being read.
    struct Loading {
        QString path;
        bool ifExists = false;   // a file that has gone empties the panes without a word
        bool text = false;       // to be shown in rtfRaw
        bool structure = false;  // to be shown in trvMessage; the row becomes read
        bool forViewer = false;  // the text is to be shown in the viewer too
        bool takesPlace = false; // without its text, rtfRaw is empty
    };

    // frmMain.cpp: creation, loading, unloading
    void LoadSettings();
    void ApplySettings();
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
    void splWhole_Moved();
    void splBottom_Moved();
    bool WindowKeyDown(QWidget& widget, QEvent* event);
    void FormKeyDown(int key);
    void PutOffRefresh();
    void FormShownOrHidden(const QWidget* form);

    // frmMainList.cpp
    void ConnectList();
    void lvwMessages_ColumnClick(int column);
    void lvwMessages_ItemClick(int row);
    void lvwMessages_KeyDown();
    void lvwMessages_KeyPress();
    void lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x);
    void lvwMessages_MouseUp();
    void PopUpMessageMenu(QPoint screen);
    void ShowSortArrow();
    void ReadMessageHeaders(int row);
    void mnuEdit_Click();
    void mnuEditSelectAll_Click();
    void MarkSelected(bool unread);
    void mnuEditMarkAllRead_Click();

    // frmMainRefresh.cpp
    void tmrRefresh_Timer();
    void FirstTick();
    void SetRefreshInterval();
    void ClearMessageView();
    void ClearContents();
    void ShowFileProgress(bool show, int maximum);
    void mnuViewBulk_Click();
    void ShowBulkMode();
    void FinishRefresh(RefreshOutcome outcome, bool lastMessageWasRead);
    void SortList();

    // frmMainActions.cpp
    void ProcessSelectedMessages(qint16 action);
    void ShowNextMessage(int row);
    void mnuActions_Click();
    void mnuActionsDelete_Click();
    void mnuActionsUnblock_Click();
    void mnuMessageDelete_Click();
    void mnuMessageUnblock_Click();
    void TolerateSelectedSender();
    void MaintainWhitelist();
    std::function<void(bool)> TimerSwitch();
    void HoldTimer();
    void ReleaseTimer();
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
    void CleanseArchive();
    void RefreshAfterCleansing();
    qint32 RemoveOldMessages();

    // frmMainPickupTest.cpp
    void SendPickupTest();

    // frmMainOptions.cpp
    void mnuToolsOptions_Click();
    void stbBottom_PanelClick(const QString& key);
    void ToggleFilter();
    void ShowOptions();
    void ShowOptionsOn(int tab);

    // frmMainTray.cpp
    void ConnectTray();
    bool TrayExists() const;
    void mnuViewHide_Click();
    void mnuTrExit_Click();
    void traSystemTray_RightButton();
    void RestoreFromTray();
    void ShowTrayIcon(int show, const QString& tip);
    void ExplainHiding();
    void HideWhenMinimized();
    void tmrTray_Timer();
    void RememberWindowState();
    void SetSavedWindowState();
    bool OtherFormIsLoaded() const;
    void OfferTrayMenu();

    // frmMainHelp.cpp
    void mnuHelpStarting_Click(qint16 index);
    void ShowHelpOf(const QWidget* form);
    void ShowInHelpViewer(const QString& topic, HelpCommand command, qint16 contextId);
    frmHelp& HelpWindow();
    void LetUseBesideDialogs();
    void ConnectHelpButton(const QWidget* form);
    void btnHelp_Click();
    bool HelpKeyDown(QWidget* widget);
    void mnuHelpCheck_Click();
    void mnuHelpFeedback_Click();
    void mnuHelpAbout_Click();

    // frmMainContents.cpp
    void ConnectContents();
    int SelectedRow() const;
    QString MessagePath(int row) const;
    void ShowMessage(int row);
    void MakeLoader();
    void LoadMessage(int row, Loading wanted);
    void CancelLoading();
    void AwaitMessage();
    void TakeAnswer(const MessageAnswer& answer, const QPersistentModelIndex& row);
    void ShowMessageStructure(const StructureTree& structure);
    void MarkAsRead(const QPersistentModelIndex& row);
    void FillTree();
    void ClearTree();
    void ApplyToggles(bool expandAll);
    void trvMessage_NodeClick(const QTreeWidgetItem* node);
    void tlbContents_ButtonClick(const QString& key);
    void mnuMessageView_Click();
    void ShowViewer();
    void CloseViewer();

    MainPorts ports_;
    AppState state_;
    MessageListModel model_;
    StatusPanels panels_;
    SortState sort_;
    QStringList loadErrors_; // reported once the window is shown
    bool busy_ = false;
    bool busyIsShown_ = false;
    bool hourglassIsShown_ = false;
    bool closing_ = false;
    int timerHolds_ = 0;        // dialogs, one above the other, that rest the refresh timer
    bool timerGoesOn_ = false;  // when none rests it any more, the timer keeps its interval
    bool refreshIsDue_ = false; // the Refresh command was given while a pass ran
    std::optional<RefreshPass> pass_;
    RefreshOutcome outcome_ = RefreshOutcome::Completed;
    bool LoadOnItemClick = false;
    Qt::MouseButton LastMouseButton = Qt::NoButton;
    int ClickedColumn = 0;
    int listPaneSize_ = 0; // pixels; what "Message contents" restores
    int treePaneSize_ = 0; // pixels; what "Format layout" restores
    std::unique_ptr<MessageLoader> loader_;
    std::optional<Loading> loading_; // of the message that is being read, what has not come yet
    StructureTree structure_;        // what trvMessage shows
    QPointer<frmView> view_;
    std::unique_ptr<frmFind> find_; // stays hidden after OK
    std::unique_ptr<frmHelp> help_; // made when help is first asked for

    MessageListView* lvwMessages = nullptr;
    QTreeWidget* trvMessage = nullptr;
    RawPane* rtfRaw = nullptr;
    QSplitter* splWhole = nullptr;
    QSplitter* splBottom = nullptr;
    QWidget* clbLeft = nullptr;
    QToolBar* tlbMessages = nullptr;
    QToolBar* tlbContents = nullptr;
    StatusBarView* stbBottom = nullptr;
    QTimer* tmrRefresh = nullptr;
    QTimer* tmrTray = nullptr; // runs while the window is hidden

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
    QHash<QString, QAction*> buttons_; // of both toolbars, by key
};

/// Runs a handler so that a run-time error ends in a message box and the program goes on.
template <class Handler>
void frmMain::Guarded(Handler handler) {
    try {
        handler();
    } catch (const RuntimeError& error) {
        ReportError(error.Text());
    } catch (const std::exception& error) {
        ReportError(QString::fromUtf8(error.what()));
    }
}

} // namespace quellbox
