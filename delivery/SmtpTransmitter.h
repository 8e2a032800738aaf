#pragma once

#include "delivery/AwaitedPassword.h"
#include "delivery/SmtpSession.h"
#include "delivery/Transmitter.h"

#include <QMutex>
#include <QWaitCondition>

#include <memory>
#include <vector>

namespace quellbox {

/// Hands messages to a mail server through several connections, each of which takes one message after the other. Where
/// the server cannot be reached, that is found out a few times and not again for each of thousands of messages.
class SmtpTransmitter : public Transmitter {
public:
    /// No server minds so many connections of one client, and the delay of each hardly counts then.
    static constexpr int mostConnections = 8;

    /// `password` is null where the server wants none.
    SmtpTransmitter(SmtpServer server, std::shared_ptr<const AwaitedPassword> password,
                    int connections = mostConnections);
    ~SmtpTransmitter() override;

    DeliveryOutcome Transmit(const Envelope& envelope, const QByteArray& message, const GoOn& goOn) override;
    QString Target() const override;

private:
    struct Connection;

    std::unique_ptr<Connection> Take(const GoOn& goOn);
    void GiveBack(std::unique_ptr<Connection> connection, const DeliveryOutcome& outcome);
    QString TroubleWithPassword(const GoOn& goOn);

    SmtpServer server_;
    const std::shared_ptr<const AwaitedPassword> password_;
    QMutex mutex_;
    QWaitCondition givenBack_;
    std::vector<std::unique_ptr<Connection>> idle_;
    int left_;               ///< so many more connections may be made
    int failuresInARow_ = 0; ///< of connecting
    QString failure_;        ///< the words of the last of them
    bool hasPassword_ = false;
};

} // namespace quellbox
