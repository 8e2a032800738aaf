#pragma once

#include "app/WindowParts.h"
#include "archive/RefreshTask.h"

#include <QObject>

#include <optional>

namespace quellbox {

class BusyDisplay;
class DeliveryDesk;
class ListDesk;

/// Has the list refreshed, by command, by tick and after a cleansing, and shows what has come of it.
class RefreshDesk : public QObject {
    Q_OBJECT

public:
    RefreshDesk(const WindowParts& parts, BusyDisplay& busy, ListDesk& list, DeliveryDesk& delivery);

    /// Begins a refresh; a full one when `LastAddedFile` is empty. Does nothing while a job runs.
    void RefreshArchive(bool markNew);

    /// Makes the list anew after a run that has removed that many messages, and tells their number.
    void RefreshCleansed(qint32 removed);

    /// How the last refresh ended; one that ended with an error counts as cancelled.
    RefreshOutcome Outcome() const { return outcome_; }

    /// The archive is another one: its rows go at once, so that nothing is done to them in the other.
    void LeaveArchive();

    /// The Refresh command: a full refresh with the current filter, at once or when the present job has ended.
    void mnuAcRefresh_Click();
    void mnuViewBulk_Click();

    /// Shows the list as bulk mode, or the other one, has it.
    void ShowBulkMode();

Q_SIGNALS:
    /// A refresh has ended, and is shown. One that has given way to the user is not told.
    void Refreshed();

    /// The first refresh of a session, or the first of a day that the timer has begun, was completed; one that was not
    /// is made up for by the next.
    void DailyRefreshed(const RefreshResult& result);

private:
    void jobs_RefreshEnded(const RefreshResult& result);
    void ShowRefreshed(const RefreshResult& result);
    void ShowWhatIsListed(const RefreshResult& result);
    void TellWhyNothingIsListed(const RefreshResult& result);
    void RefreshIfDue();
    void tmrRefresh_Timer();
    void FirstTick();
    bool IsInBulkMode() const;

    WindowParts parts_;
    BusyDisplay& busy_;
    ListDesk& list_;
    DeliveryDesk& delivery_;
    bool isDue_ = false; // the Refresh command was given while a job ran
    bool isByTick_ = false;
    bool isDaily_ = true;             // DailyRefreshed() is to be told
    bool cannotFollowIsTold_ = false; // that the message listed last has gone
    bool tooManyIsTold_ = false;
    std::optional<qint32> cleansed_;                     // messages that a run has removed, until its refresh has ended
    RefreshOutcome outcome_ = RefreshOutcome::Completed; // of the latest refresh
};

} // namespace quellbox
