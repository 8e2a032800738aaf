#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "mail/DisplayText.h"

#include <QApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace quellbox {

void frmMain::ConnectJobs() {
    connect(&jobs_, &WindowJobs::ActivityChanged, this, &frmMain::jobs_ActivityChanged);
    connect(&jobs_, &WindowJobs::BusyDue, this, [this](int maximum) { SetBusy(true, maximum); });
    connect(&jobs_, &WindowJobs::Progress, this, &frmMain::ShowProgress);
    connect(stbBottom, &StatusBarView::StopClick, &jobs_, &WindowJobs::Stop);
    connect(&jobs_, &WindowJobs::RowsAdded, this, [this](int rows) {
        panels_.SetCount(QString::number(rows));
        ShowProgress(rows);
    });
    connect(&jobs_, &WindowJobs::RowsLeft, this, [this](int rows) { panels_.SetCount(QString::number(rows)); });
    connect(&jobs_, &WindowJobs::RefreshEnded, this,
            [this](const RefreshResult& result) { Guarded([&] { jobs_RefreshEnded(result); }); });
    connect(&jobs_, &WindowJobs::DisposalEnded, this,
            [this](const DisposalResult& result) { Guarded([&] { jobs_DisposalEnded(result); }); });
    connect(&jobs_, &WindowJobs::Removing, this,
            [this](const QString& name) { panels_.SetInfo(tr("Removing %1").arg(CleanseForDisplay(name))); });
    connect(&jobs_, &WindowJobs::CleansingEnded, this,
            [this](const CleansingResult& result) { Guarded([&] { jobs_CleansingEnded(result); }); });
    connect(&jobs_, &WindowJobs::JobEnded, this, &frmMain::RefreshIfDue);
}

// What was shown on entering the busy state is taken back, and the list is sorted as its arrow says.
void frmMain::jobs_ActivityChanged() {
    if (jobs_.IsAtWork()) {
        return;
    }
    if (busyIsShown_) {
        SetBusy(false, 0);
    } else {
        SortList();
    }
}

void frmMain::RefreshArchive(bool markNew) {
    if (!jobs_.IsIdle() || closing_) {
        return;
    }
    timer_.Stop();
    refreshIsByTick_ = markNew;
    ClearContents();
    if (state_.LastAddedFile.isEmpty()) {
        panels_.SetCount({});
    }
    jobs_.Refresh(markNew, mnuViewBulk->isChecked());
}

void frmMain::jobs_RefreshEnded(const RefreshResult& result) {
    LogFailures(result.failures);
    outcome_ = result.outcome;
    if (closing_) {
        return;
    }
    timer_.SetInterval();
    if (gaveWay_) {
        return; // to what the user does now
    }
    Guarded([&] { ShowRefreshed(result); });
    Q_EMIT Refreshed();
}

void frmMain::ShowRefreshed(const RefreshResult& result) {
    // After a cleansing, rows of messages that have gone must not stay for want of a new list.
    if (result.outcome == RefreshOutcome::ArchiveMissing || (cleansed_ && !result.reason.isEmpty())) {
        ClearMessageView();
    }
    if (result.reason.isEmpty()) {
        ShowWhatIsListed(result);
    } else {
        UpdateSelectionStatus();
        TellWhyNothingIsListed(result);
    }
    if (model_.Count() > 0 && result.lastMessageWasRead) {
        lvwMessages->scrollTo(model_.index(0, 0));
    }
    panels_.SetSize(QLocale().toString(ports_.clock.Now(), QStringLiteral("dd-MMM hh:mm:ss")),
                    tr("Time of last screen update"));
    ShowFileProgress(false, 0);
}

void frmMain::ShowWhatIsListed(const RefreshResult& result) {
    tooManyIsTold_ = false;
    const bool isTold = std::exchange(cannotFollowIsTold_, result.cannotFollow);
    if (result.cannotFollow && isTold) {
        return; // and the text stays until another one takes its place
    }
    if (isVisible()) {
        panels_.SetInfo(tr("Done"));
    }
    ClearSelection();
    if (result.cannotFollow) {
        panels_.SetInfo(
            tr("New messages are not listed, because the message that was listed last has gone. Press F5 to "
               "list them."));
    }
}

