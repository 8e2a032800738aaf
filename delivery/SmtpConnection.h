#pragma once

#include "delivery/Delivery.h"
#include "delivery/SmtpCapabilities.h"
#include "delivery/SmtpServer.h"

#include <QByteArrayView>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace quellbox {

/// How an exchange with a server has gone.
enum class SmtpEnd {
    None,     ///< as it should
    Closed,   ///< the connection has ended
    TimedOut, ///< nothing happened for too long
    Stopped,  ///< the program wants no more
    Junk      ///< what came in is no answer of a server
};

/// What the user reads when an exchange has ended so before the message was handed over.
QString TextOfEnd(SmtpEnd end, const SmtpServer& server);

/// A connection to a server, with protection and log-in done, over which commands and answers go. Its calls block, but
/// ask at least ten times a second whether to go on. After anything but SmtpEnd::None it is of no use any more.
class SmtpConnection {
public:
    /// `goOn` may be empty; it is called on the thread that calls the methods.
    SmtpConnection(SmtpServer server, std::function<bool()> goOn);
    /// Ends the connection without a word.
    ~SmtpConnection();
    SmtpConnection(const SmtpConnection&) = delete;
    SmtpConnection& operator=(const SmtpConnection&) = delete;

    /// Connects, begins TLS and logs in, as the server's description says. What has become of that when it failed: a
    /// server that has answered 4yz or 5yz has refused, in all other cases the delivery has failed.
    std::optional<DeliveryOutcome> Open();

    /// What the server offers; known after Open().
    const SmtpCapabilities& Capabilities() const;

    /// Whether the program wants to go on.
    bool GoesOn() const;

    /// Sends all bytes. The time limit is for each step forward. SmtpEnd::Stopped comes only when some may have been
    /// sent.
    SmtpEnd Send(QByteArrayView bytes);

    /// Waits for the next answer. Once the program wants no more, the answer may still come within `grace`.
    SmtpEnd Receive(SmtpReply& reply, std::chrono::milliseconds limit, std::chrono::milliseconds grace = {});

    /// The next answer, if it has come in already.
    std::optional<SmtpReply> TakeWaiting();

    /// Whether the server has neither said anything unasked nor closed the connection. Does not wait.
    bool IsQuiet();

private:
    class Link;

    std::unique_ptr<Link> link_;
};

} // namespace quellbox
