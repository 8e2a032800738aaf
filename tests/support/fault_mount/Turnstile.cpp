#include "tests/support/fault_mount/Turnstile.h"

#include <cerrno>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace quellbox {

namespace {

constexpr std::chrono::milliseconds betweenLooks(5);

} // namespace

Fate Turnstile::Enter(Call call, std::string_view name, size_t bytes) {
    ++counts_[static_cast<size_t>(call)];
    if (plan_.delay.count() > 0) {
        std::this_thread::sleep_for(plan_.delay);
    }
    Fate fate = rules_.FateOf(call, name, bytes);
    switch (fate.fault) {
    case Fault::Hang:
        return Hang(fate);
    case Fault::Die:
        ::kill(::getpid(), SIGKILL);
        return fate;
    case Fault::Unmount:
        plan_.unmount();
        return {};
    default:
        return fate;
    }
}

Fate Turnstile::Hang(const Fate& fate) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(fate.forMs);
    const auto goesOn = [&] { return fate.forMs > 0 ? std::chrono::steady_clock::now() < end : rules_.Has(fate.rule); };
    ++hanging_;
    bool ending = plan_.isEnding();
    while (!ending && goesOn()) {
        std::this_thread::sleep_for(betweenLooks);
        ending = plan_.isEnding();
    }
    --hanging_;
    return ending ? Fate{Fault::Fail, EIO, 0, 0, fate.rule} : Fate();
}

std::string Turnstile::Counts() {
    std::string lines;
    for (size_t kind = 0; kind < callNames.size(); ++kind) {
        lines += std::string(callNames[kind]) + ' ' + std::to_string(counts_[kind]) + '\n';
    }
    lines += "hanging " + std::to_string(hanging_) + '\n';
    lines += "came-true " + std::to_string(rules_.ComeTrue()) + '\n';
    return lines + "incomplete " + std::to_string(incomplete_) + '\n';
}

} // namespace quellbox
