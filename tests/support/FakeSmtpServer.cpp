#include "tests/support/FakeSmtpServer.h"

#include <QProcess>
#include <QSslSocket>
#include <QTcpServer>

#include <algorithm>
#include <future>

namespace quellbox {

namespace {

using std::chrono::milliseconds;
using Moment = std::chrono::steady_clock::time_point;

constexpr int patienceMs = 10;
constexpr int longestHandshakeMs = 20'000;

QByteArray AddressIn(const QByteArray& line) {
    const qsizetype begin = line.indexOf('<') + 1;
    return line.mid(begin, line.lastIndexOf('>') - begin);
}

} // namespace

std::optional<TestCertificate> MakeTestCertificate(const QString& folder, const QString& name, const QString& subject) {
    const TestCertificate made{folder + QLatin1Char('/') + name + QStringLiteral(".pem"),
                               folder + QLatin1Char('/') + name + QStringLiteral(".key")};
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
                   QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                   QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=") + name,
                   QStringLiteral("-addext"), QStringLiteral("subjectAltName=") + subject, QStringLiteral("-keyout"),
                   made.key, QStringLiteral("-out"), made.file});
    const bool isMade = openssl.waitForFinished() && openssl.exitCode() == 0;
    return isMade ? std::optional(made) : std::nullopt;
}

/// One connection, on a thread of its own.
class FakeSmtpServer::Conversation {
public:
    Conversation(FakeSmtpServer& server, int number) : server_(server), traits_(server.traits_), number_(number) {}

    void Run(quintptr descriptor) {
        if (!socket_.setSocketDescriptor(static_cast<qintptr>(descriptor))) {
            return;
        }
        // Answers to commands that came together would otherwise wait for the client's receipts.
        socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        arrived_ = Clock::now() + traits_.latency; // The first half goes for the connection itself.
        if (traits_.security == SmtpSecurity::Tls && !Encrypt()) {
            return;
        }
        if (!Say(SmtpStep::Greeting, {}, "220 fake.example ESMTP\r\n")) {
            return;
        }
        while (const auto line = ReadLine()) {
            if (!Obey(*line)) {
                break;
            }
        }
        Leave();
    }

private:
    using Clock = std::chrono::steady_clock;

    bool Encrypt() {
        socket_.setLocalCertificate(traits_.certificate.file);
        socket_.setPrivateKey(traits_.certificate.key, QSsl::Ec);
        socket_.startServerEncryption();
        return socket_.waitForEncrypted(longestHandshakeMs);
    }

    bool IsConnected() const { return !server_.isStopping_ && socket_.state() == QAbstractSocket::ConnectedState; }

    /// Adds to the buffer what has come in, and waits for it so long.
    bool ReadMore(int mostMs) {
        if (socket_.bytesAvailable() == 0 && mostMs >= 0) {
            socket_.waitForReadyRead(mostMs);
        }
        const QByteArray bytes = socket_.readAll();
        if (bytes.isEmpty()) {
            return false;
        }
        arrived_ = Clock::now();
        buffer_ += bytes;
        const std::lock_guard lock(server_.mutex_);
        server_.bytes_ += bytes;
        if (!socket_.isEncrypted()) {
            server_.clearBytes_ += bytes;
        }
        return true;
    }

    std::optional<QByteArray> ReadLine() {
        while (!buffer_.contains('\n')) {
            if (!ReadMore(patienceMs) && !IsConnected()) {
                return std::nullopt;
            }
        }
        const qsizetype length = buffer_.indexOf('\n') + 1;
        const QByteArray line = buffer_.left(length);
        buffer_.remove(0, length);
        return line;
    }

    void Pause(milliseconds time) {
        for (const Moment end = Clock::now() + time; !server_.isStopping_ && Clock::now() < end;) {
            std::this_thread::sleep_for(
                std::min(milliseconds(patienceMs), std::chrono::ceil<milliseconds>(end - Clock::now())));
        }
    }

    void Write(const QByteArray& reply) {
        socket_.write(reply);
        socket_.flush();
        while (socket_.bytesToWrite() > 0 && IsConnected()) {
            socket_.waitForBytesWritten(patienceMs);
        }
    }

    void Leave() {
        if (socket_.state() == QAbstractSocket::ConnectedState) {
            socket_.disconnectFromHost();
            if (socket_.state() != QAbstractSocket::UnconnectedState) {
                socket_.waitForDisconnected(1000);
            }
        }
        socket_.abort();
    }

    /// What the script lets happen, otherwise the answer that is given.
    SmtpAnswer AnswerTo(SmtpStep step, const QByteArray& line, const QByteArray& usual) {
        const SmtpScene scene = server_.NextScene(step, line, number_);
        if (traits_.script) {
            if (auto answer = traits_.script(scene)) {
                return *std::move(answer);
            }
        }
        return {usual};
    }

