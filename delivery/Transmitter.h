#pragma once

#include "delivery/Delivery.h"

#include <functional>
#include <optional>

namespace quellbox {

/// Hands messages to the other side, many at once. Every method may be called from several threads.
class Transmitter {
public:
    /// Asked now and then; a transmission ends early when it says no.
    using GoOn = std::function<bool()>;

    virtual ~Transmitter() = default;

    /// Gives the message that is to be transmitted, at the moment when that can begin; nothing where there is none to
    /// send. Called once at most. What it throws goes on.
    using Load = std::function<std::optional<OutgoingMessage>()>;

    /// Transmits one message, and waits for the answer. Failed where it was not loaded, or could not be.
    virtual DeliveryOutcome Transmit(const Load& load, const GoOn& goOn) = 0;

    /// As ReleaseWay::Target().
    virtual QString Target() const = 0;
};

} // namespace quellbox
