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

SmtpTransmitter::SmtpTransmitter(SmtpServer server, std::shared_ptr<const AwaitedPassword> password, int connections)
    : server_(std::move(server)), password_(std::move(password)), left_(connections) {}

SmtpTransmitter::~SmtpTransmitter() = default;

DeliveryOutcome SmtpTransmitter::Transmit(const Envelope& envelope, const QByteArray& message, const GoOn& goOn) {
    if (const QString trouble = TroubleWithPassword(goOn); !trouble.isEmpty()) {
        return {DeliveryFate::Failed, trouble};
    }
    std::unique_ptr<Connection> connection = Take(goOn);
    if (!connection) {
        const QMutexLocker lock(&mutex_);
        return {DeliveryFate::Failed, failure_.isEmpty() ? Stopped() : failure_};
    }
    connection->goOn = goOn;
    DeliveryOutcome outcome = connection->session.Deliver(envelope, message);
    connection->goOn = nullptr;
    GiveBack(std::move(connection), outcome);
    return outcome;
}

/// Waits for a connection that nobody uses. Null when nobody is to go on, or the server cannot be reached.
std::unique_ptr<SmtpTransmitter::Connection> SmtpTransmitter::Take(const GoOn& goOn) {
    QMutexLocker lock(&mutex_);
    while (idle_.empty() && left_ == 0 && failuresInARow_ < mostFailuresInARow && goOn()) {
        givenBack_.wait(&mutex_, QDeadlineTimer(askAgainMs));
    }
    if (failuresInARow_ >= mostFailuresInARow || !goOn()) {
        return nullptr;
    }
    if (idle_.empty()) {
        --left_;
        return std::make_unique<Connection>(server_);
    }
    std::unique_ptr<Connection> connection = std::move(idle_.back());
    idle_.pop_back();
    return connection;
}

void SmtpTransmitter::GiveBack(std::unique_ptr<Connection> connection, const DeliveryOutcome& outcome) {
    const QMutexLocker lock(&mutex_);
    if (connection->session.IsConnected()) {
        failuresInARow_ = 0;
    } else if (outcome.fate == DeliveryFate::Failed || outcome.fate == DeliveryFate::Refused) {
        ++failuresInARow_;
        failure_ = outcome.words;
    }
    idle_.push_back(std::move(connection));
    givenBack_.wakeOne();
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
