#include "fuzz/FuzzTarget.h"
#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistRules.h"

#include <algorithm>

namespace quellbox {
namespace {

/// The rule as it is worded, without the automaton.
bool ContainsAnyEntry(const QString& sender, const QStringList& entries) {
    return std::any_of(entries.begin(), entries.end(), [&](const QString& entry) { return sender.contains(entry); });
}

void CheckMatcher(const QStringList& senders, const QStringList& entries) {
    const WhitelistMatcher matcher(entries);
    for (const QString& sender : senders) {
        Require(matcher.TolerableSender(sender) == ContainsAnyEntry(sender, entries),
                "the automaton finds what the naive search finds");
    }
}

void CheckAdd(Whitelist& whitelist, const QString& text, bool answer) {
    int questions = 0;
    const AddResult result = whitelist.Add(text, [&](const QString&) {
        ++questions;
        return answer;
    });
    Require(questions <= 1, "the question about the domain is asked once");
    const QStringList& entries = whitelist.Entries();
    if (result.outcome == AddResult::Outcome::Refused) {
        Require(result.index == -1, "a refused entry has no place");
        Require(!IsValidEntry(text) || questions == 1, "a valid entry is refused by the user only");
    } else {
        Require(result.index >= 0 && result.index < entries.size(), "an entry has a place in the list");
        Require(entries[result.index] == text.toLower(), "the entry is in its place");
    }
}

} // namespace
} // namespace quellbox

/// Each line of the input is a sender and an entry; the length of a line answers the question about its domain.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    // More lines would only slow the naive search down.
    constexpr qsizetype mostLines = 64;
    const QStringList lines = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size))
                                  .split(QLatin1Char('\n'))
                                  .mid(0, mostLines);
    // The last line is a sender only: otherwise each would match itself.
    CheckMatcher(lines, lines.mid(0, lines.size() - 1));
    Whitelist whitelist;
    for (const QString& line : lines) {
        CheckAdd(whitelist, line, line.size() % 2 == 0);
    }
    CheckMatcher(lines, whitelist.Entries());
    Require(!whitelist.Entries().contains(QString()), "no entry is empty");
    return 0;
}
