#include "app/RefreshDesk.h"

#include "app/BusyDisplay.h"
#include "app/ContentsPane.h"
#include "app/DeliveryDesk.h"
#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "delivery/ChosenDelivery.h"
#include "history/Journal.h"
#include "messages/FailureList.h"

#include <QLocale>

#include <utility>

namespace quellbox {

RefreshDesk::RefreshDesk(const WindowParts& parts, BusyDisplay& busy, ListDesk& list, DeliveryDesk& delivery)
    : parts_(parts), busy_(busy), list_(list), delivery_(delivery) {
    const WindowJobs* jobs = &parts_.jobs;
    const auto showCount = [this](int rows) { parts_.panels.SetCount(QString::number(rows)); };
    connect(jobs, &WindowJobs::RowsAdded, this, showCount);
    connect(jobs, &WindowJobs::RowsLeft, this, showCount);
    connect(jobs, &WindowJobs::RefreshEnded, this, parts_.errors.Guarded(this, &RefreshDesk::jobs_RefreshEnded));
    connect(jobs, &WindowJobs::JobEnded, this, &RefreshDesk::RefreshIfDue);
    connect(&parts_.timer, &RefreshTimer::Tick, this, parts_.errors.Guarded(this, &RefreshDesk::tmrRefresh_Timer));
}

bool RefreshDesk::IsInBulkMode() const {
    return parts_.menus.Entry("mnuViewBulk").isChecked();
}

void RefreshDesk::RefreshArchive(bool markNew) {
    if (!parts_.jobs.IsIdle()) {
        return;
    }
    parts_.timer.Stop();
    isByTick_ = markNew;
    parts_.contents.Clear();
    if (parts_.state.LastAddedFile.isEmpty()) {
        parts_.panels.SetCount({});
    }
    const AppState& state = parts_.state;
    if (state.TolerationLevel != 2) {
        parts_.jobs.Refresh(markNew, IsInBulkMode());
        return;
    }
    const std::shared_ptr<ReleaseWay> way = delivery_.NewWay(DeliveryDesk::Starter::Refresh);
    parts_.jobs.Refresh(
        markNew, IsInBulkMode(),
        parts_.journal.Begin({HistoryAction::AutoTolerate, state.ArchiveDir, TargetOf(way.get(), state)}), way);
}

void RefreshDesk::RefreshCleansed(qint32 removed) {
    cleansed_ = removed;
    const auto tell = [this] {
        parts_.panels.SetInfo(tr("%n Messages removed !", nullptr, *cleansed_));
        cleansed_.reset();
    };
    connect(this, &RefreshDesk::Refreshed, this, tell, Qt::SingleShotConnection);
    RefreshArchive(false);
}

void RefreshDesk::jobs_RefreshEnded(const RefreshResult& result) {
    parts_.failures.TakeRefresh(result.failures, parts_.ports.clock.Now());
    outcome_ = result.outcome;
    if (parts_.jobs.IsClosed()) {
        return;
    }
    parts_.timer.SetInterval();
    if (parts_.jobs.IsMakingWay()) {
        return; // to what the user does now
    }
    parts_.errors.Guard([&] { ShowRefreshed(result); });
    Q_EMIT Refreshed();
    if (result.outcome == RefreshOutcome::Completed && std::exchange(isDaily_, false)) {
        Q_EMIT DailyRefreshed(result);
    }
}

void RefreshDesk::ShowRefreshed(const RefreshResult& result) {
    // After a cleansing, rows of messages that have gone must not stay for want of a new list.
    if (result.outcome == RefreshOutcome::ArchiveMissing || (cleansed_ && !result.reason.isEmpty())) {
        list_.ClearMessageView();
    }
    if (result.reason.isEmpty()) {
        ShowWhatIsListed(result);
    } else {
        list_.UpdateSelectionStatus();
        TellWhyNothingIsListed(result);
    }
    if (parts_.model.Count() > 0 && result.lastMessageWasRead) {
        parts_.list.scrollTo(parts_.model.index(0, 0));
    }
    parts_.panels.SetSize(QLocale().toString(parts_.ports.clock.Now(), QStringLiteral("dd-MMM hh:mm:ss")),
                          tr("Time of last screen update"));
    busy_.ShowFileProgress(false, 0);
}

void RefreshDesk::ShowWhatIsListed(const RefreshResult& result) {
    tooManyIsTold_ = false;
    const bool isTold = std::exchange(cannotFollowIsTold_, result.cannotFollow);
    if (result.cannotFollow && isTold && isByTick_) {
        return; // and the text stays until another one takes its place
    }
    if (parts_.window.isVisible()) {
        parts_.panels.SetInfo(tr("Done"));
    }
    list_.ClearSelection();
    if (result.cannotFollow) {
        parts_.panels.SetInfo(
            tr("New messages are not listed, because the message that was listed last has gone. Press F5 to "
               "list them."));
    }
}

// A tick says in a box that there are too many files, but only the first one does.
void RefreshDesk::TellWhyNothingIsListed(const RefreshResult& result) {
    parts_.panels.SetInfo(result.reason);
    if (result.outcome == RefreshOutcome::ArchiveMissing) {
        parts_.panels.SetCount({});
    }
    if (result.outcome != RefreshOutcome::TooMany) {
        return;
    }
    const bool isTold = std::exchange(tooManyIsTold_, true);
    if (!cleansed_ && !(isTold && isByTick_)) {
        parts_.errors.Show(result.reason);
    }
}

void RefreshDesk::RefreshIfDue() {
    if (std::exchange(isDue_, false)) {
        QMetaObject::invokeMethod(this, &RefreshDesk::mnuAcRefresh_Click, Qt::QueuedConnection);
    }
}

// What was toggled while a job runs, the filter or bulk mode, takes effect when it has ended.
void RefreshDesk::mnuAcRefresh_Click() {
    if (!parts_.jobs.MakeWay()) {
        isDue_ = !parts_.jobs.IsClosed();
        return;
    }
    const bool filtered = parts_.menus.Button("filter").isChecked();
    parts_.state.LastAddedFile.clear();
    parts_.state.ActiveFilterDays = QString::number(filtered ? parts_.state.FilterDays : 0);
    RefreshArchive(false);
}

void RefreshDesk::tmrRefresh_Timer() {
    if (!parts_.jobs.IsIdle()) {
        return;
    }
    AppState& state = parts_.state;
    switch (DecideTick(parts_.timer.IntervalMs(), parts_.ports.clock.Now().date(), parts_.model.TotalCount(), state)) {
    case TickAction::Nothing:
        return;
    case TickAction::FirstRefresh:
        FirstTick();
        return;
    case TickAction::FullRefresh:
        isDaily_ = true;
        mnuAcRefresh_Click();
        return;
    case TickAction::RefillEmptyList:
        state.LastAddedFile.clear();
        break;
    case TickAction::IncrementalRefresh:
        break;
    }
    RefreshArchive(true);
}

void RefreshDesk::FirstTick() {
    const auto showFirstMessage = [this] {
        if (parts_.model.Count() > 0) {
            list_.ClickRow(0);
        }
    };
    connect(
        this, &RefreshDesk::Refreshed, this, [this, showFirstMessage] { parts_.errors.Guard(showFirstMessage); },
        Qt::SingleShotConnection);
    RefreshArchive(false);
}

void RefreshDesk::LeaveArchive() {
    parts_.state.LastAddedFile.clear();
    parts_.state.LastArrival = {};
    parts_.jobs.GiveUp();
    list_.ClearMessageView();
    parts_.contents.Forget(); // readers that are stuck in the archive that was left are none of the other's
    list_.UpdateSelectionStatus();
}

void RefreshDesk::mnuViewBulk_Click() {
    ShowBulkMode();
    mnuAcRefresh_Click();
}

// Lines of several texts are easier to follow on alternating colours; file names alone need none.
void RefreshDesk::ShowBulkMode() {
    parts_.list.setAlternatingRowColors(!IsInBulkMode());
}

} // namespace quellbox