    void CountWaiting() {
        for (const Moment end = Clock::now() + traits_.lookAhead; Clock::now() < end;) {
            ReadMore(1);
        }
        ReadMore(0);
        const int together = 1 + static_cast<int>(buffer_.count('\n'));
        const std::lock_guard lock(server_.mutex_);
        server_.mostTogether_ = std::max(server_.mostTogether_, together);
    }

    /// False when the conversation is over.
    bool Say(SmtpStep step, const QByteArray& line, const QByteArray& usual) {
        const Moment due = arrived_ + traits_.latency;
        last_ = AnswerTo(step, line, usual);
        if (last_.stalls) {
            Pause(std::chrono::hours(1));
            return false;
        }
        if (step == SmtpStep::Mail || step == SmtpStep::Recipient || step == SmtpStep::Reset) {
            CountWaiting();
        }
        Pause(last_.delay);
        std::this_thread::sleep_until(due);
        Write(last_.reply);
        return !last_.hangsUp;
    }

    bool IsDone() const { return last_.reply.startsWith('2'); }

    bool Obey(const QByteArray& line) {
        const QByteArray verb = line.left(4).toUpper();
        if (verb == "EHLO" || verb == "HELO") {
            return Say(startedTls_ ? SmtpStep::HelloAgain : SmtpStep::Hello, line, HelloReply(verb == "EHLO"));
        }
        if (line.trimmed().toUpper() == "STARTTLS") {
            return BeginTls(line);
        }
        if (verb == "AUTH") {
            return LogIn(line);
        }
        if (verb == "MAIL") {
            return BeginMail(line);
        }
        if (verb == "RCPT") {
            return AddRecipient(line);
        }
        if (verb == "DATA") {
            return TakeText(line);
        }
        if (verb == "RSET") {
            message_.reset();
            return Say(SmtpStep::Reset, line, "250 reset\r\n");
        }
        if (verb == "QUIT") {
            Say(SmtpStep::Quit, line, "221 bye\r\n");
            return false;
        }
        Write("500 what?\r\n");
        return true;
    }

    QByteArray HelloReply(bool isExtended) const {
        if (!isExtended) {
            return "250 fake.example\r\n";
        }
        QByteArrayList lines{"fake.example greets you"};
        lines += traits_.extensions;
        if (traits_.security == SmtpSecurity::StartTls && !startedTls_) {
            lines += "STARTTLS";
        }
        if (!traits_.user.isEmpty() && (socket_.isEncrypted() || traits_.letsLogInUnprotected)) {
            lines += "AUTH PLAIN LOGIN";
        }
        QByteArray reply;
        for (qsizetype at = 0; at < lines.size(); ++at) {
            reply += (at + 1 < lines.size() ? "250-" : "250 ") + lines[at] + "\r\n";
        }
        return reply;
    }

    bool BeginTls(const QByteArray& line) {
        if (!Say(SmtpStep::StartTls, line, "220 ready\r\n")) {
            return false;
        }
        if (!last_.reply.startsWith("220")) {
            return true;
        }
        buffer_.clear();
        startedTls_ = Encrypt();
        return startedTls_;
    }

    bool LogIn(const QByteArray& line) {
        const QByteArray usual = "235 welcome\r\n";
        const SmtpAnswer answer = AnswerTo(SmtpStep::Login, line, usual);
        if (answer.stalls) {
            Pause(std::chrono::hours(1));
            return false;
        }
        if (answer.reply != usual) {
            Write(answer.reply);
            return !answer.hangsUp;
        }
        const bool isPlain = line.toUpper().startsWith("AUTH PLAIN");
        QByteArrayList asked =
            isPlain ? QByteArrayList{"334 \r\n"} : QByteArrayList{"334 VXNlcm5hbWU6\r\n", "334 UGFzc3dvcmQ6\r\n"};
        QByteArray given;
        for (const QByteArray& question : asked) {
            Write(question);
            const auto reply = ReadLine();
            if (!reply) {
                return false;
            }
            given += '\0' + QByteArray::fromBase64(reply->trimmed());
        }
        const QByteArray right = '\0' + traits_.user + '\0' + traits_.password;
        const bool isRight = given == (isPlain ? '\0' + right : right);
        Write(isRight ? usual : QByteArray("535 5.7.8 wrong name or password\r\n"));
        return true;
    }

    bool BeginMail(const QByteArray& line) {
        if (!Say(SmtpStep::Mail, line, message_ ? "503 one at a time\r\n" : "250 sender ok\r\n")) {
            return false;
        }
        if (IsDone()) {
            message_ = TakenMessage{line.trimmed(), {}, {}};
        }
        return true;
    }

    bool AddRecipient(const QByteArray& line) {
        if (!Say(SmtpStep::Recipient, line, message_ ? "250 recipient ok\r\n" : "503 who sends?\r\n")) {
            return false;
        }
        if (IsDone() && message_) {
            message_->recipients += AddressIn(line);
        }
        return true;
    }

