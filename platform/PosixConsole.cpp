#ifndef _WIN32

#include "platform/Console.h"
#include "platform/PathBytes.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace quellbox {

namespace {

constexpr std::array<int, 3> endingSignals{SIGINT, SIGTERM, SIGHUP};

bool outputIsClosed = false;

// What a signal handler uses.
std::atomic<bool> interruptCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);
std::array<int, 2> interruptPipe{-1, -1};
timespec firstInterrupt{};

/// Some programs send a signal to a process and then to its group, which is one wish.
bool IsTheSameWish() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    constexpr long long nanoseconds = 1'000'000'000;
    return (now.tv_sec - firstInterrupt.tv_sec) * nanoseconds + now.tv_nsec - firstInterrupt.tv_nsec < nanoseconds;
}

void NoteInterrupt(int number) {
    const int error = errno;
    if (!interruptCame.exchange(true)) {
        ::clock_gettime(CLOCK_MONOTONIC, &firstInterrupt);
        const char byte = 0;
        [[maybe_unused]] const ssize_t written = ::write(interruptPipe[1], &byte, 1);
    } else if (!IsTheSameWish()) {
        std::signal(number, SIG_DFL);
        std::raise(number);
    }
    errno = error;
}

/// Waits until more can be written to an output that does not block.
void AwaitReader() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    ::poll(&output, 1, -1);
}

} // namespace

QStringList ArgumentTexts(int argc, char** argv) {
    QStringList texts;
    std::transform(argv + std::min(argc, 1), argv + argc, std::back_inserter(texts),
                   [](const char* argument) { return PathText(argument); });
    return texts;
}

QString PrintedName(const QString& argument) {
    const QString printed = QString::fromUtf8(PathBytes(argument));
    return printed == argument ? QString() : printed;
}

QString NameFromBytes(const QByteArray& bytes) {
    return PathText(bytes);
}

QByteArray BytesOfName(const QString& name) {
    return PathBytes(name);
}

QByteArray NameOfLine(const QByteArray& line) {
    return line;
}

void PrepareStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0) {
            // The lowest number that is free, which is this one.
            [[maybe_unused]] const int opened = ::open("/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool IsErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

bool IsOutputTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

bool WriteOutput(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
            continue;
        }
        const int error = errno;
        if ((error == EINTR || error == EAGAIN) && !interruptCame) {
            if (error == EAGAIN) {
                AwaitReader();
            }
            continue;
        }
        outputIsClosed = error == EPIPE || error == EINTR || error == EAGAIN;
        return false;
    }
    return true;
}

void WriteError(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(STDERR_FILENO, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno != EINTR) {
            return;
        }
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
}

bool IsOutputClosed() {
    pollfd output{STDOUT_FILENO, 0, 0};
    const bool hasGone = ::poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
    return outputIsClosed || hasGone;
}

/// Passes on what a signal handler has written into a pipe.
class Interrupts::Watch {
public:
    explicit Watch(Interrupts& owner) {
        if (::pipe2(interruptPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            return; // then a signal ends the program, as it does without this object
        }
        notifier_ = std::make_unique<QSocketNotifier>(interruptPipe[0], QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, &owner, [this, &owner] {
            notifier_->setEnabled(false);
            Q_EMIT owner.Interrupted();
        });
        for (size_t item = 0; item < endingSignals.size(); ++item) {
            // What runs under nohup goes on when its terminal has gone. A call that waits is to end, so that the
            // program can, hence no SA_RESTART.
            struct sigaction action {};
            action.sa_handler = NoteInterrupt;
            ::sigaction(endingSignals[item], nullptr, &before_[item]);
            if (before_[item].sa_handler != SIG_IGN) {
                ::sigaction(endingSignals[item], &action, nullptr);
            }
        }
    }

    ~Watch() {
        if (!notifier_) {
            return;
        }
        for (size_t item = 0; item < endingSignals.size(); ++item) {
            ::sigaction(endingSignals[item], &before_[item], nullptr);
        }
        notifier_.reset();
        for (int& end : interruptPipe) {
            ::close(end);
            end = -1;
        }
    }

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    std::unique_ptr<QSocketNotifier> notifier_;
    std::array<struct sigaction, endingSignals.size()> before_{};
};

Interrupts::Interrupts() : watch_(std::make_unique<Watch>(*this)) {}

Interrupts::~Interrupts() = default;

bool Interrupts::Came() const {
    return interruptCame;
}

} // namespace quellbox

#endif
