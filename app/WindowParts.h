#pragma once

#include "app/ErrorReport.h"
#include "messages/MessageListModel.h"
#include "messages/StatusPanels.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/PasswordStore.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"
#include "platform/Volumes.h"
#include "platform/WorkPool.h"
#include "settings/AppState.h"
#include "settings/ProgramInfo.h"

#include <QMainWindow>

#include <chrono>
#include <functional>

namespace quellbox {

class ContentsPane;
class FailureList;
class Journal;
class MainMenus;
class MessageListView;
class RefreshTimer;
class StatusBarView;
class TrayIcon;
class WindowJobs;

/// The ports that the main window works with; they outlive it.
struct MainPorts {
    FileSystem& files;
    SettingsStore& store;
    const Clock& clock;
    const Shell& shell;
    WorkPool& pool;
    const Volumes& volumes;
    PasswordStore& passwords;
    const ProgramInfo& program;
    TrayIcon* tray = nullptr; ///< null is a desktop without a notification area
    /// How long the panes may show the message before, until the one that was clicked is there: no longer than a frame
    /// or two, yet long enough for an ordinary message, which so appears without the panes being empty in between.
    std::chrono::milliseconds patience{24};
    /// Takes the errors that the user is to read; none given, each is shown in a message box.
    std::function<void(const QString& text)> reportError{};
    /// Whether closing the window stores the settings.
    bool savesSettings = true;
    /// Where the history of actions is kept; empty keeps it until the program ends.
    QString historyFile{};
};

/// What the parts of the main window that act on its list share; all of it outlives them.
struct WindowParts {
    const MainPorts& ports;
    AppState& state;
    MessageListModel& model;
    StatusPanels& panels;
    FailureList& failures;
    WindowJobs& jobs;
    Journal& journal;
    RefreshTimer& timer;
    const ErrorReport& errors;
    QMainWindow& window;
    MainMenus& menus;
    MessageListView& list;
    ContentsPane& contents;
    StatusBarView& statusBar;
};

} // namespace quellbox
