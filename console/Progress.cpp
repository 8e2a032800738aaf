#include "console/Progress.h"

#include "platform/Console.h"

#include <QByteArray>

#include <algorithm>

namespace quellbox {

namespace {

constexpr qint64 pauseMs = 250;

} // namespace

Progress::Progress(qint64 maximum) : maximum_(maximum), isWanted_(IsErrorTerminal()) {
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
    QByteArray line = QByteArray::number(done);
    if (maximum_ > 0) {
        line += " / " + QByteArray::number(maximum_);
    }
    WriteError('\r' + line);
    shown_ = std::max(shown_, line.size());
}

void Progress::Clear() {
    // Not every console of Windows understands an escape sequence.
    if (shown_ > 0) {
        WriteError('\r' + QByteArray(shown_, ' ') + '\r');
        shown_ = 0;
    }
}

} // namespace quellbox
