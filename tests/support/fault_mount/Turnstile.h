#pragma once

#include "tests/support/fault_mount/Rules.h"

#include <array>
#include <atomic>
#include <chrono>
#include <functional>

namespace quellbox {

/// What each call passes before it reaches the real folder: it is counted, takes its time, and meets what goes wrong.
class Turnstile {
public:
    struct Plan {
        std::chrono::milliseconds delay{0};
        std::string rulesFile;          ///< see Rules
        std::function<bool()> isEnding; ///< the file system is being unmounted; nothing hangs any more then
        std::function<void()> unmount;  ///< takes the folder away, as Fault::Unmount says
    };

    explicit Turnstile(Plan plan) : plan_(std::move(plan)), rules_(plan_.rulesFile) {}

    /// What becomes of a call: Fault::None, Lose, Cut, Fill or DieAfter are for the caller to see to, Fail is to be
    /// answered. `bytes` is how many are to be written. May be called by several threads, which wait at the same time.
    Fate Enter(Call call, std::string_view name, size_t bytes = 0);

    /// Someone saw a message under its final name that was not whole.
    void NoteIncomplete() { ++incomplete_; }

    /// A line for each kind of call, as in "unlink 250"; for the calls that hang at present; for the rules that came
    /// true; and for what was seen incomplete.
    std::string Counts();

private:
    Fate Hang(const Fate& fate);

    Plan plan_;
    Rules rules_;
    std::array<std::atomic<std::uint64_t>, static_cast<size_t>(Call::Count)> counts_{};
    std::atomic<std::uint64_t> hanging_ = 0;
    std::atomic<std::uint64_t> incomplete_ = 0;
};

} // namespace quellbox
