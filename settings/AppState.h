#pragma once

#include "mail/OwnServer.h"
#include "platform/FolderPath.h"

#include <QString>
#include <QtGlobal>

#include <array>

namespace quellbox {

/// A file and the time of its last modification (nanoseconds since 1970) when it was listed.
struct Arrival {
    QString name;
    qint64 modifiedNs = 0;
};

/// The state that several subsystems share for one run of the program. The main window owns it and lends it.
/// LoadSettings() fills in what is stored; the rest starts as it stands here.
struct AppState {
    // Kept in the settings store.

    Folder ArchiveDir;             ///< folder whose messages are listed
    Folder PickupDir;              ///< folder into which messages are unblocked
    qint16 HeaderField = 0;        ///< index of the header field that Find searches
    qint16 FilterDays = 0;         ///< day window: 0 all, 1 today, 2 two days, 7 one week
    qint16 TolerationLevel = 0;    ///< use of the whitelist: 0 disabled, 1 manual, 2 automatic
    qint16 RefreshInterval = 0;    ///< seconds between automatic refreshes
    qint16 RawBody = 0;            ///< 1 when the viewer of raw text is to start at the end; kept, without effect
    qint16 AutoRefresh = 0;        ///< automatic refresh is on when exactly 1
    qint16 OutlookExpress = 0;     ///< 1 shows messages in the external viewer
    qint16 KeepDeletedDays = 0;    ///< days for which deleted messages are kept; with 0 or less they go at once
    qint16 HistoryDays = 0;        ///< days for which the history of actions is kept; with 0 or less none is written
    qint32 FilterMessages = 0;     ///< state of the "filter" button: 0 released, 1 pressed
    qint32 ContentsAttachment = 0; ///< state of the "attachment" button: 0 released, 1 pressed
    qint32 ContentsCollapse = 0;   ///< state of the "collapse" button: 0 released, 1 pressed
    bool StatusBar = false;        ///< the status bar is shown
    bool Toolbar = false;          ///< the toolbar is shown
    bool Contents = false;         ///< the contents pane is shown
    bool HideMinimized = false;    ///< the window hides when it is minimized
    bool BulkMode = false;         ///< bulk mode is on
    bool ReadableText = false;     ///< messages are shown as a person reads them, not as their source
    qint32 Whole = 0;              ///< position of the splitter splWhole, twips
    qint32 Bottom = 0;             ///< position of the splitter splBottom, twips
    QString ServerProfile;         ///< key of the profile of the server that blocks the messages
    OwnServer Own;                 ///< the server with the key "own", as the user describes it
    QString Delivery;              ///< key of the way on which messages are unblocked; see DeliveryKeys
    QString SmtpHost;              ///< mail server for the way "smtp"
    qint32 SmtpPort = 0;           ///< its port
    QString SmtpSecurity;          ///< key of how the connection is secured; see SecurityKeys
    QString SmtpUser;              ///< account there; empty for none. Its password is not among the settings
    QString DeliveryCommand;       ///< command line for the way "command"

    // Known only while the program runs.

    QString ActiveFilterDays = QStringLiteral("0"); ///< FilterDays as text while "filter" is pressed, else "0"
    std::array<QString, 8> FilterCaptions;          ///< caption suffix of the day filter, by FilterDays
    QString UserName;                               ///< network user name; empty when unknown
    QString LastAddedFile;     ///< file name of the row added last; empty makes the next refresh a full one
    Arrival LastArrival;       ///< LastAddedFile as it was listed; says nothing once the names differ
    QString strXSender;        ///< envelope sender of the message whose headers were read last
    QString FindText;          ///< text that Find searches for
    qint16 FindAll = 0;        ///< -1 when Find is to select every match, else 0
    int FindPosition = 0;      ///< 1-based row that Find found last; 0 starts at the top
    qint16 SelectedCount = 0;  ///< number of selected rows
    int SavedWindowState = 0;  ///< latest window state but minimized: 0 normal, 2 maximized
    int OptionsTab = 0;        ///< 0-based tab of the options dialog selected last
    qint16 LastRefreshDay = 0; ///< day of the month of the timer's latest full refresh; 0 before it

    // What a dialog leaves behind for whoever opened it.

    bool CleansingConfirmed = false; ///< the cleansing dialog was confirmed
    qint16 CleansingDays = 0;     ///< day window that cleansing keeps, as FilterDays; 0 keeps nothing, -1 none chosen
    QString SelectedFolder;       ///< folder chosen in the directory selection
    bool FolderConfirmed = false; ///< the directory selection was confirmed
    QString ToleranceResult;      ///< result of the whitelist dialog: "OK" or empty
};

/// The account under which the password for the mail server is kept, which changes with what it is for.
QString SmtpAccount(const AppState& state);

/// The caption suffixes of the day filter, indexed by its day count; empty for a count that has none.
std::array<QString, 8> MakeFilterCaptions();

} // namespace quellbox
