#ifdef _WIN32

#include "platform/Console.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <mutex>
#include <windows.h>

namespace quellbox {

namespace {

bool outputIsClosed = false;

// Guards the owner, who may go while the system's thread tells.
std::mutex interruptMutex;
Interrupts* interruptOwner = nullptr;
std::atomic<bool> interruptCame{false};

/// Returns false when the program is to end at once.
bool TellOwner() {
    const std::lock_guard lock(interruptMutex);
    Interrupts* const owner = interruptOwner;
    if (owner == nullptr || interruptCame.exchange(true)) {
        return false;
    }
    QMetaObject::invokeMethod(
        owner, [owner] { Q_EMIT owner->Interrupted(); }, Qt::QueuedConnection);
    return true;
}

/// Called on a thread that the system makes for it.
BOOL WINAPI NoteInterrupt(DWORD event) {
    if (!TellOwner()) {
        return FALSE;
    }
    // Where the console closes or the user logs off, the system ends the program as soon as this returns, and after
    // some seconds in any case. The end of main() ends this thread.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        ::Sleep(INFINITE);
    }
    return TRUE;
}

bool IsConsole(HANDLE stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(stream, &mode) != 0;
}

/// A console takes texts, whatever its code page is: that belongs to all programs on it, so it stays as it is. Returns
/// false when it cannot be written; GetLastError() says why.
bool WriteText(HANDLE console, const QString& text) {
    constexpr qsizetype mostAtOnce = 8192; // it takes less than 64 KiB
    for (QStringView rest = text; !rest.isEmpty();) {
        qsizetype size = std::min(rest.size(), mostAtOnce);
        if (size > 1 && size < rest.size() && rest[size - 1].isHighSurrogate()) {
            --size;
        }
        DWORD written = 0;
        if (::WriteConsoleW(console, rest.utf16(), static_cast<DWORD>(size), &written, nullptr) == 0) {
            return false;
        }
        rest = rest.sliced(static_cast<qsizetype>(written));
    }
    return true;
}

/// The same for what is no console, which takes the bytes.
bool WriteBytes(HANDLE stream, QByteArrayView bytes) {
    constexpr qsizetype mostAtOnce = 1 << 20;
    while (!bytes.isEmpty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), mostAtOnce));
        if (::WriteFile(stream, bytes.data(), size, &written, nullptr) == 0) {
            return false;
        }
        bytes = bytes.sliced(static_cast<qsizetype>(written));
    }
    return true;
}

bool WriteTo(DWORD stream, QByteArrayView bytes) {
    const HANDLE handle = ::GetStdHandle(stream);
    return IsConsole(handle) ? WriteText(handle, QString::fromUtf8(bytes)) : WriteBytes(handle, bytes);
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
    ::_setmode(::_fileno(stdin), _O_BINARY);
}

bool IsErrorTerminal() {
    return IsConsole(::GetStdHandle(STD_ERROR_HANDLE));
}

bool IsOutputTerminal() {
    return IsConsole(::GetStdHandle(STD_OUTPUT_HANDLE));
}

bool WriteOutput(QByteArrayView bytes) {
    if (!WriteTo(STD_OUTPUT_HANDLE, bytes)) {
        const DWORD error = ::GetLastError();
        outputIsClosed = error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
        return false;
    }
    return true;
}

void WriteError(QByteArrayView bytes) {
    WriteTo(STD_ERROR_HANDLE, bytes);
}

bool IsOutputClosed() {
    return outputIsClosed;
}

class Interrupts::Watch {
public:
    explicit Watch(Interrupts& owner) {
        const std::lock_guard lock(interruptMutex);
        interruptOwner = &owner;
        ::SetConsoleCtrlHandler(NoteInterrupt, TRUE);
    }

    ~Watch() {
        ::SetConsoleCtrlHandler(NoteInterrupt, FALSE);
        const std::lock_guard lock(interruptMutex);
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
