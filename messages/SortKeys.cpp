#include "messages/SortKeys.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quellbox {

namespace {

/// Folds the case of a text, which keeps its length.
void Fold(QChar* text, const QChar* end) {
    char16_t last = 0;
    for (; text != end; ++text) {
        const char16_t code = text->unicode();
        if (code < 0x80) {
            *text = QChar(code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + 0x20) : code);
        } else if (QChar::isLowSurrogate(code) && QChar::isHighSurrogate(last)) {
            // No folding of such a pair changes its first half.
            *text = QChar(QChar::lowSurrogate(QChar::toCaseFolded(QChar::surrogateToUcs4(last, code))));
        } else {
            *text = text->toCaseFolded();
        }
        last = code;
    }
}

} // namespace

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
        Fold(text + begins_[row], text + begins_[row + 1]);
    }
}

} // namespace quellbox
