#pragma once

#include "messages/MessageRow.h"

#include <QStringView>

#include <memory>
#include <string>
#include <vector>

namespace quellbox {

/// The texts of one column made ready for many comparisons that ignore case: folded once instead of at each
/// comparison, and side by side in memory instead of all over it.
class SortKeys {
public:
    SortKeys(const std::vector<std::unique_ptr<MessageRow>>& rows, size_t column);

    /// Below, at or above 0, as QString::compare() says of the texts of two rows.
    int Compare(int left, int right) const { return Key(left).compare(Key(right)); }

private:
    QStringView Key(int row) const {
        const auto index = static_cast<size_t>(row);
        return QStringView(folded_.data() + begins_[index], folded_.data() + begins_[index + 1]);
    }

    std::u16string folded_;
    std::vector<size_t> begins_; // by row, and the end of the last one
};

} // namespace quellbox
