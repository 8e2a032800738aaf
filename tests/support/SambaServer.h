#pragma once

#ifdef __linux__

#include "tests/support/KeptProcess.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <map>

namespace quellbox {

/// A file server of a test's own with the shares "archive" and "pickup", which only this computer can reach. Its
/// configuration, state and port are its own too, so it leaves any other server alone. Where Samba is missing or cannot
/// run, WhyNot() tells why, and everything else must be left alone.
class SambaServer {
public:
    enum class Access {
        Guest,   ///< whoever connects, without a password
        Password ///< User() alone, with Password()
    };

    explicit SambaServer(Access access);
    SambaServer(const SambaServer&) = delete;
    SambaServer& operator=(const SambaServer&) = delete;

    bool IsRunning() const { return whyNot_.isEmpty(); }
    QString WhyNot() const { return whyNot_; }

    /// The server as a part of a URL: its address and its port.
    QString Host() const { return QStringLiteral("127.0.0.1:%1").arg(port_); }
    Access AccessKind() const { return access_; }
    QString User() const { return user_; }
    static QString Password() { return QStringLiteral("pass word"); }

    /// The folder behind a share, which is reached without the server. Ends with a separator.
    QString RealFolder(const QString& share) const;

    /// Ends the server in the middle of whatever it does.
    void Kill() { process_.Kill(); }

    /// Starts it once more on the same port, after Kill(). Returns whether it runs.
    bool StartAgain();

    /// How many requests of each kind reached the server until now, as in "create". What the clients still send
    /// because of earlier calls is waited for.
    std::map<QByteArray, int> Requests() const;

private:
    QString Path(const char* name) const { return place_.filePath(QLatin1String(name)); }
    QString MakeReady();
    QByteArray Configuration() const;
    bool AddUser() const;
    bool Answers() const;
    std::map<QByteArray, int> RequestsSoFar() const;

    const Access access_;
    QTemporaryDir place_;
    QString user_;
    int port_ = 0;
    KeptProcess process_;
    QString whyNot_;
};

} // namespace quellbox

#endif
