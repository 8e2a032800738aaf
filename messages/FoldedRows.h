#pragma once

#include "messages/MessageRow.h"

#include <QString>

#include <vector>

namespace quellbox {

/// What the first so many rows of the list show, in all columns that are shown and with the case folded, side by side
/// in memory, so that words are sought in all of them within a few milliseconds.
class FoldedRows {
public:
    int Count() const { return static_cast<int>(texts_.size()); }

    /// The text of a row; a character that occurs in no word divides the columns.
    QStringView Text(int place) const {
        const Span& span = texts_[static_cast<size_t>(place)];
        return QStringView(folded_).sliced(span.begin, span.length);
    }

    void Append(const MessageRow& row);

    /// The row at a place has other contents now.
    void Replace(int place, const MessageRow& row);

    /// The rows at ascending places have gone.
    void Remove(const std::vector<int>& places);

    /// The rows have another order: `sequence` says for each place where its row was.
    void Reorder(const std::vector<int>& sequence);

    /// Gives all memory back.
    void Clear() { *this = {}; }

private:
    struct Span {
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    Span Fold(const MessageRow& row);

    QString folded_;
    std::vector<Span> texts_; // by place
};

} // namespace quellbox
