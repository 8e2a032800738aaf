#include "console/Progress.h"

#include "platform/Console.h"

#include <QByteArray>

#include <cstdio>

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
    shown_ = line.size();
    std::fprintf(stderr, "\r%s", line.constData());
    std::fflush(stderr);
}

void Progress::Clear() {
    if (shown_ > 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_), "");
        shown_ = 0;
    }
}

} // namespace quellbox
