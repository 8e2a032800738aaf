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

    DeliveryOutcome Transmit(const Load& load, const GoOn& goOn) override;
    QString Target() const override;

private:
    struct Connection;
    struct Lease;

    std::unique_ptr<Connection> Take(const GoOn& goOn);
    bool MayMakeOne() const;
    bool IsFinal(std::unique_ptr<Connection>& connection, const DeliveryOutcome& outcome);
    void GiveBack(std::unique_ptr<Connection> connection);
    DeliveryOutcome TextOfNone();
    QString TroubleWithPassword(const GoOn& goOn);

    SmtpServer server_;
    const std::shared_ptr<const AwaitedPassword> password_;
    QMutex mutex_;
    QWaitCondition givenBack_;
    std::vector<std::unique_ptr<Connection>> idle_;
    int most_;                  ///< so many connections there may be
    int count_ = 0;             ///< so many there are, idle ones and others
    bool hasConnected_ = false; ///< before that there is one at most: a wrong password is not tried many times at once
    int failuresInARow_ = 0;    ///< of the only connection
    QString failure_;           ///< the words of the last of them
    bool hasPassword_ = false;
};

} // namespace quellbox
