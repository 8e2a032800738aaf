#include "delivery/SmtpSession.h"

#include "delivery/EnvelopeAddress.h"
#include "delivery/SmtpText.h"
#include "delivery/SmtpTransaction.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr std::chrono::milliseconds longestLeave(2000);

} // namespace

SmtpSession::SmtpSession(SmtpServer server, std::function<bool()> goOn)
    : server_(std::move(server)), goOn_(std::move(goOn)) {}

SmtpSession::~SmtpSession() {
    Close();
}

DeliveryOutcome SmtpSession::Deliver(const Envelope& envelope, const QByteArray& message) {
    hasFailedToConnect_ = false;
    if (const QString problem = ProblemOfEnvelope(envelope); !problem.isEmpty()) {
        return {DeliveryFate::Failed, problem};
    }
    if (goOn_ && !goOn_()) {
        return {DeliveryFate::Failed, TextOfEnd(SmtpEnd::Stopped, server_)};
    }
    if (connection_ && !connection_->IsQuiet()) {
        connection_.reset();
    }
    const QByteArray text = SmtpText(message);
    bool endedUnheard = false;
    if (connection_) {
        DeliveryOutcome outcome = Talk(envelope, text, endedUnheard);
        if (!endedUnheard) {
            return outcome;
        }
    }
    if (const auto problem = Connect()) {
        return *problem;
    }
    return Talk(envelope, text, endedUnheard);
}

std::optional<DeliveryOutcome> SmtpSession::Connect() {
    auto connection = std::make_unique<SmtpConnection>(server_, goOn_);
    auto problem = connection->Open();
    hasFailedToConnect_ = problem.has_value();
    if (!problem) {
        connection_ = std::move(connection);
    }
    return problem;
}

DeliveryOutcome SmtpSession::Talk(const Envelope& envelope, const QByteArray& text, bool& endedUnheard) {
    SmtpTransaction transaction(*connection_, server_, envelope, text);
    DeliveryOutcome outcome = transaction.Run();
    endedUnheard = transaction.EndedUnheard();
    if (!transaction.IsConnectionUsable()) {
        connection_.reset();
    }
    return outcome;
}

void SmtpSession::Close() {
    if (!connection_) {
        return;
    }
    SmtpReply reply;
    if (connection_->Send("QUIT\r\n") == SmtpEnd::None) {
        connection_->Receive(reply, std::min(server_.timeLimit, longestLeave));
    }
    connection_.reset();
}

} // namespace quellbox
