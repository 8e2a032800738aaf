#include "delivery/SmtpTransaction.h"

#include "delivery/SmtpText.h"
#include "mail/DisplayText.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

// Whoever stops while the server decides leaves it this long, since nobody knows afterwards where the message is.
constexpr std::chrono::seconds graceForDecision(3);
constexpr QByteArrayView endOfText(".\r\n");

bool HasEightBits(const QByteArray& bytes) {
    return std::any_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
}

DeliveryOutcome UncertainOutcome() {
    return {DeliveryFate::Uncertain,
            QCoreApplication::translate("quellbox", "The connection ended before the server had answered: the message "
                                                    "may have been delivered.")};
}

} // namespace

SmtpTransaction::SmtpTransaction(SmtpConnection& connection, const SmtpServer& server, const Envelope& envelope,
                                 const QByteArray& text)
    : connection_(connection), server_(server), envelope_(envelope), text_(text), size_(SmtpTextSize(text)),
      hasEightBits_(HasEightBits(text)),
      needsUtf8_(HasEightBits(envelope.sender) ||
                 std::any_of(envelope.recipients.begin(), envelope.recipients.end(), HasEightBits)) {}

QString SmtpTransaction::ProblemOfMessage() const {
    if (needsUtf8_ && !connection_.Capabilities().smtpUtf8) {
        return QCoreApplication::translate("quellbox", "The server takes no addresses with letters outside ASCII.");
    }
    if (hasEightBits_ && !connection_.Capabilities().eightBit) {
        return QCoreApplication::translate(
            "quellbox",
            "The message has 8-bit characters, which the server does not take. Converting it would make its "
            "signatures invalid.");
    }
    return {};
}

std::optional<DeliveryOutcome> SmtpTransaction::TooLarge() const {
    const qint64 limit = connection_.Capabilities().sizeLimit;
    if (limit == 0 || size_ <= limit) {
        return std::nullopt;
    }
    return DeliveryOutcome{DeliveryFate::Refused,
                           QCoreApplication::translate("quellbox", "The message has %1; the server takes at most %2.")
                               .arg(QLocale().formattedDataSize(size_), QLocale().formattedDataSize(limit))};
}

QByteArray SmtpTransaction::MailLine() const {
    const SmtpCapabilities& offered = connection_.Capabilities();
    QByteArray line = "MAIL FROM:<" + envelope_.sender + ">";
    if (offered.size) {
        line += " SIZE=" + QByteArray::number(size_);
    }
    if (hasEightBits_) {
        line += " BODY=8BITMIME";
    }
    if (needsUtf8_) {
        line += " SMTPUTF8";
    }
    return line + "\r\n";
}

std::vector<SmtpTransaction::Group> SmtpTransaction::Groups() const {
    Group commands{{Kind::Mail, MailLine(), {}}};
    for (const QByteArray& address : envelope_.recipients) {
        commands.push_back({Kind::Recipient, "RCPT TO:<" + address + ">\r\n", address});
    }
    const Command data{Kind::Data, "DATA\r\n", {}};
    std::vector<Group> groups;
    if (!connection_.Capabilities().pipelining) {
        for (Command& command : commands) {
            groups.push_back({std::move(command)});
        }
        groups.push_back({data});
        return groups;
    }
    // After DATA nothing can be taken back for the recipients that were accepted; a single one may be refused.
    if (envelope_.recipients.size() == 1) {
        commands.push_back(data);
        return {std::move(commands)};
    }
    return {std::move(commands), {data}};
}

DeliveryOutcome SmtpTransaction::Run() {
    if (const QString problem = ProblemOfMessage(); !problem.isEmpty()) {
        return {DeliveryFate::Failed, problem};
    }
    if (const auto refusal = TooLarge()) {
        return *refusal;
    }
    for (const Group& group : Groups()) {
        if (const auto outcome = Say(group)) {
            if (isUsable_) {
                Withdraw();
            }
            return *outcome;
        }
    }
    return SendText();
}

