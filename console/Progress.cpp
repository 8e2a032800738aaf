#include "console/Progress.h"

#include "platform/Console.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr qint64 pauseMs = 250;

} // namespace

// Where the rows themselves go to the terminal, they show how far it is.
Progress::Progress(qint64 maximum) : maximum_(maximum), isWanted_(IsErrorTerminal() && TerminalColumns() == 0) {
    sinceShown_.start();
}

Progress::~Progress() {
    Clear();
}

void Progress::Show(qint64 done) {
    if (!isWanted_ || !sinceShown_.hasExpired(pauseMs)) {
        return;
    }
    sinceShown_.restart();
    QByteArray text = QByteArray::number(done);
    if (maximum_ > 0) {
        text += " / " + QByteArray::number(maximum_);
    }
    WriteError('\r' + text);
    shown_ = std::max(shown_, text.size());
}

void Progress::Clear() {
    // Not every console of Windows understands an escape sequence.
    if (shown_ > 0) {
        WriteError('\r' + QByteArray(shown_, ' ') + '\r');
        shown_ = 0;
    }
}

} // namespace quellbox
