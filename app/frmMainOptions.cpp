#include "app/StatusBarView.h"
#include "app/frmMain.h"
#include "dialogs/frmOptions.h"

namespace quellbox {

namespace {

// 0-based pages of the options dialog.
constexpr int filteringTab = 2;
constexpr int settingsTab = 4;

constexpr const char* refreshMark = "Tag"; // of mnuToolsOptions: "X" when the day filter is another one, else empty

} // namespace

// Another archive, which the dialog lets the user select, has left the list empty; that is no reason to wait for a
// tick.
void frmMain::mnuToolsOptions_Click() {
    const QString archive = state_.ArchiveDir;
    ShowOptions();
    if (!mnuToolsOptions->property(refreshMark).toString().isEmpty() || state_.ArchiveDir != archive) {
        mnuAcRefresh_Click();
        mnuToolsOptions->setProperty(refreshMark, QString());
    }
}

// The refresh mark is deliberately left alone: whatever was chosen, this refreshes.
void frmMain::stbBottom_PanelClick(const QString& key) {
    const int tab = key == QLatin1String("count") ? filteringTab : key == QLatin1String("size") ? settingsTab : -1;
    if (tab < 0 || !MayChange()) {
        return;
    }
    ShowOptionsOn(tab);
    mnuAcRefresh_Click();
}

// The button "filter" has been toggled. Without a day window there is nothing to filter by: the user is asked for one.
void frmMain::ToggleFilter() {
    QAction* filter = buttons_[QStringLiteral("filter")];
    if (filter->isChecked() && state_.FilterDays == 0) {
        if (!MayChange()) {
            filter->setChecked(false);
            return;
        }
        ShowOptionsOn(filteringTab);
    }
    tlbMessages->update();
    mnuAcRefresh_Click();
}

void frmMain::ShowOptionsOn(int tab) {
    state_.OptionsTab = tab;
    ShowOptions();
}

void frmMain::ShowOptions() {
    const qint16 levelBefore = state_.TolerationLevel;
    OptionsCalls calls;
    calls.filterTaken = [this](bool changed) {
        mnuToolsOptions->setProperty(refreshMark, changed ? QStringLiteral("X") : QString());
        buttons_[QStringLiteral("filter")]->setChecked(state_.FilterDays != 0);
    };
    calls.selectDirectory = [this](qint16 index) {
        QString folder = index == 0 ? state_.ArchiveDir : state_.PickupDir;
        Guarded([&] { folder = SelectDirectory(index); });
        return folder;
    };
    calls.maintainWhitelist = [this] { Guarded([this] { MaintainWhitelist(); }); };
    {
        const RefreshTimer::Hold rest(timer_);
        frmOptions(ports_.files, ports_.program, state_, std::move(calls), this).exec();
    }
    if (state_.TolerationLevel != levelBefore) {
        // What is enabled follows the level. A size that cannot be counted must not cost what comes after the dialog.
        Guarded([this] { UpdateSelectionStatus(); });
    }
}

} // namespace quellbox
