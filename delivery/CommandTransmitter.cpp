#include "delivery/CommandTransmitter.h"

#include <QSemaphoreReleaser>

#include <chrono>

namespace quellbox {

namespace {

constexpr int mostAtOnce = 4;
constexpr std::chrono::minutes patience{10}; // as RFC 5321, section 4.5.3.2.6, gives a server after the last line

} // namespace

CommandTransmitter::CommandTransmitter(const QString& line)
    : line_(line), command_(ParseDeliveryCommand(line, &problem_)), free_(mostAtOnce) {}

DeliveryOutcome CommandTransmitter::Transmit(const Load& load, const GoOn& goOn) {
    if (!command_) {
        return {DeliveryFate::Failed, problem_};
    }
    free_.acquire();
    const QSemaphoreReleaser release(free_);
    const std::optional<OutgoingMessage> message = load();
    return message ? RunDeliveryCommand(*command_, message->envelope, message->bytes, patience, goOn)
                   : DeliveryOutcome();
}

QString CommandTransmitter::Target() const {
    return QStringLiteral("command:") + (command_ ? command_->program : QString());
}

} // namespace quellbox
