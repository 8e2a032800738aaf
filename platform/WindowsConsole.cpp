#ifdef _WIN32

#include "platform/Console.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace quellbox {

namespace {

bool outputIsClosed = false;
std::atomic<bool> interruptCame{false};
std::atomic<Interrupts*> interruptOwner{nullptr};

/// Called on a thread that the system makes for it.
BOOL WINAPI NoteInterrupt(DWORD /*event*/) {
    Interrupts* const owner = interruptOwner;
    if (owner == nullptr || interruptCame.exchange(true)) {
        return FALSE; // which ends the program
    }
    QMetaObject::invokeMethod(
        owner, [owner] { Q_EMIT owner->Interrupted(); }, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

QStringList ArgumentTexts(int /*argc*/, char** /*argv*/) {
    // The system has them in its own texts, of which `argv` is what is left in the ANSI code page.
    return QCoreApplication::arguments().mid(1);
}

QString PrintedName(const QString& /*argument*/) {
    return {};
}

QString NameFromBytes(const QByteArray& bytes) {
    return QString::fromUtf8(bytes);
}

QByteArray BytesOfName(const QString& name) {
    return name.toUtf8();
}

QByteArray NameOfLine(const QByteArray& line) {
    return line.endsWith('\r') ? line.chopped(1) : line;
}

void PrepareStreams() {
    for (FILE* stream : {stdin, stdout, stderr}) {
        ::_setmode(::_fileno(stream), _O_BINARY);
    }
    // The console belongs to whoever started the program as well.
    static const UINT before = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { ::SetConsoleOutputCP(before); });
}

bool IsErrorTerminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

bool IsOutputTerminal() {
    return ::_isatty(::_fileno(stdout)) != 0;
}

bool WriteOutput(QByteArrayView bytes) {
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    while (!bytes.isEmpty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<qsizetype>(bytes.size(), 1 << 20));
        if (::WriteFile(output, bytes.data(), size, &written, nullptr) == 0) {
            const DWORD error = ::GetLastError();
            outputIsClosed = error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA;
            return false;
        }
        bytes = bytes.sliced(static_cast<qsizetype>(written));
    }
    return true;
}

bool IsOutputClosed() {
    return outputIsClosed;
}

class Interrupts::Watch {
public:
    explicit Watch(Interrupts& owner) {
        interruptOwner = &owner;
        ::SetConsoleCtrlHandler(NoteInterrupt, TRUE);
    }

    ~Watch() {
        ::SetConsoleCtrlHandler(NoteInterrupt, FALSE);
        interruptOwner = nullptr;
    }

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
};

Interrupts::Interrupts() : watch_(std::make_unique<Watch>(*this)) {}

Interrupts::~Interrupts() = default;

bool Interrupts::Came() const {
    return interruptCame;
}

} // namespace quellbox

#endif
