#pragma once

#include "history/HistoryTypes.h"

#include <QStringList>

#include <vector>

namespace quellbox {

/// Of those whose messages were unblocked, the first `most` that no entry of the whitelist tolerates yet, and that the
/// whitelist can take (IsValidEntry()). They are in lower case, as its entries are.
std::vector<UnblockedSender> ToleranceCandidates(const std::vector<UnblockedSender>& unblocked,
                                                 const QStringList& whitelist, size_t most);

/// Likewise of the senders of some messages: each once, in lower case, in the order in which they come first.
QStringList SendersToTolerate(const QStringList& senders, const QStringList& whitelist);

} // namespace quellbox