    bool TakeText(const QByteArray& line) {
        ReadMore(0);
        if (!buffer_.isEmpty()) {
            const std::lock_guard lock(server_.mutex_);
            server_.hasEarlyText_ = true;
        }
        const bool isReady = message_ && !message_->recipients.isEmpty();
        if (!Say(SmtpStep::Data, line, isReady ? "354 go on\r\n" : "554 no recipients\r\n")) {
            return false;
        }
        return !last_.reply.startsWith('3') || ReadText();
    }

    /// The position behind the text, before the dot that ends it; -1 when that has not come in.
    qsizetype EndOfText(qsizetype from) const {
        if (buffer_.startsWith(".\r\n")) {
            return 0;
        }
        const qsizetype found = buffer_.indexOf("\r\n.\r\n", std::max<qsizetype>(from - 4, 0));
        return found < 0 ? -1 : found + 2;
    }

    bool ReadText() {
        bool isBegun = false;
        qsizetype looked = 0;
        qsizetype end = -1;
        while ((end = EndOfText(looked)) < 0) {
            looked = buffer_.size();
            if (!ReadMore(patienceMs) && !IsConnected()) {
                return false;
            }
            if (!isBegun && !buffer_.isEmpty()) {
                isBegun = true;
                if (!Say(SmtpStep::Text, {}, {})) {
                    return false;
                }
            }
        }
        const QByteArray wire = buffer_.left(end);
        buffer_.remove(0, end + 3);
        return Finish(wire);
    }

    bool Finish(const QByteArray& wire) {
        const Moment due = arrived_ + traits_.latency;
        last_ = AnswerTo(SmtpStep::End, {}, "250 2.0.0 Ok: queued as " + QByteArray::number(number_) + "-1\r\n");
        const bool isComplete = message_ && !message_->recipients.isEmpty();
        if (isComplete && (last_.takes || IsDone())) {
            message_->wire = wire;
            const std::lock_guard lock(server_.mutex_);
            server_.taken_.push_back(*std::move(message_));
        }
        message_.reset();
        if (last_.stalls) {
            Pause(std::chrono::hours(1));
            return false;
        }
        Pause(last_.delay);
        std::this_thread::sleep_until(due);
        Write(last_.reply);
        return !last_.hangsUp;
    }

    FakeSmtpServer& server_;
    const Traits& traits_;
    const int number_;
    QSslSocket socket_;
    QByteArray buffer_;
    Moment arrived_;
    SmtpAnswer last_;
    bool startedTls_ = false;
    std::optional<TakenMessage> message_;
};

class FakeSmtpServer::Acceptor : public QTcpServer {
public:
    explicit Acceptor(FakeSmtpServer& server) : server_(server) {}

protected:
    void incomingConnection(qintptr descriptor) override { server_.Accept(static_cast<quintptr>(descriptor)); }

private:
    FakeSmtpServer& server_;
};

FakeSmtpServer::FakeSmtpServer(Traits traits) : traits_(std::move(traits)) {
    std::promise<quint16> port;
    auto listening = port.get_future();
    acceptor_ = std::thread([this, port = std::move(port)]() mutable {
        Acceptor acceptor(*this);
        acceptor.listen(QHostAddress::LocalHost);
        port.set_value(acceptor.serverPort());
        while (!isStopping_) {
            acceptor.waitForNewConnection(patienceMs);
        }
    });
    port_ = listening.get();
}

FakeSmtpServer::~FakeSmtpServer() {
    isStopping_ = true;
    acceptor_.join();
    for (std::thread& conversation : conversations_) {
        conversation.join();
    }
}

void FakeSmtpServer::Accept(quintptr descriptor) {
    const std::lock_guard lock(mutex_);
    const int number = ++connections_;
    conversations_.emplace_back([this, descriptor, number] { Conversation(*this, number).Run(descriptor); });
}

SmtpScene FakeSmtpServer::NextScene(SmtpStep step, const QByteArray& line, int connection) {
    const std::lock_guard lock(mutex_);
    return {step, line, connection, ++counts_[step]};
}

SmtpServer FakeSmtpServer::Address() const {
    SmtpServer address;
    address.host = QStringLiteral("127.0.0.1");
    address.port = port_;
    address.security = traits_.security;
    address.user = QString::fromUtf8(traits_.user);
    address.password = QString::fromUtf8(traits_.password);
    address.caFile = traits_.certificate.file;
    return address;
}

std::vector<TakenMessage> FakeSmtpServer::Taken() const {
    const std::lock_guard lock(mutex_);
    return taken_;
}

QByteArray FakeSmtpServer::Bytes() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

QByteArray FakeSmtpServer::ClearBytes() const {
    const std::lock_guard lock(mutex_);
    return clearBytes_;
}

int FakeSmtpServer::Connections() const {
    const std::lock_guard lock(mutex_);
    return connections_;
}

int FakeSmtpServer::MostCommandsTogether() const {
    const std::lock_guard lock(mutex_);
    return mostTogether_;
}

bool FakeSmtpServer::HasEarlyText() const {
    const std::lock_guard lock(mutex_);
    return hasEarlyText_;
}

} // namespace quellbox
