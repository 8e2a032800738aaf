#include "tests/passwords/SecretSession.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <csignal>

namespace quellbox {

namespace {

constexpr int longestLockMs = 60'000;

// No service of the real session is on this bus.
constexpr const char* busConfiguration = "<busconfig>\n"
                                         "<type>session</type>\n"
                                         "<listen>unix:path=%1/bus</listen>\n"
                                         "<servicedir>%1/services</servicedir>\n"
                                         "<policy context=\"default\">\n"
                                         "<allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
                                         "<allow eavesdrop=\"true\"/>\n"
                                         "<allow own=\"*\"/>\n"
                                         "</policy>\n"
                                         "</busconfig>\n";

constexpr const char* service = "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/bin/sh %1/start/keeper\n";

// The collection is opened by the master password, which the program reads from its input.
constexpr const char* starter = "cd %1\n"
                                "echo $$ >start/keeper.pid\n"
                                "exec %2 --foreground --unlock --components=secrets <start/master\n";

} // namespace

SecretSession::SecretSession(Keeper keeper) {
    if (ProgramPath("dbus-daemon").isEmpty()) {
        whyNot_ = QStringLiteral("There is no session here: dbus-daemon is missing (package dbus-daemon).");
        return;
    }
    const bool hasKeeper = keeper == Keeper::GnomeKeyring;
    if (hasKeeper && (ProgramPath("gnome-keyring-daemon").isEmpty() || ProgramPath("gdbus").isEmpty())) {
        whyNot_ = QStringLiteral("Nobody keeps passwords here: gnome-keyring-daemon or gdbus is missing (packages "
                                 "gnome-keyring and libglib2.0-bin).");
        return;
    }
    Join();
    if (!MakeFolders() || !Write("bus.conf", QString::fromLatin1(busConfiguration).arg(place_.path()).toUtf8()) ||
        (hasKeeper && !WriteKeeper())) {
        whyNot_ = QStringLiteral("There is no session here: its files cannot be written.");
        return;
    }
    bus_.Start({ProgramPath("dbus-daemon"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                QStringLiteral("--config-file=") + Path("bus.conf")},
               QProcessEnvironment::systemEnvironment());
    WaitUntil([this] { return QFile::exists(Path("bus")) || !bus_.IsRunning(); });
    if (!QFile::exists(Path("bus"))) {
        whyNot_ = QStringLiteral("There is no session here: dbus-daemon says: ") + bus_.LastWords();
    }
}

bool SecretSession::MakeFolders() const {
    const QStringList names{QStringLiteral("run"),    QStringLiteral("home"),  QStringLiteral("data"),
                            QStringLiteral("config"), QStringLiteral("cache"), QStringLiteral("services"),
                            QStringLiteral("start")};
    return std::all_of(names.begin(), names.end(), [this](const QString& name) {
        return QDir(place_.path()).mkdir(name) &&
               QFile::setPermissions(place_.filePath(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    });
}

bool SecretSession::Write(const char* name, const QByteArray& bytes) const {
    QFile file(Path(name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool SecretSession::WriteKeeper() const {
    const QString program = ProgramPath("gnome-keyring-daemon");
    return Write("services/org.freedesktop.secrets.service",
                 QString::fromLatin1(service).arg(place_.path()).toUtf8()) &&
           Write("start/keeper", QString::fromLatin1(starter).arg(place_.path(), program).toUtf8()) &&
           Write("start/master", "master");
}

/// Without a display nobody can ask for a password, and no desktop has a liking for a store of its own.
void SecretSession::Join() const {
    for (const char* name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION", "GNOME_DESKTOP_SESSION_ID",
                             "DISPLAY", "WAYLAND_DISPLAY", "GNOME_KEYRING_CONTROL", "SECRET_BACKEND"}) {
        qunsetenv(name);
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray("unix:path=") + QFile::encodeName(Path("bus")));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(Path("run")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(Path("data")));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(Path("config")));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(Path("cache")));
    qputenv("HOME", QFile::encodeName(Path("home")));
}

bool SecretSession::Lock() const {
    QProcess gdbus;
    gdbus.start(ProgramPath("gdbus"), {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                                       QStringLiteral("org.freedesktop.secrets"), QStringLiteral("--object-path"),
                                       QStringLiteral("/org/freedesktop/secrets"), QStringLiteral("--method"),
                                       QStringLiteral("org.freedesktop.Secret.Service.Lock"),
                                       QStringLiteral("['/org/freedesktop/secrets/collection/login']")});
    return gdbus.waitForFinished(longestLockMs) && gdbus.exitCode() == 0;
}

bool SecretSession::EndKeeper() const {
    QFile file(Path("start/keeper.pid"));
    const pid_t keeper = file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    return keeper > 0 && ::kill(keeper, SIGTERM) == 0 && WaitUntil([keeper] { return ::kill(keeper, 0) != 0; });
}

QStringList SecretSession::FilesWith(const QByteArray& bytes) const {
    QStringList found;
    for (QDirIterator files(place_.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         files.hasNext();) {
        QFile file(files.next());
        if (!file.fileName().startsWith(Path("start/")) && file.open(QIODevice::ReadOnly) &&
            file.readAll().contains(bytes)) {
            found += file.fileName();
        }
    }
    return found;
}

} // namespace quellbox
