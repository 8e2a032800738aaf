#pragma once

#include <QString>

#include <chrono>

namespace quellbox {

/// How a connection to a mail server is protected.
enum class SmtpSecurity {
    None,     ///< not at all; then nobody logs in either
    StartTls, ///< TLS begins after a command (RFC 3207); without it nothing is sent
    Tls       ///< TLS from the first byte (RFC 8314, section 3)
};

/// Where messages are handed in, and as whom.
struct SmtpServer {
    QString host; ///< a name or an address
    quint16 port = 25;
    SmtpSecurity security = SmtpSecurity::None;
    QString user; ///< empty: nobody logs in
    QString password;
    QString caFile; ///< the only certificates to trust, as PEM; empty: those that the system trusts

    /// How long connecting may take, and each step afterwards; twice as long for the answer to the whole message. The
    /// default is what RFC 5321 asks for in section 4.5.3.2.
    std::chrono::milliseconds timeLimit = std::chrono::minutes(5);
};

} // namespace quellbox
