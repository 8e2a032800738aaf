#pragma once

#include "app/WindowParts.h"
#include "delivery/AwaitedPassword.h"
#include "delivery/ReleaseWay.h"
#include "delivery/Transmitter.h"
#include "messages/FileFailure.h"
#include "platform/OrderedWork.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

struct RefreshResult;

/// Makes the way on which messages are unblocked, as the settings have it, and looks after messages that a program has
/// left on their way.
class DeliveryDesk : public QObject {
    Q_OBJECT

public:
    explicit DeliveryDesk(const WindowParts& parts);

    /// The way for one action on the present archive; null where messages go into the pickup directory. A password that
    /// is needed is asked for at once, and whoever releases a message waits for it. Where that has failed, only the
    /// user has it asked for once more.
    enum class Starter { User, Refresh };
    std::shared_ptr<ReleaseWay> NewWay(Starter starter);

    /// Who transmits a message that is in no archive; null as with NewWay().
    std::shared_ptr<Transmitter> NewTransmitter();

    /// The password that is kept is another one by now.
    void ForgetPassword() { password_ = nullptr; }

    /// What is under way ends as soon as it can.
    void Close();

    /// Brings back what was being sent when a program ended, unless another one may still be at it.
    void BringBackLeftBehind(const RefreshResult& result);

private:
    std::unique_ptr<Transmitter> NewTransmitterFor(Starter starter);
    std::shared_ptr<const AwaitedPassword> PasswordFor(Starter starter);
    void TellInterrupted(const std::vector<FileFailure>& failures);

    WindowParts parts_;
    std::vector<std::weak_ptr<ReleaseWay>> ways_;
    std::shared_ptr<const AwaitedPassword> password_; // asked for once, and not by every refresh
    QString account_;                                 // whose it is
    std::optional<OrderedWork<std::vector<FileFailure>>> bringing_;
};

} // namespace quellbox
