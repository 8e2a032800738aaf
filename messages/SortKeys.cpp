#include "messages/SortKeys.h"

#include "messages/FoldCase.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quellbox {

SortKeys::SortKeys(const std::vector<MessageRow>& rows, int column, bool ratesByNumber) {
    if (column == ColumnDate) {
        TakeNumbers(rows, &MessageRow::Time);
    } else if (column == ColumnSize || column == ColumnBytes) {
        TakeNumbers(rows, &MessageRow::Size);
    } else if (column == ColumnScl && ratesByNumber) {
        TakeRatings(rows);
    } else {
        TakeTexts(rows, column);
    }
}

void SortKeys::TakeNumbers(const std::vector<MessageRow>& rows, qint64 (MessageRow::*number)() const) {
    numbers_.reserve(rows.size());
    for (const MessageRow& row : rows) {
        numbers_.push_back((row.*number)());
    }
}

void SortKeys::TakeRatings(const std::vector<MessageRow>& rows) {
    constexpr double parts = 1'000'000; // of a point, of which filters write three digits at most
    constexpr double most = 1'000'000'000;
    numbers_.reserve(rows.size());
    for (const MessageRow& row : rows) {
        bool isNumber = false;
        const double rating = row.Cell(ColumnScl).toDouble(&isNumber);
        numbers_.push_back(isNumber ? std::llround(std::clamp(rating, -most, most) * parts)
                                    : std::numeric_limits<qint64>::min());
    }
}

void SortKeys::TakeTexts(const std::vector<MessageRow>& rows, int column) {
    begins_.reserve(rows.size() + 1);
    begins_.push_back(0);
    for (const MessageRow& row : rows) {
        row.AppendCell(column, folded_);
        begins_.push_back(folded_.size());
    }
    QChar* const text = folded_.data();
    for (size_t row = 0; row < rows.size(); ++row) {
        FoldCase(text + begins_[row], text + begins_[row + 1]);
    }
}

} // namespace quellbox
