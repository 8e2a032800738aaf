#include "app/WindowJobs.h"

#include "platform/RuntimeError.h"
#include "settings/ChosenProfile.h"

#include <utility>

namespace quellbox {

namespace {

// What ends sooner would only flicker.
constexpr int busyAfterMs = 100;

} // namespace

WindowJobs::WindowJobs(RefreshPorts ports, AppState& state, MessageListModel& model)
    : ports_(ports), state_(state), model_(model), refresh_(ports, state, model),
      disposal_(ports.files, ports.pool, model), cleansing_(ports.files, ports.pool),
      putBack_(ports.files, ports.pool) {
    showBusy_.setSingleShot(true);
    showBusy_.setInterval(busyAfterMs);
    showBusy_.callOnTimeout([this] { ShowBusy(); });
    connect(&refresh_, &RefreshTask::Counted, this, &WindowJobs::SetMaximum);
    connect(&refresh_, &RefreshTask::Progress, this, &WindowJobs::RowsAdded);
    connect(&refresh_, &RefreshTask::Ended, this, [this](const RefreshResult& result) {
        End();
        Q_EMIT RefreshEnded(result);
        TellEnd();
    });
    connect(&disposal_, &DisposalTask::Progress, this, &WindowJobs::Progress);
    connect(&disposal_, &DisposalTask::RowsLeft, this, &WindowJobs::RowsLeft);
    connect(&disposal_, &DisposalTask::Ended, this, [this](const DisposalResult& result) {
        End();
        Q_EMIT DisposalEnded(result);
        TellEnd();
    });
    connect(&cleansing_, &CleansingTask::Counted, this, &WindowJobs::SetMaximum);
    connect(&cleansing_, &CleansingTask::Progress, this, &WindowJobs::Progress);
    connect(&cleansing_, &CleansingTask::Removing, this, &WindowJobs::Removing);
    connect(&cleansing_, &CleansingTask::Ended, this, [this](const CleansingResult& result) {
        End();
        Q_EMIT CleansingEnded(result);
        TellEnd();
    });
    connect(&putBack_, &PutBackTask::Progress, this, &WindowJobs::Progress);
    connect(&putBack_, &PutBackTask::Ended, this, [this](const PutBackResult& result) {
        End();
        Q_EMIT PutBackEnded(result);
        TellEnd();
    });
}

void WindowJobs::Refresh(bool markNew, bool bulk, std::shared_ptr<ActionRecord> record,
                         std::shared_ptr<ReleaseWay> way) {
    if (Begin(Activity::Refreshing, 0)) {
        isByTick_ = markNew;
        refresh_.Start(markNew, bulk, std::move(record), std::move(way));
    }
}

void WindowJobs::Dispose(qint16 action, const DisposalFolders& folders, std::vector<int> rows,
                         std::shared_ptr<KeptFolder> kept, std::shared_ptr<ActionRecord> record) {
    if (Begin(Activity::Working, static_cast<int>(rows.size()))) {
        disposal_.Start(action, folders, std::move(rows), std::move(kept), std::move(record));
    }
}

void WindowJobs::Cleanse(const QString& archiveDir, qint16 days, std::shared_ptr<KeptFolder> kept,
                         std::shared_ptr<ActionRecord> record) {
    if (Begin(Activity::Working, 0)) {
        cleansing_.Start(
            archiveDir, days, ports_.clock.Now().date(), std::move(kept), std::move(record),
            [this](const QString& name) { return KnownRow(name); }, ChosenProfile(state_).places);
    }
}

/// What the list knows of a message, which it need not have.
MessageRow WindowJobs::KnownRow(const QString& name) const {
    const MessageRow* row = model_.Find(name);
    return row == nullptr ? MessageRow(name, -1, 0, {}) : *row;
}

void WindowJobs::PutFilesBack(std::vector<PutBack> items, QStringList emptied, std::shared_ptr<ActionRecord> record) {
    if (Begin(Activity::Working, static_cast<int>(items.size()))) {
        putBack_.Start(std::move(items), std::move(emptied), std::move(record));
    }
}

void WindowJobs::Call(Effect effect, std::function<Error()> call, std::function<void(const Error&)> done) {
    if (!Begin(Activity::Working, 0)) {
        return;
    }
    callEffect_ = effect;
    callDone_ = std::move(done);
    callError_ = std::nullopt;
    call_.emplace(
        ports_.pool, 1, [call = std::move(call)](size_t) { return call(); },
        [this](size_t, Error error) { callError_ = std::move(error); }, [this](SeriesEnd how) { EndCall(how); },
        oneAtATime);
    call_->Start();
}

void WindowJobs::EndCall(SeriesEnd how) {
    if (how == SeriesEnd::Failed) {
        callError_ = TextOf(call_->Failure());
    }
    const std::function<void(const Error&)> done = std::exchange(callDone_, {});
    End();
    if (how != SeriesEnd::Cancelled) {
        done(callError_);
    }
    TellEnd();
}

void WindowJobs::TellEnd() {
    if (!IsAtWork()) {
        Q_EMIT JobEnded();
    }
}

void WindowJobs::Stop() {
    const bool isWaiting = disposal_.IsCancelled() || cleansing_.IsCancelled() || putBack_.IsCancelled();
    if (isWaiting || refresh_.IsRunning() || (activity_ == Activity::Working && callDone_)) {
        GiveUp();
        return;
    }
    disposal_.Cancel();
    cleansing_.Cancel();
    putBack_.Cancel();
}

void WindowJobs::GiveUp() {
    const bool refreshMoves = refresh_.IsRunning() && state_.TolerationLevel == 2;
    const bool onlyReads = callDone_ && callEffect_ == Effect::Reads;
    leftChanges_ = leftChanges_ || refreshMoves || (activity_ == Activity::Working && !onlyReads);
    refresh_.Cancel();
    disposal_.GiveUp();
    cleansing_.GiveUp();
    putBack_.GiveUp();
    if (callDone_) {
        call_->GiveUp();
    }
}

bool WindowJobs::MakeWay() {
    if (GivesWay()) {
        isMakingWay_ = true;
        refresh_.GiveWay();
        isMakingWay_ = false;
    }
    return IsIdle();
}

bool WindowJobs::EndRefresh() {
    isMakingWay_ = true;
    GiveUp();
    isMakingWay_ = false;
    return MakeWay();
}

void WindowJobs::Close() {
    isClosed_ = true;
    GiveUp();
    activity_ = Activity::Closing;
}

bool WindowJobs::Begin(Activity activity, int maximum) {
    if (!IsIdle() || isClosed_) {
        return false;
    }
    activity_ = activity;
    maximum_ = maximum;
    isShown_ = false;
    showBusy_.start();
    Q_EMIT ActivityChanged();
    return true;
}

void WindowJobs::End() {
    showBusy_.stop();
    isShown_ = false;
    activity_ = isClosed_ ? Activity::Closing : Activity::Idle;
    Q_EMIT ActivityChanged();
}

void WindowJobs::SetMaximum(int maximum) {
    maximum_ = maximum;
    TellBusy();
}

void WindowJobs::TellBusy() {
    if (isShown_) {
        Q_EMIT BusyDue(maximum_);
    }
}

void WindowJobs::ShowBusy() {
    isShown_ = true;
    Q_EMIT BusyDue(maximum_);
}

} // namespace quellbox
