#include "delivery/SmtpTransmitter.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMutexLocker>

#include <utility>

namespace quellbox {

namespace {

constexpr qint64 askAgainMs = 100;

// A server that takes no more connections of one client refuses some while others are at work.
constexpr int mostFailuresInARow = 3;

QString Stopped() {
    return QCoreApplication::translate("quellbox", "It was not sent any more.");
}

} // namespace

/// A session belongs to one thread at a time, and so does what it asks.
struct SmtpTransmitter::Connection {
    explicit Connection(const SmtpServer& server) : session(server, [this] { return !goOn || goOn(); }) {}

    GoOn goOn;
    SmtpSession session;
};

/// A connection that is given back at the end, unless it is gone by then.
struct SmtpTransmitter::Lease {
    Lease(SmtpTransmitter& itsOwner, std::unique_ptr<Connection> itsConnection)
        : owner(itsOwner), connection(std::move(itsConnection)) {}
    ~Lease() {
        if (connection) {
            owner.GiveBack(std::move(connection));
        }
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    SmtpTransmitter& owner;
    std::unique_ptr<Connection> connection;
};

SmtpTransmitter::SmtpTransmitter(SmtpServer server, std::shared_ptr<const AwaitedPassword> password, int connections)
    : server_(std::move(server)), password_(std::move(password)), most_(connections) {}

SmtpTransmitter::~SmtpTransmitter() = default;

// Where a server takes no more connections of one client, the message goes through one of those that there are.
DeliveryOutcome SmtpTransmitter::Transmit(const Load& load, const GoOn& goOn) {
    if (const QString trouble = TroubleWithPassword(goOn); !trouble.isEmpty()) {
        return {DeliveryFate::Failed, trouble};
    }
    std::optional<OutgoingMessage> message;
    for (;;) {
        Lease lease(*this, Take(goOn));
        if (!lease.connection) {
            return TextOfNone();
        }
        message = message ? std::move(message) : load();
        if (!message) {
            return {};
        }
        lease.connection->goOn = goOn;
        DeliveryOutcome outcome = lease.connection->session.Deliver(message->envelope, message->bytes);
        if (IsFinal(lease.connection, outcome)) {
            return outcome;
        }
    }
}

DeliveryOutcome SmtpTransmitter::TextOfNone() {
    const QMutexLocker lock(&mutex_);
    return {DeliveryFate::Failed, failure_.isEmpty() ? Stopped() : failure_};
}

// The caller holds the lock.
bool SmtpTransmitter::MayMakeOne() const {
    return count_ < (hasConnected_ ? most_ : 1);
}

/// Waits for a connection that nobody uses. Null when nobody is to go on, or the server cannot be reached.
std::unique_ptr<SmtpTransmitter::Connection> SmtpTransmitter::Take(const GoOn& goOn) {
    QMutexLocker lock(&mutex_);
    while (idle_.empty() && !MayMakeOne() && failuresInARow_ < mostFailuresInARow && goOn()) {
        givenBack_.wait(&mutex_, QDeadlineTimer(askAgainMs));
    }
    if (failuresInARow_ >= mostFailuresInARow || !goOn()) {
        return nullptr;
    }
    if (idle_.empty()) {
        ++count_;
        return std::make_unique<Connection>(server_);
    }
    std::unique_ptr<Connection> connection = std::move(idle_.back());
    idle_.pop_back();
    return connection;
}

/// False when the message is to be tried on another connection, because this one could not be made; it is gone then.
bool SmtpTransmitter::IsFinal(std::unique_ptr<Connection>& connection, const DeliveryOutcome& outcome) {
    const QMutexLocker lock(&mutex_);
    const bool hasFailed = connection->session.HasFailedToConnect();
    if (hasFailed && count_ > 1) {
        most_ = --count_;
        connection.reset();
        return false;
    }
    if (hasFailed) {
        // What the server has refused, it will refuse again.
        failuresInARow_ += outcome.fate == DeliveryFate::Refused ? mostFailuresInARow : 1;
        failure_ = outcome.words;
    } else if (connection->session.IsConnected()) {
        failuresInARow_ = 0;
        hasConnected_ = true;
    }
    return true;
}

void SmtpTransmitter::GiveBack(std::unique_ptr<Connection> connection) {
    connection->goOn = nullptr;
    const QMutexLocker lock(&mutex_);
    idle_.push_back(std::move(connection));
    givenBack_.wakeAll();
}

QString SmtpTransmitter::TroubleWithPassword(const GoOn& goOn) {
    if (!password_) {
        return {};
    }
    const std::optional<AwaitedPassword::Answer> answer = password_->Await(goOn);
    if (!answer) {
        return Stopped();
    }
    const QMutexLocker lock(&mutex_);
    if (answer->trouble.isEmpty() && !std::exchange(hasPassword_, true)) {
        server_.password = answer->password;
    }
    return answer->trouble;
}

QString SmtpTransmitter::Target() const {
    const QString scheme = server_.security == SmtpSecurity::Tls ? QStringLiteral("smtps") : QStringLiteral("smtp");
    return QStringLiteral("%1://%2:%3").arg(scheme, server_.host).arg(server_.port);
}

} // namespace quellbox
