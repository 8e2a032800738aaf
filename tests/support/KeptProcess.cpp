#ifdef __linux__

#include "tests/support/KeptProcess.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QStandardPaths>

#include <chrono>
#include <csignal>
#include <thread>

namespace quellbox {

namespace {

constexpr int longestEndMs = 120'000;
constexpr int longestWaitMs = 120'000;
constexpr qsizetype mostWords = 500;

} // namespace

void KeptProcess::Start(const QStringList& command, const QProcessEnvironment& environment) {
    End();
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/quellbox_keeper"),
                   QStringList{folder_} + command);
    process_.waitForStarted(longestEndMs);
}

bool KeptProcess::IsRunning() {
    // Without an event loop the object learns of an end only where it waits.
    return process_.state() != QProcess::NotRunning && !process_.waitForFinished(0);
}

void KeptProcess::End() {
    EndWith(SIGTERM);
}

void KeptProcess::Kill() {
    EndWith(SIGUSR1);
}

void KeptProcess::EndWith(int signal) {
    if (IsRunning()) {
        ::kill(static_cast<pid_t>(process_.processId()), signal);
        process_.waitForFinished(longestEndMs);
    }
}

QString KeptProcess::LastWords() {
    process_.waitForReadyRead(0);
    return QString::fromLocal8Bit(process_.readAll()).right(mostWords).simplified();
}

bool WaitUntil(const std::function<bool()>& holds) {
    for (const QDeadlineTimer deadline(longestWaitMs); !holds();) {
        if (deadline.hasExpired()) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

QString ProgramPath(const char* name) {
    const QString found = QStandardPaths::findExecutable(QLatin1String(name));
    return found.isEmpty() ? QStandardPaths::findExecutable(QLatin1String(name),
                                                            {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")})
                           : found;
}

} // namespace quellbox

#endif
