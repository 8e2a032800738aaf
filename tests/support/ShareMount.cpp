#ifdef __linux__

#include "tests/support/ShareMount.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int longestMountAnswerMs = 120'000;

const QStringList shares{QStringLiteral("archive"), QStringLiteral("pickup")};

bool AllExist(const ShareMount& mount) {
    return std::all_of(shares.begin(), shares.end(),
                       [&mount](const QString& share) { return QFile::exists(mount.Folder(share)); });
}

const QString placeName = QStringLiteral("quellbox-share-XXXXXX");

/// Where a session has its runtime folder, if this process may make a folder there.
QString PlaceOfSession() {
    for (const QString& folder : {qEnvironmentVariable("XDG_RUNTIME_DIR"), QStringLiteral("/run")}) {
        const QFileInfo info(folder);
        if (info.isDir() && info.isWritable()) {
            return QDir(folder).filePath(placeName);
        }
    }
    return QDir::temp().filePath(placeName);
}

class SmbNetFsMount : public ShareMount {
public:
    explicit SmbNetFsMount(const SambaServer& server) : ShareMount(QDir::temp().filePath(placeName)), server_(server) {
        if (ProgramPath("smbnetfs").isEmpty()) {
            whyNot_ = QStringLiteral("No share can be mounted here: smbnetfs is missing (package smbnetfs).");
        } else if (!MakeFolders({QStringLiteral("mounted")}) || !WriteConfiguration() || !Start()) {
            whyNot_ = QStringLiteral("No share can be mounted here: smbnetfs says: ") + process_.LastWords();
        }
    }

    QString Folder(const QString& share) const override {
        return Path("mounted") + QLatin1Char('/') + server_.Host() + QLatin1Char('/') + share + QLatin1Char('/');
    }

    QString UncFolder(const QString& share) const override {
        return QStringLiteral("\\\\%1\\%2\\").arg(server_.Host(), share);
    }

private:
    bool WriteConfiguration() const {
        const bool hasGuests = server_.AccessKind() == SambaServer::Access::Guest;
        const QString user = hasGuests ? QStringLiteral("guest") : server_.User();
        const QString password = hasGuests ? QString() : SambaServer::Password();
        // Each further attempt to reach a server that is dead would take seconds.
        const QString text = QStringLiteral("smb_query_browsers \"false\"\n"
                                            "use_libsecret \"false\"\n"
                                            "max_retry_count \"1\"\n"
                                            "auth \"%1\" \"%2\"\n")
                                 .arg(user, password);
        return Write("smbnetfs.conf", text.toUtf8());
    }

    bool Start() {
        process_.Start({ProgramPath("smbnetfs"), Path("mounted"), QStringLiteral("-f"), QStringLiteral("-o"),
                        QStringLiteral("config=") + Path("smbnetfs.conf")},
                       Environment());
        WaitUntil([this] { return AllExist(*this) || !process_.IsRunning(); });
        return process_.IsRunning() && AllExist(*this);
    }

    const SambaServer& server_;
};

// The services of the real session are left out: nothing but the mounts is wanted.
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

class DesktopMount : public ShareMount {
public:
    explicit DesktopMount(const SambaServer& server) : ShareMount(PlaceOfSession()), server_(server) {
        const QString service = QStringLiteral("/usr/share/dbus-1/services/org.gtk.vfs.Daemon.service");
        if (ProgramPath("gio").isEmpty() || ProgramPath("dbus-daemon").isEmpty() || !QFile::exists(service)) {
            whyNot_ = QStringLiteral("No share can be mounted here: the desktop's client is missing (packages "
                                     "gvfs-backends, gvfs-fuse, dbus-daemon and libglib2.0-bin).");
        } else if (!MakeFolders({QStringLiteral("run"), QStringLiteral("services")}) ||
                   !QFile::copy(service, Path("services/org.gtk.vfs.Daemon.service")) ||
                   !Write("bus.conf", QString::fromLatin1(busConfiguration).arg(place_.path()).toUtf8()) || !Start()) {
            whyNot_ = QStringLiteral("No share can be mounted here: the desktop's client says: ") + said_ +
                      process_.LastWords();
        }
    }

