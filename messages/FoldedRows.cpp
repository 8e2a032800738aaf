#include "messages/FoldedRows.h"

#include "mail/DisplayText.h"
#include "messages/FoldCase.h"
#include "messages/RemoveAt.h"

#include <array>

namespace quellbox {

namespace {

// The column of bytes is hidden: a zero in front of a size must not make a row match.
constexpr std::array soughtColumns{ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnScl};

/// Appends what the view shows in a cell.
void AppendShown(const MessageRow& row, Column column, QString& to) {
    const qsizetype begin = to.size();
    row.AppendCell(column, to);
    if (to.size() - begin > longestShownText) {
        to.replace(begin, to.size() - begin, ShownText(to.sliced(begin)));
    }
}

} // namespace

FoldedRows::Span FoldedRows::Fold(const MessageRow& row) {
    const qsizetype begin = folded_.size();
    for (const Column column : soughtColumns) {
        AppendShown(row, column, folded_);
        folded_.append(QLatin1Char('\n'));
    }
    QChar* const text = folded_.data();
    FoldCase(text + begin, text + folded_.size());
    return {begin, folded_.size() - begin};
}

void FoldedRows::Append(const MessageRow& row) {
    texts_.push_back(Fold(row));
}

// The former text stays in memory until the list is no longer narrowed; few rows ever get another one.
void FoldedRows::Replace(int place, const MessageRow& row) {
    texts_[static_cast<size_t>(place)] = Fold(row);
}

void FoldedRows::Remove(const std::vector<int>& places) {
    RemoveAt(texts_, places);
}

void FoldedRows::Reorder(const std::vector<int>& sequence) {
    std::vector<Span> ordered;
    ordered.reserve(texts_.size());
    for (const int place : sequence) {
        ordered.push_back(texts_[static_cast<size_t>(place)]);
    }
    texts_ = std::move(ordered);
}

} // namespace quellbox
