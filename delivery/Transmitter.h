#pragma once

#include "delivery/Delivery.h"

#include <functional>

namespace quellbox {

/// Hands messages to the other side, many at once. Every method may be called from several threads.
class Transmitter {
public:
    /// Asked now and then; a transmission ends early when it says no.
    using GoOn = std::function<bool()>;

    virtual ~Transmitter() = default;

    /// Transmits one message, and waits for the answer.
    virtual DeliveryOutcome Transmit(const Envelope& envelope, const QByteArray& message, const GoOn& goOn) = 0;

    /// As ReleaseWay::Target().
    virtual QString Target() const = 0;
};

} // namespace quellbox
