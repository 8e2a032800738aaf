#pragma once

#include "delivery/DeliveryCommand.h"
#include "delivery/Transmitter.h"

#include <QSemaphore>

namespace quellbox {

/// Hands each message to a program of its own, a few of which run at the same time.
class CommandTransmitter : public Transmitter {
public:
    /// `line` is the command as the user has written it; every message fails where it cannot be understood.
    explicit CommandTransmitter(const QString& line);

    DeliveryOutcome Transmit(const Load& load, const GoOn& goOn) override;
    QString Target() const override;

private:
    const QString line_;
    QString problem_; ///< of a line that cannot be understood
    const std::optional<DeliveryCommand> command_;
    QSemaphore free_;
};

} // namespace quellbox
