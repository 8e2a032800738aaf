#pragma once

#include "history/HistoryTypes.h"

#include <QStringList>

#include <vector>

namespace quellbox {

/// Of those whose messages were unblocked, the first `most` that no entry of the whitelist tolerates yet.
std::vector<UnblockedSender> ToleranceCandidates(const std::vector<UnblockedSender>& unblocked,
                                                 const QStringList& whitelist, size_t most);

} // namespace quellbox
