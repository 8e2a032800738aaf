#include "whitelist/ToleranceCandidates.h"

#include "whitelist/WhitelistMatcher.h"

namespace quellbox {

std::vector<UnblockedSender> ToleranceCandidates(const std::vector<UnblockedSender>& unblocked,
                                                 const QStringList& whitelist, size_t most) {
    const WhitelistMatcher matcher(whitelist);
    std::vector<UnblockedSender> candidates;
    for (const UnblockedSender& sender : unblocked) {
        if (candidates.size() == most) {
            break;
        }
        if (!matcher.TolerableSender(sender.sender)) {
            candidates.push_back(sender);
        }
    }
    return candidates;
}

} // namespace quellbox
