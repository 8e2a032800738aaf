#pragma once

#include "messages/KeyIndex.h"
#include "messages/MessageRow.h"

#include <QAbstractTableModel>

#include <array>
#include <vector>

namespace quellbox {

/// The rows of the message list in list order. Views get display texts and, per row, whether it is unread; header
/// pictures are kept for them as opaque values.
class MessageListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// True for an unread row, which the view shows bold.
    static constexpr int unreadRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    /// What stands above a column, one of Column, in the user's language.
    static QString CaptionOf(int column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) override;

    int Count() const { return static_cast<int>(rows_.size()); }
    const MessageRow& Row(int row) const { return rows_[static_cast<size_t>(row)]; }

    /// The row of a message file, or -1. Only the first call after rows moved takes long in a long list.
    int RowOfKey(const QString& key) const { return rowOfKey_.Find(key, rows_); }

    void Clear();

    /// Appends rows at the end, whatever the list was sorted by.
    void Append(std::vector<MessageRow> rows);

    /// Puts another row in the place of one.
    void Update(int row, MessageRow contents);

    /// Removes rows by ascending index. Few ranges are removed one by one, many by one reset of the model, which
    /// loses the view's selection.
    void Remove(const std::vector<int>& rows);

    /// Marks rows `first` to `last` as unread or read.
    void MarkRows(int first, int last, bool unread);

    /// Whether the column "SCL%" holds numbers. Concerns the next sort().
    void SetRatesByNumber(bool ratesByNumber) { ratesByNumber_ = ratesByNumber; }
    bool RatesByNumber() const { return ratesByNumber_; }

    /// Sorts by a column: times and sizes as numbers, texts ignoring case. Rows with equal contents keep their order,
    /// as do views their selection.
    void sort(int column, Qt::SortOrder order) override;

private:
    std::vector<MessageRow> rows_;
    std::array<QVariant, ColumnCount> headerPictures_;
    mutable KeyIndex rowOfKey_;
    bool ratesByNumber_ = false;
};

} // namespace quellbox
