#ifdef __linux__

#include "tests/support/SambaServer.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <chrono>
#include <stdexcept>
#include <thread>

#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quellbox {

namespace {

constexpr int longestServerAnswerMs = 120'000;

// The processes of the server tell what they have counted about a second afterwards.
constexpr std::chrono::milliseconds untilCounted(1600);

sockaddr_in LocalAddress(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// A port on which nobody listens.
int FreePort() {
    sockaddr_in address = LocalAddress(0);
    socklen_t size = sizeof address;
    const int number = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isBound = ::bind(number, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         ::getsockname(number, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(number);
    return isBound ? ntohs(address.sin_port) : 0;
}

QString NameOfThisUser() {
    const passwd* entry = ::getpwuid(::geteuid());
    return entry == nullptr ? QString() : QString::fromLocal8Bit(entry->pw_name);
}

} // namespace

SambaServer::SambaServer(Access access) : access_(access), process_(place_.path()) {
    whyNot_ = MakeReady();
    if (whyNot_.isEmpty() && !StartAgain()) {
        whyNot_ = QStringLiteral("No file server runs here: smbd says: ") + process_.LastWords();
    }
}

/// Why there can be no server; empty when it can be started.
QString SambaServer::MakeReady() {
    if (ProgramPath("smbd").isEmpty()) {
        return QStringLiteral("No file server runs here: smbd is missing (package samba).");
    }
    user_ = NameOfThisUser();
    if (user_.isEmpty()) {
        return QStringLiteral("No file server runs here: it would need a user with a name.");
    }
    port_ = FreePort();
    for (const char* folder : {"archive", "pickup", "lock", "state", "cache", "pid", "private", "rpc", "home"}) {
        QDir(place_.path()).mkdir(QLatin1String(folder));
    }
    // Refused where others may look into it.
    QFile::setPermissions(Path("private"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile file(Path("smb.conf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(Configuration()) < 0 || !file.flush()) {
        return QStringLiteral("No file server runs here: its configuration cannot be written.");
    }
    if (access_ == Access::Password && !AddUser()) {
        return QStringLiteral("No file server runs here: pdbedit cannot store a password.");
    }
    return {};
}

// Every path that Debian's server would take from its package is the test's own. What it counts are requests, which is
// what a share's time goes into.
QByteArray SambaServer::Configuration() const {
    const bool hasGuests = access_ == Access::Guest;
    QString text = QStringLiteral("[global]\n"
                                  "server role = standalone server\n"
                                  "interfaces = 127.0.0.1/8\n"
                                  "bind interfaces only = yes\n"
                                  "smb ports = %PORT\n"
                                  "disable netbios = yes\n"
                                  "lock directory = %PLACE/lock\n"
                                  "state directory = %PLACE/state\n"
                                  "cache directory = %PLACE/cache\n"
                                  "pid directory = %PLACE/pid\n"
                                  "private dir = %PLACE/private\n"
                                  "ncalrpc dir = %PLACE/rpc\n"
                                  "log file = %PLACE/log\n"
                                  "passdb backend = tdbsam:%PLACE/private/passdb.tdb\n"
                                  "username map =\n"
                                  "map to guest = %GUESTS\n"
                                  "guest account = %USER\n"
                                  "load printers = no\n"
                                  "disable spoolss = yes\n"
                                  "printcap name = /dev/null\n"
                                  "smbd profiling level = count\n"
                                  "log level = 0\n");
    for (const char* share : {"archive", "pickup"}) {
        text += QStringLiteral("[%1]\npath = %PLACE/%1\nread only = no\nguest ok = %2\n")
                    .arg(QLatin1String(share), QLatin1String(hasGuests ? "yes" : "no"));
    }
    return text.replace(QLatin1String("%PORT"), QString::number(port_))
        .replace(QLatin1String("%PLACE"), place_.path())
        .replace(QLatin1String("%USER"), user_)
        .replace(QLatin1String("%GUESTS"), QLatin1String(hasGuests ? "Bad User" : "Never"))
        .toUtf8();
}

bool SambaServer::AddUser() const {
    QProcess pdbedit;
    pdbedit.start(ProgramPath("pdbedit"), {QStringLiteral("-s"), Path("smb.conf"), QStringLiteral("-a"),
                                           QStringLiteral("-t"), QStringLiteral("-u"), user_});
    pdbedit.write((Password() + QLatin1Char('\n') + Password() + QLatin1Char('\n')).toUtf8());
    pdbedit.closeWriteChannel();
    return pdbedit.waitForFinished(longestServerAnswerMs) && pdbedit.exitCode() == 0;
}

bool SambaServer::StartAgain() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), Path("home"));
    process_.Start({ProgramPath("smbd"), QStringLiteral("--foreground"), QStringLiteral("--no-process-group"),
                    QStringLiteral("--debug-stdout"), QStringLiteral("-s"), Path("smb.conf")},
                   environment);
    WaitUntil([this] { return Answers() || !process_.IsRunning(); });
    return Answers();
}

bool SambaServer::Answers() const {
    const sockaddr_in address = LocalAddress(port_);
    const int number = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isThere = ::connect(number, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(number);
    return isThere;
}

QString SambaServer::RealFolder(const QString& share) const {
    return place_.filePath(share) + QLatin1Char('/');
}

std::map<QByteArray, int> SambaServer::RequestsSoFar() const {
    QProcess smbstatus;
    smbstatus.start(ProgramPath("smbstatus"), {QStringLiteral("-s"), Path("smb.conf"), QStringLiteral("-P")});
    if (!smbstatus.waitForFinished(longestServerAnswerMs)) {
        throw std::runtime_error("the server does not tell its requests");
    }
    // As in "smb2_create_count:       12".
    std::map<QByteArray, int> requests;
    for (const QByteArray& line : smbstatus.readAllStandardOutput().split('\n')) {
        const qsizetype end = line.indexOf("_count:");
        if (line.startsWith("smb2_") && end > 0) {
            requests[line.mid(5, end - 5)] = line.mid(end + 7).trimmed().toInt();
        }
    }
    return requests;
}

std::map<QByteArray, int> SambaServer::Requests() const {
    std::map<QByteArray, int> last = RequestsSoFar();
    for (const QDeadlineTimer deadline(longestServerAnswerMs); !deadline.hasExpired();) {
        std::this_thread::sleep_for(untilCounted);
        std::map<QByteArray, int> present = RequestsSoFar();
        if (present == last) {
            break;
        }
        last = std::move(present);
    }
    return last;
}

} // namespace quellbox

#endif
