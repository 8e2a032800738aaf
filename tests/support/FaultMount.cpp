#ifdef __linux__

#include "tests/support/FaultMount.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <thread>

#include <sys/mount.h>
#include <sys/prctl.h>

namespace quellbox {

namespace {

constexpr int longestAnswerMs = 30'000;

QString ProgramFile() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/quellbox_fault_mount");
}

/// In memory, where there is such a place: what is flushed there costs nothing.
QString PlaceTemplate() {
    const QString memory = QStringLiteral("/dev/shm");
    const QString folder = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    return folder + QStringLiteral("/quellbox-fault-mount-XXXXXX");
}

} // namespace

FaultMount::Traits FaultMount::Poor() {
    return {std::chrono::milliseconds(0), false, false, false, false, {}};
}

FaultMount::Traits FaultMount::LinksOnly() {
    return {std::chrono::milliseconds(0), true, false, false, false, {}};
}

FaultMount::Traits FaultMount::LikeKernelClient() {
    return {std::chrono::milliseconds(0), false, true, false, false, {}};
}

FaultMount::Traits FaultMount::TwoShares() {
    return {std::chrono::milliseconds(0), false, false, true, true, {}};
}

FaultMount::FaultMount(const Traits& traits) : traits_(traits), place_(PlaceTemplate()) {
    for (const char* folder : {"real", "mounted"}) {
        QDir(place_.path()).mkdir(QLatin1String(folder));
    }
    if (!QFile::exists(ProgramFile())) {
        whyNot_ = QStringLiteral("quellbox_fault_mount was not built: libfuse is missing.");
    } else if (!Start()) {
        whyNot_ = QStringLiteral("No folder can be mounted here: ") +
                  QString::fromLocal8Bit(process_.readAllStandardError()).trimmed();
    }
}

FaultMount::~FaultMount() {
    Stop();
}

bool FaultMount::Start() {
    QFile::remove(Path("counts"));
    ++timesMounted_;
    QStringList arguments{QStringLiteral("--delay"),  QString::number(traits_.delay.count()),
                          QStringLiteral("--rules"),  Path("rules"),
                          QStringLiteral("--counts"), Path("counts")};
    if (!traits_.links) {
        arguments += QStringLiteral("--no-links");
    }
    if (!traits_.noReplace) {
        arguments += QStringLiteral("--no-noreplace");
    }
    if (traits_.refusesOpen) {
        arguments += QStringLiteral("--refuses-open");
    }
    if (traits_.separate) {
        arguments += QStringLiteral("--separate");
    }
    if (!traits_.ending.isEmpty()) {
        arguments += {QStringLiteral("--ending"), QString::fromUtf8(traits_.ending)};
    }
    arguments += {Path("real"), Path("mounted")};
    // Nothing stays mounted after a program that crashed.
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process_.start(ProgramFile(), arguments);
    if (!process_.waitForReadyRead(longestAnswerMs) || process_.readAllStandardOutput() != "ready\n") {
        return false;
    }
    // Once it answers, the kernel knows what it may do at the same time.
    return QFileInfo(Path("mounted")).isDir();
}

void FaultMount::Stop() {
    process_.terminate();
    process_.waitForFinished(longestAnswerMs);
    // A program that was killed leaves the place behind as it was.
    const QByteArray mount = QFile::encodeName(Path("mounted"));
    if (::umount2(mount.constData(), MNT_DETACH) != 0 && errno == EPERM) {
        QProcess::execute(QStringLiteral("fusermount3"), {QStringLiteral("-uzq"), Path("mounted")});
    }
}

void FaultMount::Kill() {
    process_.kill();
    process_.waitForFinished(longestAnswerMs);
}

bool FaultMount::HasEnded() {
    return process_.state() == QProcess::NotRunning || process_.waitForFinished(0);
}

void FaultMount::MountAgain() {
    Stop();
    SetRules({});
    if (!Start()) {
        throw std::runtime_error("the folder cannot be mounted again");
    }
}

QString FaultMount::Path(const char* name) const {
    return place_.filePath(QLatin1String(name));
}

QString FaultMount::Folder() const {
    return Path("mounted") + QLatin1Char('/');
}

QString FaultMount::RealFolder() const {
    return Path("real") + QLatin1Char('/');
}

void FaultMount::SetRules(const QByteArray& lines) {
    // The same lines are to be new ones, and the old ones hold until the new ones are there as a whole.
    const QByteArray text = "# " + QByteArray::number(++rulesSet_) + '\n' + lines;
    QSaveFile file(Path("rules"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        throw std::runtime_error("the rules cannot be written");
    }
}

std::map<QByteArray, int> FaultMount::ReadCounts() const {
    std::map<QByteArray, int> counts;
    QFile file(Path("counts"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            const QByteArrayList words = line.split(' ');
            if (words.size() == 2) {
                counts[words[0]] = words[1].toInt();
            }
        }
    }
    return counts;
}

std::map<QByteArray, int> FaultMount::Counts() {
    std::map<QByteArray, int> counts = ReadCounts();
    const int toldBefore = counts["told"];
    if (!HasEnded()) {
        ::kill(static_cast<pid_t>(process_.processId()), SIGUSR1);
    }
    // In the end they are told unasked.
    const QDeadlineTimer deadline(longestAnswerMs);
    while (counts["told"] == toldBefore && !HasEnded()) {
        if (deadline.hasExpired()) {
            throw std::runtime_error("the mounted folder does not tell its calls");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        counts = ReadCounts();
    }
    return ReadCounts();
}

} // namespace quellbox

#endif
