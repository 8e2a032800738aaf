#include "whitelist/ToleranceCandidates.h"

#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistRules.h"

#include <QSet>

namespace quellbox {

namespace {

bool IsCandidate(const QString& sender, const WhitelistMatcher& matcher) {
    return IsValidEntry(sender) && !matcher.TolerableSender(sender);
}

} // namespace

std::vector<UnblockedSender> ToleranceCandidates(const std::vector<UnblockedSender>& unblocked,
                                                 const QStringList& whitelist, size_t most) {
    const WhitelistMatcher matcher(whitelist);
    std::vector<UnblockedSender> candidates;
    for (const UnblockedSender& sender : unblocked) {
        if (candidates.size() == most) {
            break;
        }
        if (IsCandidate(sender.sender, matcher)) {
            candidates.push_back(sender);
        }
    }
    return candidates;
}

QStringList SendersToTolerate(const QStringList& senders, const QStringList& whitelist) {
    const WhitelistMatcher matcher(whitelist);
    QSet<QString> known;
    QStringList candidates;
    for (const QString& sender : senders) {
        const QString folded = sender.toLower();
        if (!known.contains(folded) && IsCandidate(folded, matcher)) {
            candidates.append(folded);
        }
        known.insert(folded);
    }
    return candidates;
}

} // namespace quellbox
