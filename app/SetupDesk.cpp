#include "app/SetupDesk.h"

#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/RefreshDesk.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmOptions.h"
#include "history/Journal.h"
#include "platform/PasswordStore.h"
#include "settings/SettingsTable.h"

#include <QApplication>

#include <utility>

namespace quellbox {

namespace {

// 0-based pages of the options dialog.
constexpr int filteringTab = 2;
constexpr int settingsTab = 4;

constexpr const char* refreshMark = "Tag"; // of mnuToolsOptions: "X" when the day filter is another one, else empty

} // namespace

SetupDesk::SetupDesk(const WindowParts& parts, ListDesk& list, RefreshDesk& refresh,
                     std::function<void()> maintainWhitelist)
    : parts_(parts), list_(list), refresh_(refresh), maintainWhitelist_(std::move(maintainWhitelist)) {}

/// True when a directory was confirmed, which is then the selected one.
bool SetupDesk::AskForDirectory(const QString& title) {
    const MainPorts& ports = parts_.ports;
    QWidget* above = QApplication::activeModalWidget();
    frmFolders dialog({ports.files, ports.volumes, ports.pool}, parts_.state,
                      above != nullptr ? above : &parts_.window);
    dialog.setWindowTitle(title);
    dialog.exec();
    return parts_.state.FolderConfirmed;
}

QString SetupDesk::SelectDirectory(qint16 index) {
    if (index != 0 && index != 1) {
        return {};
    }
    const bool isArchive = index == 0;
    AppState& state = parts_.state;
    Folder& directory = isArchive ? state.ArchiveDir : state.PickupDir;
    state.SelectedFolder = directory;
    if (!AskForDirectory(isArchive ? tr("Select Archive Directory") : tr("Select Pickup Directory"))) {
        return directory;
    }
    const bool isOther = directory != state.SelectedFolder;
    directory = state.SelectedFolder;
    if (isArchive) {
        Q_EMIT ArchiveChosen();
    }
    if (isArchive && isOther) {
        refresh_.LeaveArchive();
    }
    // The choice holds for this session even when it cannot be stored.
    parts_.errors.Guard([this, isArchive, &directory] {
        SettingsStore& store = parts_.ports.store;
        WriteSetting(store, isArchive ? QStringLiteral("ArchiveDir") : QStringLiteral("PickupDir"), directory);
        store.Flush();
    });
    return directory;
}

void SetupDesk::mnuOpenFolderSelect_Click(qint16 index) {
    const RefreshTimer::Hold rest(parts_.timer);
    parts_.errors.Guard([this, index] {
        SelectDirectory(index);
        refresh_.RefreshArchive(false);
    });
}

// Another archive, which the dialog lets the user select, has left the list empty; that is no reason to wait for a
// tick.
void SetupDesk::mnuToolsOptions_Click() {
    QAction& entry = parts_.menus.Entry("mnuToolsOptions");
    const QString archive = parts_.state.ArchiveDir;
    ShowOptions();
    if (!entry.property(refreshMark).toString().isEmpty() || parts_.state.ArchiveDir != archive) {
        refresh_.mnuAcRefresh_Click();
        entry.setProperty(refreshMark, QString());
    }
}

// The refresh mark is deliberately left alone: whatever was chosen, this refreshes.
void SetupDesk::stbBottom_PanelClick(const QString& key) {
    const int tab = key == QLatin1String("count") ? filteringTab : key == QLatin1String("size") ? settingsTab : -1;
    if (tab < 0 || !parts_.jobs.MakeWay()) {
        return;
    }
    ShowOptionsOn(tab);
    refresh_.mnuAcRefresh_Click();
}

// Without a day window there is nothing to filter by: the user is asked for one.
void SetupDesk::ToggleFilter() {
    QAction& filter = parts_.menus.Button("filter");
    if (filter.isChecked() && parts_.state.FilterDays == 0) {
        if (!parts_.jobs.MakeWay()) {
            filter.setChecked(false); // in the moment before it is shown that this cannot be used
            return;
        }
        ShowOptionsOn(filteringTab);
    }
    parts_.menus.Messages().update();
    refresh_.mnuAcRefresh_Click();
}

void SetupDesk::ShowOptionsOn(int tab) {
    parts_.state.OptionsTab = tab;
    ShowOptions();
}

// An empty one is none.
void SetupDesk::KeepPassword(const QString& password) {
    const auto tell = [this](const PasswordAnswer& answer) {
        if (!answer.error.isEmpty()) {
            parts_.errors.Show(tr("The password for the mail server could not be kept: %1").arg(answer.error));
        }
    };
    if (parts_.state.SmtpUser.isEmpty()) {
        return;
    }
    Q_EMIT PasswordEntered();
    const QString account = SmtpAccount(parts_.state);
    if (password.isEmpty()) {
        parts_.ports.passwords.Remove(account, *this, tell);
    } else {
        parts_.ports.passwords.Write(account, password, *this, tell);
    }
}

void SetupDesk::ShowOptions() {
    const MainPorts& ports = parts_.ports;
    const qint16 levelBefore = parts_.state.TolerationLevel;
    OptionsCalls calls;
    calls.filterTaken = [this](bool changed) {
        parts_.menus.Entry("mnuToolsOptions").setProperty(refreshMark, changed ? QStringLiteral("X") : QString());
        parts_.menus.Button("filter").setChecked(parts_.state.FilterDays != 0);
    };
    calls.selectDirectory = [this](qint16 index) {
        QString folder = index == 0 ? parts_.state.ArchiveDir : parts_.state.PickupDir;
        parts_.errors.Guard([&] { folder = SelectDirectory(index); });
        return folder;
    };
    calls.keepPassword = [this](const QString& password) { KeepPassword(password); };
    calls.maintainWhitelist = [this] { parts_.errors.Guard(maintainWhitelist_); };
    {
        const RefreshTimer::Hold rest(parts_.timer);
        frmOptions(ports.files, ports.pool, ports.program, parts_.state, std::move(calls), &parts_.window).exec();
    }
    parts_.journal.SetKept(parts_.state.HistoryDays > 0);
    if (parts_.state.TolerationLevel != levelBefore) {
        // What is enabled follows the level. A size that cannot be counted must not cost what comes after the dialog.
        parts_.errors.Guard([this] { list_.UpdateSelectionStatus(); });
    }
}

} // namespace quellbox
