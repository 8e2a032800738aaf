#include "console/Progress.h"

#include "platform/Console.h"

#include <cstdio>

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
    isShown_ = true;
    if (maximum_ > 0) {
        std::fprintf(stderr, "\r%lld / %lld", static_cast<long long>(done), static_cast<long long>(maximum_));
    } else {
        std::fprintf(stderr, "\r%lld", static_cast<long long>(done));
    }
    std::fflush(stderr);
}

void Progress::Clear() {
    if (isShown_) {
        std::fputs("\r\033[K", stderr);
        isShown_ = false;
    }
}

} // namespace quellbox
