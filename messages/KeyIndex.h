#pragma once

#include "messages/MessageRow.h"

#include <utility>
#include <vector>

namespace quellbox {

/// Finds rows by their key without keeping a second copy of the keys.
class KeyIndex {
public:
    /// To be called after rows came, went or moved, and before Find().
    void Clear() { rowsByHash_.clear(); }

    /// The row of a key, or -1. The first call after Clear() looks at all rows, later ones at hardly more than one.
    int Find(QStringView key, const std::vector<MessageRow>& rows);

private:
    void Build(const std::vector<MessageRow>& rows);

    std::vector<std::pair<size_t, int>> rowsByHash_; // ascending; empty while stale
};

} // namespace quellbox
