#pragma once

#include "app/WindowParts.h"
#include "messages/DisposalTask.h"

#include <QObject>
#include <QStringList>

namespace quellbox {

class DeliveryDesk;
class ListDesk;

/// What is done with the selected messages: delete, unblock, tolerate; and the whitelist.
class ActionDesk : public QObject {
    Q_OBJECT

public:
    ActionDesk(const WindowParts& parts, ListDesk& list, DeliveryDesk& delivery);

    /// Unblocks or deletes the selected messages; `action` is one of Action.
    void ProcessSelectedMessages(qint16 action, const QStringList& toleratedNow = {});

    /// Offers to put the sender of the message on the whitelist, and unblocks it then.
    void TolerateSelectedSender();

    void MaintainWhitelist();

    /// Offers to put these senders on the whitelist, one after the other until one is declined, in dialogs above a
    /// window. Their messages stay where they are.
    void TolerateSenders(const QStringList& senders, QWidget& above);

    /// Shows what the last action could not do.
    void btnFailures_Click();

    void mnuActionsDelete_Click();
    void mnuActionsUnblock_Click();
    void mnuMessageDelete_Click();
    void mnuMessageUnblock_Click();

private:
    void jobs_DisposalEnded(const DisposalResult& result);
    void ShowNextMessage(int row);
    void ShowNoMessage();
    void OfferToTolerate(int row);

    WindowParts parts_;
    ListDesk& list_;
    DeliveryDesk& delivery_;
};

} // namespace quellbox
