#pragma once

#include "delivery/Transmitter.h"

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace quellbox {

/// What was handed to FakeTransmitters, and what they answer.
struct FakeTransmissions {
    std::function<DeliveryOutcome(const Envelope& envelope, const QByteArray& message)> answer = [](const Envelope&,
                                                                                                    const QByteArray&) {
        return DeliveryOutcome{DeliveryFate::Delivered, QStringLiteral("250 2.0.0 Ok: queued as 4711")};
    };
    std::mutex mutex;
    std::vector<std::pair<Envelope, QByteArray>> sent;
};

/// Sends nothing, and answers as it is told. `transmissions` has to outlive it.
class FakeTransmitter : public Transmitter {
public:
    explicit FakeTransmitter(FakeTransmissions& transmissions) : transmissions_(transmissions) {}

    DeliveryOutcome Transmit(const Load& load, const GoOn&) override {
        const std::optional<OutgoingMessage> message = load();
        if (!message) {
            return {};
        }
        {
            const std::lock_guard lock(transmissions_.mutex);
            transmissions_.sent.emplace_back(message->envelope, message->bytes);
        }
        return transmissions_.answer(message->envelope, message->bytes);
    }

    QString Target() const override { return QStringLiteral("smtp://fake:25"); }

private:
    FakeTransmissions& transmissions_;
};

} // namespace quellbox
