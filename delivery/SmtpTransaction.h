#pragma once

#include "delivery/SmtpConnection.h"

#include <vector>

namespace quellbox {

/// One message over one connection (RFC 5321, section 3.3), which goes to all recipients or to none. Where the server
/// offers it, commands are sent together (RFC 2920).
class SmtpTransaction {
public:
    /// `text` comes from SmtpText(). What is given has to live as long as this object.
    SmtpTransaction(SmtpConnection& connection, const SmtpServer& server, const Envelope& envelope,
                    const QByteArray& text);

    /// Says everything and returns what has become of it. To be called once.
    DeliveryOutcome Run();

    /// Whether another message may follow over the connection.
    bool IsConnectionUsable() const { return isUsable_; }

    /// Whether the connection has ended, or the server has said that it ends it, before this message was answered at
    /// all. Nothing of it can have been taken then.
    bool EndedUnheard() const { return endedUnheard_; }

private:
    enum class Kind { Mail, Recipient, Data };
    struct Command {
        Kind kind;
        QByteArray line;
        QByteArray address;
    };
    using Group = std::vector<Command>;

    QString ProblemOfMessage() const;
    std::optional<DeliveryOutcome> TooLarge() const;
    QByteArray MailLine() const;
    std::vector<Group> Groups() const;

    std::optional<DeliveryOutcome> Say(const Group& group);
    std::optional<DeliveryOutcome> Hear(const Command& command);
    void Withdraw();
    DeliveryOutcome SendText();
    std::optional<DeliveryOutcome> AnsweredEarly();
    DeliveryOutcome SendEnd();

    DeliveryOutcome Broken(SmtpEnd end);
    DeliveryOutcome Unexpected(const SmtpReply& reply);

    SmtpConnection& connection_;
    const SmtpServer& server_;
    const Envelope& envelope_;
    const QByteArray& text_;
    const qint64 size_;
    bool hasEightBits_ = false;
    bool needsUtf8_ = false;
    bool isHeard_ = false;
    bool endedUnheard_ = false;
    bool isUsable_ = true;
    bool isTextAwaited_ = false;
};

} // namespace quellbox
