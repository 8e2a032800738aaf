#include "tests/support/fault_mount/Rules.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

namespace quellbox {

namespace {

const std::map<std::string, Fault, std::less<>> faults{
    {"fail", Fault::Fail}, {"lose", Fault::Lose}, {"hang", Fault::Hang},          {"cut", Fault::Cut},
    {"fill", Fault::Fill}, {"die", Fault::Die},   {"die-after", Fault::DieAfter}, {"unmount", Fault::Unmount}};

const std::map<std::string, int, std::less<>> errors{
    {"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EACCES", EACCES},         {"EPERM", EPERM},
    {"EBUSY", EBUSY},   {"ENOENT", ENOENT}, {"ETIMEDOUT", ETIMEDOUT},   {"ENOTCONN", ENOTCONN},
    {"ESTALE", ESTALE}, {"EEXIST", EEXIST}, {"EROFS", EROFS},           {"EHOSTDOWN", EHOSTDOWN},
    {"EINVAL", EINVAL}, {"ENOSYS", ENOSYS}, {"EOPNOTSUPP", EOPNOTSUPP}, {"EDQUOT", EDQUOT}};

/// The error of a rule that names none.
int UsualError(Fault fault) {
    switch (fault) {
    case Fault::Fail:
    case Fault::Lose:
    case Fault::Cut:
        return EIO;
    case Fault::Fill:
        return ENOSPC;
    default:
        return 0;
    }
}

bool IsOneOf(std::string_view list, std::string_view kind) {
    std::istringstream kinds{std::string(list)};
    for (std::string one; std::getline(kinds, one, ',');) {
        if (one == "*" || one == kind) {
            return true;
        }
    }
    return false;
}

/// A mistake in a test, which is to be noticed.
[[noreturn]] void Reject(const std::string& line) {
    std::fprintf(stderr, "quellbox_fault_mount: no rule: %s\n", line.c_str());
    std::abort();
}

} // namespace

Rules::Rule Rules::Parse(const std::string& line) {
    Rule rule;
    rule.line = line;
    std::istringstream words(line);
    std::string what;
    if (!(words >> what >> rule.kinds >> rule.name) || !faults.contains(what)) {
        Reject(line);
    }
    rule.fault = faults.at(what);
    rule.error = UsualError(rule.fault);
    for (std::string word; words >> word;) {
        const size_t equals = std::min(word.find('='), word.size());
        const std::string key = word.substr(0, equals);
        const std::string value = word.substr(std::min(equals + 1, word.size()));
        if (key == "then") {
            rule.then = true;
        } else if (key == "error" && errors.contains(value)) {
            rule.error = errors.at(value);
        } else if (key == "call") {
            rule.only = std::stoull(value);
        } else if (key == "from") {
            rule.from = std::stoull(value);
        } else if (key == "ms") {
            rule.forMs = std::stoi(value);
        } else if (key == "bytes") {
            rule.room = std::stoull(value);
        } else {
            Reject(line);
        }
    }
    return rule;
}

bool Rules::Holds(Rule& rule, Call call, std::string_view name, size_t bytes) {
    if (!IsOneOf(rule.kinds, NameOf(call)) || (rule.name != "*" && rule.name != name)) {
        return false;
    }
    ++rule.seen;
    if (rule.fault == Fault::Fill && bytes <= rule.room && (bytes > 0 || rule.room > 0)) {
        rule.room -= bytes;
        return false;
    }
    if (rule.fault == Fault::Cut && !rule.cutName.empty()) {
        return rule.cutName == name;
    }
    return (rule.only == 0 || rule.seen == rule.only) && rule.seen >= rule.from;
}

Fate Rules::FateOf(Call call, std::string_view name, size_t bytes) {
    const std::lock_guard lock(mutex_);
    ReadFile();
    Rule* before = nullptr;
    for (Rule& rule : rules_) {
        const bool isActive = !rule.then || before == nullptr || before->cameTrue > 0;
        before = &rule;
        if (!isActive || !Holds(rule, call, name, bytes)) {
            continue;
        }
        ++rule.cameTrue;
        Fate fate{rule.fault, rule.error, rule.room, rule.forMs, rule.line};
        rule.room = 0;
        if (rule.fault == Fault::Fill && fate.room == 0) {
            fate.fault = Fault::Fail;
        }
        if (rule.fault == Fault::Cut) {
            fate.fault = rule.cutName.empty() ? Fault::Cut : Fault::Fail;
            rule.cutName = name;
        }
        return fate;
    }
    return {};
}

bool Rules::Has(const std::string& line) {
    const std::lock_guard lock(mutex_);
    ReadFile();
    return std::any_of(rules_.begin(), rules_.end(), [&line](const Rule& rule) { return rule.line == line; });
}

std::uint64_t Rules::ComeTrue() {
    const std::lock_guard lock(mutex_);
    ReadFile();
    std::uint64_t count = 0;
    for (const Rule& rule : rules_) {
        count += rule.cameTrue;
    }
    return count;
}

// The caller holds the lock.
void Rules::ReadFile() {
    if (file_.empty()) {
        return;
    }
    std::ostringstream text;
    if (const std::ifstream file(file_); file) {
        text << file.rdbuf();
    }
    if (text.str() == text_) {
        return;
    }
    text_ = text.str();
    rules_.clear();
    std::istringstream lines(text_);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.front() != '#') {
            rules_.push_back(Parse(line));
        }
    }
}

} // namespace quellbox
