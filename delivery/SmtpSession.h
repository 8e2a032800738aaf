#pragma once

#include "delivery/Delivery.h"
#include "delivery/SmtpServer.h"

#include <functional>
#include <memory>
#include <optional>

namespace quellbox {

class SmtpConnection;

/// Hands messages to an SMTP server, one after the other over one connection, which is made when it is first needed and
/// kept between messages. Its calls block, and belong on one thread at a time.
class SmtpSession {
public:
    /// `goOn` is asked at least ten times a second, on the thread that calls Deliver(), whether to go on; empty:
    /// always.
    explicit SmtpSession(SmtpServer server, std::function<bool()> goOn = {});
    /// Closes the connection.
    ~SmtpSession();
    SmtpSession(const SmtpSession&) = delete;
    SmtpSession& operator=(const SmtpSession&) = delete;

    /// Hands over one message, to all recipients or to none. Its line ends become CRLF, nothing else changes.
    ///
    /// Delivered: the server has taken the whole message, its words are those of that answer. Refused: it has answered
    /// with 4yz or 5yz at any step, connecting and logging in included; or the message is larger than it takes.
    /// Uncertain: the end of the message was sent and no answer has come; when `goOn` says no there, the answer may
    /// still come within three seconds. Failed: everything else. A message is sent again only where a connection that
    /// was kept has ended before the server has answered anything about it.
    DeliveryOutcome Deliver(const Envelope& envelope, const QByteArray& message);

    /// Whether there is a connection, as far as is known without asking the server.
    bool IsConnected() const { return connection_ != nullptr; }

    /// Whether the last message failed because no connection could be made.
    bool HasFailedToConnect() const { return hasFailedToConnect_; }

    /// Takes leave of the server (QUIT), if there is a connection, which takes two seconds at most.
    void Close();

private:
    std::optional<DeliveryOutcome> Connect();
    DeliveryOutcome Talk(const Envelope& envelope, const QByteArray& text, bool& endedUnheard);

    const SmtpServer server_;
    const std::function<bool()> goOn_;
    std::unique_ptr<SmtpConnection> connection_;
    bool hasFailedToConnect_ = false;
};

} // namespace quellbox
