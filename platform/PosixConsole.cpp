#ifndef _WIN32

#include "platform/Console.h"
#include "platform/PathBytes.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quellbox {

namespace {

constexpr std::array<int, 3> endingSignals{SIGINT, SIGTERM, SIGHUP};

bool outputIsClosed = false;

// What a signal handler may touch.
volatile std::sig_atomic_t interruptCame = 0;
std::array<int, 2> interruptPipe{-1, -1};

void NoteInterrupt(int number) {
    const int error = errno;
    interruptCame = 1;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(interruptPipe[1], &byte, 1);
    std::signal(number, SIG_DFL);
    errno = error;
}

/// Returns false when it cannot be written; errno says why.
bool WriteTo(int stream, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(stream, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace

QStringList ArgumentTexts(int argc, char** argv) {
    QStringList texts;
    std::transform(argv + std::min(argc, 1), argv + argc, std::back_inserter(texts), [](const char* argument) {
        const QByteArray bytes(argument);
        return bytes.isValidUtf8() ? QString::fromUtf8(bytes) : PathText(bytes);
    });
    return texts;
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
    std::signal(SIGPIPE, SIG_IGN);
}

bool IsErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

int TerminalColumns() {
    winsize size{};
    return ::isatty(STDOUT_FILENO) == 1 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool WriteOutput(QByteArrayView bytes) {
    if (!WriteTo(STDOUT_FILENO, bytes)) {
        outputIsClosed = errno == EPIPE;
        return false;
    }
    return true;
}

void WriteError(QByteArrayView bytes) {
    WriteTo(STDERR_FILENO, bytes);
}

bool IsOutputClosed() {
    return outputIsClosed;
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
        for (const int number : endingSignals) {
            struct sigaction action {};
            // What runs under nohup goes on when its terminal has gone.
            if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
                std::signal(number, NoteInterrupt);
            }
        }
    }

    ~Watch() {
        for (const int number : endingSignals) {
            std::signal(number, SIG_DFL);
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
};

Interrupts::Interrupts() : watch_(std::make_unique<Watch>(*this)) {}

Interrupts::~Interrupts() = default;

bool Interrupts::Came() const {
    return interruptCame != 0;
}

} // namespace quellbox

#endif
