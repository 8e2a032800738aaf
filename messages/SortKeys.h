#pragma once

#include "messages/MessageRow.h"

#include <QString>

#include <vector>

namespace quellbox {

/// The contents of one column made ready for many comparisons. Times and sizes compare as numbers, texts without regard
/// to case: folded once instead of at each comparison, and side by side in memory instead of all over it.
class SortKeys {
public:
    /// `ratesByNumber` says whether the column "SCL%" holds numbers. What is none comes before all of them.
    SortKeys(const std::vector<MessageRow>& rows, int column, bool ratesByNumber = false);

    /// Below, at or above 0, as the contents of two rows compare.
    int Compare(int left, int right) const {
        if (numbers_.empty()) {
            return Text(left).compare(Text(right));
        }
        const qint64 leftNumber = numbers_[static_cast<size_t>(left)];
        const qint64 rightNumber = numbers_[static_cast<size_t>(right)];
        return int{leftNumber > rightNumber} - int{leftNumber < rightNumber};
    }

private:
    QStringView Text(int row) const {
        const auto index = static_cast<size_t>(row);
        return QStringView(folded_).sliced(begins_[index], begins_[index + 1] - begins_[index]);
    }

    void TakeNumbers(const std::vector<MessageRow>& rows, qint64 (MessageRow::*number)() const);
    void TakeRatings(const std::vector<MessageRow>& rows);
    void TakeTexts(const std::vector<MessageRow>& rows, int column);

    std::vector<qint64> numbers_; // by row; empty for a column of texts
    QString folded_;
    std::vector<qsizetype> begins_; // by row, and the end of the last one
};

} // namespace quellbox
