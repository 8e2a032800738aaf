#pragma once

#include "delivery/SmtpServer.h"

#include <QByteArrayList>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace quellbox {

/// Where a conversation with the server has got to.
enum class SmtpStep {
    Greeting,
    Hello, ///< EHLO or HELO
    StartTls,
    HelloAgain, ///< EHLO or HELO after STARTTLS
    Login,
    Mail,
    Recipient,
    Data,
    Text, ///< the first bytes of the message have come in
    End,  ///< the dot has come in
    Reset,
    Quit
};

/// What a script is asked about.
struct SmtpScene {
    SmtpStep step;
    QByteArray line;
    int connection; ///< from 1
    int count;      ///< how often the step has come, on all connections together; from 1
};

/// What a script lets the server do in the place of what it would do.
struct SmtpAnswer {
    QByteArray reply{};   ///< bytes; empty: nothing is answered
    bool hangsUp = false; ///< the connection is closed after that
    bool stalls = false;  ///< nothing is read or written any more
    bool takes = false;   ///< the message is taken all the same
    std::chrono::milliseconds delay{};
};

/// A message that the server has taken.
struct TakenMessage {
    QByteArray mail;           ///< the whole command MAIL
    QByteArrayList recipients; ///< addresses
    QByteArray wire;           ///< the text with its doubled dots, without the dot that ends it
};

/// A certificate that vouches for itself, and its key, as files.
struct TestCertificate {
    QString file;
    QString key;
};

/// Makes one with the program openssl; `subject` is such as "IP:127.0.0.1,DNS:localhost". Nothing when that fails.
std::optional<TestCertificate> MakeTestCertificate(const QString& folder, const QString& name, const QString& subject);

/// A mail server that only this computer can reach, with threads of its own. It does what its script says at each step.
class FakeSmtpServer {
public:
    struct Traits {
        SmtpSecurity security = SmtpSecurity::None;
        QByteArrayList extensions{"PIPELINING", "SIZE 100000000", "8BITMIME", "SMTPUTF8"};
        QByteArray user{}; ///< empty: nobody may log in
        QByteArray password{};
        bool letsLogInUnprotected = false;
        TestCertificate certificate{};
        /// How long an answer is on the way back and forth; commands that come in together are answered together.
        std::chrono::milliseconds latency{};
        /// How long the server looks before each answer whether more commands are sent without waiting for it.
        std::chrono::milliseconds lookAhead{};
        std::function<std::optional<SmtpAnswer>(const SmtpScene&)> script{};
    };

    explicit FakeSmtpServer(Traits traits);
    ~FakeSmtpServer();
    FakeSmtpServer(const FakeSmtpServer&) = delete;
    FakeSmtpServer& operator=(const FakeSmtpServer&) = delete;

    /// How to reach it: with the right user, trusting its certificate.
    SmtpServer Address() const;

    std::vector<TakenMessage> Taken() const;
    /// Everything that has come in, as the server understands it after decryption, and what of that was not encrypted.
    QByteArray Bytes() const;
    QByteArray ClearBytes() const;
    int Connections() const;
    /// The largest number of commands that had come in before the first of them was answered.
    int MostCommandsTogether() const;
    /// Whether a client has sent text before it was asked for.
    bool HasEarlyText() const;

private:
    class Acceptor;
    class Conversation;
    friend class Conversation;

    void Accept(quintptr descriptor);
    SmtpScene NextScene(SmtpStep step, const QByteArray& line, int connection);

    const Traits traits_;
    quint16 port_ = 0;
    std::atomic<bool> isStopping_ = false;
    mutable std::mutex mutex_;
    std::vector<TakenMessage> taken_;
    QByteArray bytes_;
    QByteArray clearBytes_;
    int connections_ = 0;
    int mostTogether_ = 0;
    bool hasEarlyText_ = false;
    std::map<SmtpStep, int> counts_;
    std::vector<std::thread> conversations_;
    std::thread acceptor_;
};

} // namespace quellbox
