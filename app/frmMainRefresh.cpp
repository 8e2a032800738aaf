#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "archive/RefreshTimer.h"

#include <QApplication>
#include <QLocale>

#include <utility>

namespace quellbox {

void frmMain::RefreshArchive(bool markNew) {
    if (busy_ || pass_ || closing_) {
        return;
    }
    ClearContents();
    RefreshCallbacks callbacks;
    callbacks.clearView = [this] { ClearMessageView(); };
    callbacks.enterBusy = [this](int maximum) { SetBusy(true, maximum); };
    callbacks.showProgress = [this](int value) { stbBottom->Progress().setValue(value); };
    callbacks.runEvents = [] { QCoreApplication::processEvents(); };
    pass_.emplace(RefreshPorts{ports_.files, ports_.store, ports_.clock, ports_.pool}, state_, model_, panels_,
                  std::move(callbacks));
    const QString archive = state_.ArchiveDir;
    const auto finish = [this, &archive](RefreshOutcome outcome, bool lastMessageWasRead) {
        pass_.reset();
        if (state_.ArchiveDir != archive) {
            ClearMessageView(); // nothing may be done to the rows of one archive in another
        }
        FinishRefresh(outcome, lastMessageWasRead);
    };
    try {
        const RefreshOutcome outcome = pass_->Run(markNew, mnuViewBulk->isChecked());
        finish(outcome, pass_->LastMessageWasRead());
    } catch (...) {
        finish(RefreshOutcome::Cancelled, false);
        throw;
    }
}

void frmMain::FinishRefresh(RefreshOutcome outcome, bool lastMessageWasRead) {
    outcome_ = outcome;
    if (busy_) {
        SetBusy(false, 0);
    }
    if (closing_) {
        return;
    }
    if (outcome == RefreshOutcome::Completed || outcome == RefreshOutcome::Cancelled) {
        ClearSelection();
    } else {
        // The panel "info" says why there is nothing to list; only what is enabled and the count follow the list.
        const QString reason = panels_.Info().text;
        UpdateSelectionStatus();
        panels_.SetInfo(reason);
    }
    if (model_.Count() > 0 && lastMessageWasRead) {
        lvwMessages->scrollTo(model_.index(0, 0));
    }
    panels_.SetSize(QLocale().toString(ports_.clock.Now(), QStringLiteral("dd-MMM hh:mm:ss")),
                    tr("Time of last screen update"));
    ShowFileProgress(false, 0);
    if (refreshIsDue_) {
        refreshIsDue_ = false;
        QTimer::singleShot(0, this, [this] { mnuAcRefresh_Click(); });
    }
    Q_EMIT Refreshed();
}

void frmMain::mnuAcRefresh_Click() {
    if (busy_ || pass_) {
        // What was toggled meanwhile, the filter or bulk mode, takes effect when the pass has ended.
        refreshIsDue_ = pass_.has_value();
        return;
    }
    tmrRefresh->stop();
    state_.LastAddedFile.clear();
    state_.ActiveFilterDays = QString::number(buttons_[QStringLiteral("filter")]->isChecked() ? state_.FilterDays : 0);
    Guarded([this] { RefreshArchive(false); });
    SetRefreshInterval();
}

void frmMain::tmrRefresh_Timer() {
    if (busy_ || pass_) {
        return;
    }
    switch (DecideTick(tmrRefresh->interval(), ports_.clock.Now().date(), model_.Count(), state_)) {
    case TickAction::Nothing:
        return;
    case TickAction::FirstRefresh:
        FirstTick();
        return;
    case TickAction::FullRefresh:
        mnuAcRefresh_Click();
        return;
    case TickAction::RefillEmptyList:
        state_.LastAddedFile.clear();
        break;
    case TickAction::IncrementalRefresh:
        break;
    }
    Guarded([this] { RefreshArchive(true); });
    SetRefreshInterval();
}

void frmMain::FirstTick() {
    tmrRefresh->stop();
    Guarded([this] {
        RefreshArchive(false);
        if (model_.Count() > 0 && !closing_) {
            lvwMessages->SelectOnly(0);
            LoadOnItemClick = true;
            lvwMessages_ItemClick(0);
        }
    });
    SetRefreshInterval();
}

void frmMain::SetRefreshInterval() {
    const int interval = RefreshIntervalMs(state_.RefreshInterval);
    timerGoesOn_ = false;
    if (interval == 0 || closing_) {
        tmrRefresh->stop();
        return;
    }
    tmrRefresh->setInterval(interval);
    // A dialog may have become active while the pass ran.
    if (timerHolds_ == 0) {
        tmrRefresh->start();
    }
}

void frmMain::SetBusy(bool busy, int maximum) {
    busy_ = busy;
    if (!busy) {
        SortList();
    }
    // What was shown on entering is taken back on leaving, even if the window has been hidden since.
    if (busy == busyIsShown_ || (busy && !isVisible())) {
        return;
    }
    busyIsShown_ = busy;
    lvwMessages->setEnabled(!busy);
    if (busy) {
        ShowFileProgress(true, maximum);
        panels_.SetInfo(tr("Please wait till operation completes..."));
        // An hourglass would lie over a dialog too, which does not have to wait.
        hourglassIsShown_ = QApplication::activeModalWidget() == nullptr;
        if (hourglassIsShown_) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
        return;
    }
    panels_.SetInfo(tr("Done"));
    if (std::exchange(hourglassIsShown_, false)) {
        QApplication::restoreOverrideCursor();
    }
    ShowFileProgress(false, 0);
    if (!isMinimized()) {
        lvwMessages->setFocus();
    }
}

void frmMain::ShowFileProgress(bool show, int maximum) {
    stbBottom->ShowFileProgress(show, maximum);
}

void frmMain::ClearMessageView() {
    model_.Clear();
    ClearContents();
}

void frmMain::ClearContents() {
    CancelLoading();
    rtfRaw->clear();
    ClearTree();
}

void frmMain::mnuViewBulk_Click() {
    ShowBulkMode();
    mnuAcRefresh_Click();
}

// Lines of several texts are easier to follow on alternating colours; file names alone need none.
void frmMain::ShowBulkMode() {
    lvwMessages->setAlternatingRowColors(!mnuViewBulk->isChecked());
}

} // namespace quellbox
