#include "messages/KeyIndex.h"

#include <QHash>

#include <algorithm>

namespace quellbox {

namespace {

size_t HashOf(QStringView key) {
    return qHash(key, QHashSeed::globalSeed());
}

} // namespace

int KeyIndex::Find(QStringView key, const std::vector<MessageRow>& rows) {
    if (rowsByHash_.empty()) {
        Build(rows);
    }
    const size_t hash = HashOf(key);
    auto candidate = std::lower_bound(rowsByHash_.begin(), rowsByHash_.end(), std::pair(hash, 0));
    for (; candidate != rowsByHash_.end() && candidate->first == hash; ++candidate) {
        if (rows[static_cast<size_t>(candidate->second)].HasKey(key)) {
            return candidate->second;
        }
    }
    return -1;
}

void KeyIndex::Build(const std::vector<MessageRow>& rows) {
    rowsByHash_.reserve(rows.size());
    for (const MessageRow& row : rows) {
        rowsByHash_.emplace_back(HashOf(row.Key()), static_cast<int>(rowsByHash_.size()));
    }
    std::sort(rowsByHash_.begin(), rowsByHash_.end());
}

} // namespace quellbox
