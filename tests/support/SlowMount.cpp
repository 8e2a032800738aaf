#ifdef __linux__

#include "tests/support/SlowMount.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <csignal>
#include <stdexcept>
#include <thread>

#include <sys/prctl.h>

namespace quellbox {

namespace {

constexpr int longestAnswerMs = 30'000;

QString ProgramFile() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/quellbox_slow_mount");
}

} // namespace

SlowMount::SlowMount(const Traits& traits) {
    for (const char* folder : {"real", "mounted"}) {
        QDir(place_.path()).mkdir(QLatin1String(folder));
    }
    if (!QFile::exists(ProgramFile())) {
        whyNot_ = QStringLiteral("quellbox_slow_mount was not built: libfuse is missing.");
    } else if (!Start(traits)) {
        whyNot_ = QStringLiteral("No folder can be mounted here: ") +
                  QString::fromLocal8Bit(process_.readAllStandardError()).trimmed();
    }
}

SlowMount::~SlowMount() {
    Stop();
}

bool SlowMount::Start(const Traits& traits) {
    QStringList arguments{QStringLiteral("--delay"),  QString::number(traits.delay.count()),
                          QStringLiteral("--rules"),  Path("rules"),
                          QStringLiteral("--counts"), Path("counts")};
    if (traits.poor) {
        arguments += QStringLiteral("--poor");
    }
    arguments += {Path("real"), Path("mounted")};
    // Nothing stays mounted after a program that crashed.
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process_.start(ProgramFile(), arguments);
    return process_.waitForReadyRead(longestAnswerMs) && process_.readAllStandardOutput() == "ready\n";
}

void SlowMount::Stop() {
    process_.terminate();
    process_.waitForFinished(longestAnswerMs);
}

QString SlowMount::Path(const char* name) const {
    return place_.filePath(QLatin1String(name));
}

QString SlowMount::Folder() const {
    return Path("mounted") + QLatin1Char('/');
}

QString SlowMount::RealFolder() const {
    return Path("real") + QLatin1Char('/');
}

void SlowMount::SetRules(const QByteArray& lines) {
    // The old lines hold until the new ones are there as a whole.
    QSaveFile file(Path("rules"));
    if (!file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size() || !file.commit()) {
        throw std::runtime_error("the rules cannot be written");
    }
}

std::map<QByteArray, int> SlowMount::Counts() {
    QFile file(Path("counts"));
    file.remove();
    ::kill(static_cast<pid_t>(process_.processId()), SIGUSR1);
    for (const QDeadlineTimer deadline(longestAnswerMs); !file.open(QIODevice::ReadOnly);) {
        if (deadline.hasExpired()) {
            throw std::runtime_error("the slow folder does not tell its calls");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::map<QByteArray, int> counts;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QByteArrayList words = line.split(' ');
        if (words.size() == 2) {
            counts[words[0]] = words[1].toInt();
        }
    }
    return counts;
}

} // namespace quellbox

#endif