    QString Folder(const QString& share) const override {
        const QDir mounts(RuntimeFolder() + QStringLiteral("/gvfs"));
        for (const QString& name : mounts.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (name.split(QLatin1Char(',')).contains(QStringLiteral("share=") + share)) {
                return mounts.filePath(name) + QLatin1Char('/');
            }
        }
        return mounts.filePath(QStringLiteral("no share ") + share) + QLatin1Char('/');
    }

    QString UncFolder(const QString& share) const override {
        return QStringLiteral("\\\\%1\\%2\\").arg(server_.Host().section(QLatin1Char(':'), 0, 0), share);
    }

    QString RuntimeFolder() const override { return Path("run"); }

    bool Reconnect() override {
        for (const QString& share : shares) {
            Gio({QStringLiteral("mount"), QStringLiteral("-u"), Url(share)});
        }
        return MountShares();
    }

private:
    QProcessEnvironment SessionEnvironment() const {
        QProcessEnvironment environment = Environment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), RuntimeFolder());
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=") + Path("bus"));
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "GVFS_DISABLE_FUSE"}) {
            environment.remove(QLatin1String(display));
        }
        return environment;
    }

    bool Start() {
        process_.Start({ProgramPath("dbus-daemon"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                        QStringLiteral("--config-file=") + Path("bus.conf")},
                       SessionEnvironment());
        WaitUntil([this] { return QFile::exists(Path("bus")) || !process_.IsRunning(); });
        if (!MountShares()) {
            return false;
        }
        // The folder of the mounts may come a moment after the share.
        return WaitUntil([this] { return AllExist(*this); });
    }

    bool MountShares() {
        return std::all_of(shares.begin(), shares.end(), [this](const QString& share) {
            QStringList arguments{QStringLiteral("mount")};
            if (server_.AccessKind() == SambaServer::Access::Guest) {
                arguments += QStringLiteral("-a");
            }
            return Gio(arguments + QStringList{Url(share)});
        });
    }

    QString Url(const QString& share) const {
        const bool hasGuests = server_.AccessKind() == SambaServer::Access::Guest;
        const QString user = hasGuests ? QString() : QStringLiteral("WORKGROUP;%1@").arg(server_.User());
        return QStringLiteral("smb://%1%2/%3").arg(user, server_.Host(), share);
    }

    /// Answers a question with the password.
    bool Gio(const QStringList& arguments) {
        QProcess gio;
        gio.setProcessEnvironment(SessionEnvironment());
        gio.setProcessChannelMode(QProcess::MergedChannels);
        gio.start(ProgramPath("gio"), arguments);
        gio.write((SambaServer::Password() + QLatin1Char('\n')).toUtf8());
        gio.closeWriteChannel();
        const bool isDone = gio.waitForFinished(longestMountAnswerMs) && gio.exitCode() == 0;
        said_ = QString::fromLocal8Bit(gio.readAll()).simplified();
        return isDone;
    }

    const SambaServer& server_;
    QString said_;
};

} // namespace

ShareMount::ShareMount(const QString& place) : place_(place), process_(place_.path()) {}

std::unique_ptr<ShareMount> ShareMount::Make(ShareClient client, const SambaServer& server) {
    if (client == ShareClient::Desktop) {
        return std::make_unique<DesktopMount>(server);
    }
    return std::make_unique<SmbNetFsMount>(server);
}

/// Folders that nobody else can look into, as a session and a home have them.
bool ShareMount::MakeFolders(const QStringList& names) const {
    const QStringList all = names + QStringList{QStringLiteral("home"), QStringLiteral("home/.smb")};
    return std::all_of(all.begin(), all.end(), [this](const QString& name) {
        return QDir(place_.path()).mkdir(name) &&
               QFile::setPermissions(place_.filePath(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    });
}

bool ShareMount::Write(const char* name, const QByteArray& bytes) const {
    QFile file(Path(name));
    return file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
           file.write(bytes) == bytes.size();
}

/// With a home of its own, the client finds neither settings nor passwords of the user.
QProcessEnvironment ShareMount::Environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), Path("home"));
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    environment.remove(QStringLiteral("XDG_CACHE_HOME"));
    return environment;
}

} // namespace quellbox

#endif
