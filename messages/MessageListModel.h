#pragma once

#include "messages/MessageRow.h"

#include <QAbstractTableModel>
#include <QHash>

#include <memory>
#include <vector>

namespace quellbox {

/// What is shown of a header value, which may be a megabyte long: widgets lay out what they get at every paint.
QString ShownText(const QString& text);

/// The rows of the message list in list order. Views get display texts and, per row, whether it is unread; header
/// pictures are kept for them as opaque values.
class MessageListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// True for an unread row, which the view shows bold.
    static constexpr int unreadRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) override;

    int Count() const { return static_cast<int>(rows_.size()); }
    const MessageRow& Row(int row) const { return *rows_[static_cast<size_t>(row)]; }

    /// The row of a message file, or -1. Constant time, but for the first call after rows moved.
    int RowOfKey(const QString& key) const;

    void Clear();

    /// Appends rows at the end, whatever the list was sorted by.
    void Append(std::vector<MessageRow> rows);

    /// Replaces the contents of a row, whose key stays.
    void Update(int row, MessageRow contents);

    /// Removes rows by ascending index. Few ranges are removed one by one, many by one reset of the model, which
    /// loses the view's selection.
    void Remove(const std::vector<int>& rows);

    /// Marks rows `first` to `last` as unread or read.
    void MarkRows(int first, int last, bool unread);

    /// Sorts by a column's texts, ignoring case; rows with equal texts keep their order, as do views their selection.
    void sort(int column, Qt::SortOrder order) override;

private:
    // Sorting, removing and growing move pointers only: a row is large, and a list may have 32,766.
    std::vector<std::unique_ptr<MessageRow>> rows_;
    std::array<QVariant, ColumnCount> headerPictures_;
    mutable QHash<QString, int> rowOfKey_; // empty while stale
};

} // namespace quellbox