/// Sends a group of commands and hears what the server has to say to each; the first thing that went wrong, if any did.
std::optional<DeliveryOutcome> SmtpTransaction::Say(const Group& group) {
    QByteArray lines;
    for (const Command& command : group) {
        lines += command.line;
    }
    if (const SmtpEnd end = connection_.Send(lines); end != SmtpEnd::None) {
        return Broken(end);
    }
    std::optional<DeliveryOutcome> first;
    for (const Command& command : group) {
        auto outcome = Hear(command);
        if (!first) {
            first = std::move(outcome);
        }
        if (!isUsable_) {
            break;
        }
    }
    return first;
}

std::optional<DeliveryOutcome> SmtpTransaction::Hear(const Command& command) {
    SmtpReply reply;
    if (const SmtpEnd end = connection_.Receive(reply, server_.timeLimit); end != SmtpEnd::None) {
        return Broken(end);
    }
    const bool isFirst = !std::exchange(isHeard_, true);
    if (reply.EndsConnection()) {
        isUsable_ = false;
        endedUnheard_ = isFirst;
    }
    if (reply.IsRefusal()) {
        const QString words = reply.Words();
        return DeliveryOutcome{DeliveryFate::Refused,
                               command.kind == Kind::Recipient
                                   ? CleanseForDisplay(QString::fromUtf8(command.address)) + QLatin1String(": ") + words
                                   : words};
    }
    const bool isExpected = command.kind == Kind::Data ? reply.WantsMore() : reply.IsDone();
    if (!isExpected) {
        return Unexpected(reply);
    }
    isTextAwaited_ = command.kind == Kind::Data;
    return std::nullopt;
}

/// Takes back what the server has accepted, so that the next message can begin.
void SmtpTransaction::Withdraw() {
    // A server that has refused the recipient may yet wait for a text, which then is none (RFC 2920, section 3.1).
    SmtpReply reply;
    const bool isAnswered =
        connection_.Send(isTextAwaited_ ? endOfText : QByteArrayView("RSET\r\n")) == SmtpEnd::None &&
        connection_.Receive(reply, server_.timeLimit) == SmtpEnd::None;
    isUsable_ = isAnswered && !reply.EndsConnection() && (isTextAwaited_ || reply.IsDone());
}

DeliveryOutcome SmtpTransaction::SendText() {
    if (const SmtpEnd end = connection_.Send(text_); end != SmtpEnd::None) {
        const auto early = AnsweredEarly();
        return early ? *early : Broken(end);
    }
    if (!connection_.IsQuiet()) {
        const auto early = AnsweredEarly();
        return early ? *early : Broken(SmtpEnd::Closed);
    }
    if (!connection_.GoesOn()) {
        return Broken(SmtpEnd::Stopped);
    }
    return SendEnd();
}

/// What a server has said before it had the whole text. It never gets the rest, so that it can have taken nothing.
std::optional<DeliveryOutcome> SmtpTransaction::AnsweredEarly() {
    const auto reply = connection_.TakeWaiting();
    if (!reply) {
        return std::nullopt;
    }
    isUsable_ = false;
    return reply->IsRefusal() ? DeliveryOutcome{DeliveryFate::Refused, reply->Words()} : Unexpected(*reply);
}

/// From here on the server may have the message, whatever goes wrong.
DeliveryOutcome SmtpTransaction::SendEnd() {
    isUsable_ = false;
    SmtpReply reply;
    if (connection_.Send(endOfText) != SmtpEnd::None ||
        connection_.Receive(reply, 2 * server_.timeLimit, graceForDecision) != SmtpEnd::None) {
        return UncertainOutcome();
    }
    isUsable_ = reply.IsDone() || (reply.IsRefusal() && !reply.EndsConnection());
    if (reply.IsDone()) {
        return {DeliveryFate::Delivered, reply.Words()};
    }
    return reply.IsRefusal() ? DeliveryOutcome{DeliveryFate::Refused, reply.Words()} : UncertainOutcome();
}

DeliveryOutcome SmtpTransaction::Broken(SmtpEnd end) {
    isUsable_ = false;
    endedUnheard_ = end == SmtpEnd::Closed && !isHeard_;
    return {DeliveryFate::Failed, TextOfEnd(end, server_)};
}

DeliveryOutcome SmtpTransaction::Unexpected(const SmtpReply& reply) {
    isUsable_ = false;
    return {DeliveryFate::Failed, QCoreApplication::translate("quellbox", "The server %1 gave an unexpected answer: %2")
                                      .arg(server_.host, reply.Words())};
}

} // namespace quellbox
