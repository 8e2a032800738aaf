#include "tests/support/slow_mount/Turnstile.h"

#include <cerrno>
#include <fstream>
#include <thread>

namespace quellbox {

namespace {

constexpr std::array<std::string_view, static_cast<size_t>(Call::Count)> kinds{
    "lookup", "getattr", "setattr", "readlink",   "mkdir",    "rmdir", "symlink", "link",
    "unlink", "rename",  "create",  "open",       "read",     "write", "flush",   "release",
    "fsync",  "opendir", "readdir", "releasedir", "fsyncdir", "statfs"};

constexpr std::chrono::milliseconds betweenLooks(5);

bool Fits(std::string_view pattern, std::string_view text) {
    return pattern == "*" || pattern == text;
}

} // namespace

Turnstile::Turnstile(std::chrono::milliseconds delay, std::string rulesFile, std::function<bool()> isEnding)
    : delay_(delay), rulesFile_(std::move(rulesFile)), isEnding_(std::move(isEnding)) {}

int Turnstile::Enter(Call call, std::string_view name) {
    ++counts_[static_cast<size_t>(call)];
    if (delay_.count() > 0) {
        std::this_thread::sleep_for(delay_);
    }
    return HangWhileTold(call, name);
}

bool Turnstile::HasRule(std::string_view what, Call call, std::string_view name) const {
    if (rulesFile_.empty()) {
        return false;
    }
    std::ifstream rules(rulesFile_);
    std::string happens;
    std::string kind;
    std::string wanted;
    while (rules >> happens >> kind >> wanted) {
        if (happens == what && Fits(kind, kinds[static_cast<size_t>(call)]) && Fits(wanted, name)) {
            return true;
        }
    }
    return false;
}

int Turnstile::HangWhileTold(Call call, std::string_view name) {
    if (!HasRule("hang", call, name)) {
        return 0;
    }
    ++hanging_;
    bool ending = isEnding_();
    while (!ending && HasRule("hang", call, name)) {
        std::this_thread::sleep_for(betweenLooks);
        ending = isEnding_();
    }
    --hanging_;
    return ending ? EIO : 0;
}

std::string Turnstile::Counts() const {
    std::string lines;
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        lines += std::string(kinds[kind]) + ' ' + std::to_string(counts_[kind]) + '\n';
    }
    return lines + "hanging " + std::to_string(hanging_) + '\n';
}

} // namespace quellbox
