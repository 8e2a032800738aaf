#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quellbox {

/// The calls that a file system gets from the kernel. What the kernel remembers it does not ask for.
enum class Call {
    Lookup, ///< of a name in a folder
    GetAttr,
    SetAttr,
    ReadLink,
    MakeFolder,
    RemoveFolder,
    SymLink,
    Link,
    Unlink,
    Rename,
    Create, ///< and open
    Open,
    Read,
    Write,
    Flush, ///< each close
    Release,
    Sync,
    OpenFolder,
    ReadFolder,
    ReleaseFolder,
    SyncFolder,
    StatFs,
    Count
};

/// What each call passes before it reaches the real folder: it is counted, takes its time, and meets what goes wrong.
///
/// What goes wrong stands in a file of rules, which is read anew for each call; a file that does not exist has none.
/// Each line is a rule of three words: what happens, to which kind of call (as in Counts()), and to which name without
/// its folder; "*" stands for any. "hang unlink *" lets each removal hang until the rule is taken out of the file.
class Turnstile {
public:
    /// `isEnding` says that the file system is being unmounted; nothing hangs any more then.
    Turnstile(std::chrono::milliseconds delay, std::string rulesFile, std::function<bool()> isEnding);

    /// Returns 0 when the call is to be carried out, or else the errno value that is its answer. May be called by
    /// several threads, which wait at the same time.
    int Enter(Call call, std::string_view name);

    /// A line for each kind of call, as in "unlink 250", and one for the calls that hang at present.
    std::string Counts() const;

private:
    bool HasRule(std::string_view what, Call call, std::string_view name) const;
    int HangWhileTold(Call call, std::string_view name);

    std::chrono::milliseconds delay_;
    std::string rulesFile_;
    std::function<bool()> isEnding_;
    std::array<std::atomic<std::uint64_t>, static_cast<size_t>(Call::Count)> counts_{};
    std::atomic<std::uint64_t> hanging_ = 0;
};

} // namespace quellbox
