#pragma once

#include "archive/RefreshTask.h"
#include "dialogs/CleansingTask.h"
#include "messages/Activity.h"
#include "messages/DisposalTask.h"
#include "messages/PutBackTask.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace quellbox {

/// The long jobs of the main window, of which one runs at a time: refresh, disposal, cleansing, putting back, and
/// single calls that the user waits for. It knows no widget. The parts of the window connect themselves to what the
/// jobs tell.
class WindowJobs : public QObject {
    Q_OBJECT

public:
    /// What a single call gives back: what the user is told of its failure, or nothing.
    using Error = std::optional<QString>;

    /// What is lent has to outlive this object.
    WindowJobs(RefreshPorts ports, AppState& state, MessageListModel& model);

    /// A job that is started while another one runs is not begun. `markNew` says that it is a tick that refreshes.
    /// What is done is written into `record` where that is given.
    /// What is tolerated goes on `way` where that is given.
    void Refresh(bool markNew, bool bulk, std::shared_ptr<ActionRecord> record = nullptr,
                 std::shared_ptr<ReleaseWay> way = nullptr);

    /// What is deleted goes into `kept` where that is given.
    void Dispose(qint16 action, const DisposalFolders& folders, std::vector<int> rows,
                 std::shared_ptr<KeptFolder> kept = nullptr, std::shared_ptr<ActionRecord> record = nullptr);
    void Cleanse(const QString& archiveDir, qint16 days, std::shared_ptr<KeptFolder> kept = nullptr,
                 std::shared_ptr<ActionRecord> record = nullptr);

    /// Puts deleted messages back; see PutBackTask::Start().
    void PutFilesBack(std::vector<PutBack> items, QStringList emptied = {},
                      std::shared_ptr<ActionRecord> record = nullptr);

    /// What a single call may do to files.
    enum class Effect { Reads, Changes };

    /// Runs `call` beside this thread, and then `done` on it; not when the job was stopped.
    void Call(Effect effect, std::function<Error()> call, std::function<void(const Error&)> done);

    /// Tells again that a job lasts long enough to be shown, if one does, to those who could not show it.
    void TellBusy();

    Activity Now() const { return activity_; }
    bool IsIdle() const { return activity_ == Activity::Idle; }
    bool IsAtWork() const { return activity_ == Activity::Refreshing || activity_ == Activity::Working; }

    /// True while a tick looks for new messages and nothing shows it yet: whoever wants to do something goes first.
    bool GivesWay() const { return refresh_.IsIncremental() && isByTick_ && !isShown_; }

    /// Whatever the user does goes before such a look, which ends; what it has found and not shown is found again. True
    /// when no job runs then, and one may begin.
    bool MakeWay();

    /// The same for what was confirmed in a dialog: it is not dropped for a refresh that a tick began behind that, but
    /// ends it.
    bool EndRefresh();

    /// True while a refresh ends in favour of the user: its end is not to be seen.
    bool IsMakingWay() const { return isMakingWay_; }

    /// Escape: what has not begun does not begin. Said once more, what is under way is not waited for either. A refresh
    /// ends at once.
    void Stop();

    /// Ends the job before this returns, and tells its end. What is under way goes on beside.
    void GiveUp();

    /// No job begins any more.
    void Close();
    bool IsClosed() const { return isClosed_; }

    /// True when GiveUp() or Close() may have left calls under way that change files.
    bool LeftChangesUnderWay() const { return leftChanges_; }

Q_SIGNALS:
    /// A job has begun or ended. Sent before what tells the end of the job.
    void ActivityChanged();

    /// The job lasts long enough to be shown as one; the progress goes up to `maximum`, which is 0 while that is not
    /// known, and told again when it is.
    void BusyDue(int maximum);

    /// So many of the `maximum` have been dealt with.
    void Progress(int done);

    void RowsAdded(int rows);           ///< as RefreshTask::Progress()
    void RowsLeft(int count);           ///< as DisposalTask has it
    void Removing(const QString& name); ///< as CleansingTask has it
    void RefreshEnded(const RefreshResult& result);
    void DisposalEnded(const DisposalResult& result);
    void CleansingEnded(const CleansingResult& result);
    void PutBackEnded(const PutBackResult& result);

    /// The last that is told of any job, unless its end has begun another one.
    void JobEnded();

private:
    MessageRow KnownRow(const QString& name) const;
    bool Begin(Activity activity, int maximum);
    void End();
    void SetMaximum(int maximum);
    void ShowBusy();
    void EndCall(SeriesEnd how);
    void TellEnd();

    RefreshPorts ports_;
    const AppState& state_;
    const MessageListModel& model_;
    Activity activity_ = Activity::Idle;
    RefreshTask refresh_;
    DisposalTask disposal_;
    CleansingTask cleansing_;
    PutBackTask putBack_;
    std::optional<OrderedWork<Error>> call_;
    std::function<void(const Error&)> callDone_;
    Error callError_;
    QTimer showBusy_;
    int maximum_ = 0;
    bool isShown_ = false;
    bool isByTick_ = false; // the refresh
    bool isMakingWay_ = false;
    Effect callEffect_ = Effect::Reads;
    bool isClosed_ = false;
    bool leftChanges_ = false;
};

} // namespace quellbox