// A tick says in a box that there are too many files, but only the first one does.
void frmMain::TellWhyNothingIsListed(const RefreshResult& result) {
    panels_.SetInfo(result.reason);
    if (result.outcome == RefreshOutcome::ArchiveMissing) {
        panels_.SetCount({});
    }
    if (result.outcome != RefreshOutcome::TooMany) {
        return;
    }
    const bool isTold = std::exchange(tooManyIsTold_, true);
    if (!cleansed_ && !(isTold && refreshIsByTick_)) {
        ReportError(result.reason);
    }
}

void frmMain::RefreshIfDue() {
    if (std::exchange(refreshIsDue_, false)) {
        QTimer::singleShot(0, this, [this] { mnuAcRefresh_Click(); });
    }
}

// Something that the user does goes before a look for new messages that has found none yet.
bool frmMain::MayChange() {
    if (jobs_.GivesWay()) {
        gaveWay_ = true;
        jobs_.GiveWay();
        gaveWay_ = false;
    }
    return jobs_.IsIdle() && !closing_;
}

// What was confirmed in a dialog is not dropped for a refresh that a tick began behind it.
bool frmMain::EndRefresh() {
    gaveWay_ = true;
    jobs_.GiveUp();
    gaveWay_ = false;
    return MayChange();
}

// What was toggled while a job runs, the filter or bulk mode, takes effect when it has ended.
void frmMain::mnuAcRefresh_Click() {
    if (!MayChange()) {
        refreshIsDue_ = !closing_;
        return;
    }
    state_.LastAddedFile.clear();
    state_.ActiveFilterDays = QString::number(buttons_[QStringLiteral("filter")]->isChecked() ? state_.FilterDays : 0);
    RefreshArchive(false);
}

void frmMain::tmrRefresh_Timer() {
    if (!jobs_.IsIdle()) {
        return;
    }
    switch (DecideTick(timer_.IntervalMs(), ports_.clock.Now().date(), model_.Count(), state_)) {
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
    RefreshArchive(true);
}

void frmMain::FirstTick() {
    connect(
        this, &frmMain::Refreshed, this, [this] { Guarded([this] { ShowFirstMessage(); }); }, Qt::SingleShotConnection);
    RefreshArchive(false);
}

void frmMain::ShowFirstMessage() {
    if (model_.Count() == 0) {
        return;
    }
    lvwMessages->SelectOnly(0);
    LoadOnItemClick = true;
    lvwMessages_ItemClick(0);
}

void frmMain::SetBusy(bool busy, int maximum) {
    if (!busy) {
        SortList();
    }
    // What was shown on entering is taken back on leaving, even if the window has been hidden since.
    if ((!busy && !busyIsShown_) || (busy && !isVisible())) {
        return;
    }
    const bool wasShown = std::exchange(busyIsShown_, busy);
    ShowFileProgress(busy, maximum);
    if (busy != wasShown) {
        busy ? ShowBusy() : ShowDone();
    }
}

void frmMain::ShowBusy() {
    if (lvwMessages->hasFocus()) {
        setFocus(Qt::OtherFocusReason); // or the tree would get it, and show its first node
    }
    lvwMessages->setEnabled(false);
    panels_.SetInfo(tr("Please wait till operation completes..."));
    ShowCommands();
    stbBottom->ShowStop(jobs_.IsAtWork());
    // An hourglass would lie over a dialog too, which does not have to wait.
    hourglassIsShown_ = QApplication::activeModalWidget() == nullptr;
    if (hourglassIsShown_) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    }
}

void frmMain::ShowDone() {
    lvwMessages->setEnabled(true);
    panels_.SetInfo(tr("Done"));
    ShowCommands();
    stbBottom->ShowStop(false);
    if (std::exchange(hourglassIsShown_, false)) {
        QApplication::restoreOverrideCursor();
    }
    if (!isMinimized()) {
        lvwMessages->setFocus();
    }
}

void frmMain::ShowFileProgress(bool show, int maximum) {
    stbBottom->ShowFileProgress(show, maximum);
}

void frmMain::ShowProgress(int value) {
    stbBottom->Progress().setValue(std::min(value, stbBottom->Progress().maximum()));
}

void frmMain::ClearMessageView() {
    model_.Clear();
    ClearContents();
}

void frmMain::ClearContents() {
    contents_->Clear();
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
