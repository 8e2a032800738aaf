#pragma once

#include "messages/KeyIndex.h"
#include "messages/MessageRow.h"
#include "messages/RowsInSight.h"

#include <QAbstractTableModel>

#include <array>
#include <vector>

namespace quellbox {

/// The rows of the message list in list order. Views get display texts and, per row, whether it is unread; header
/// pictures are kept for them as opaque values.
///
/// The list can be narrowed to the rows that hold some words. Rows are then those in sight, for views and for whatever
/// shows, selects or acts: the others are not there for it. What follows the archive, whose messages are in the list
/// whether they are in sight or not, asks for TotalCount() and names rows by their keys.
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

    /// The rows in sight.
    int Count() const { return sight_.Count(TotalCount()); }
    const MessageRow& Row(int row) const { return rows_[static_cast<size_t>(PlaceOf(row))]; }

    /// The row of a message file; -1 when there is none or it is out of sight. Only the first call after rows moved
    /// takes long in a long list.
    int RowOfKey(const QString& key) const;

    /// All rows, in sight or not.
    int TotalCount() const { return static_cast<int>(rows_.size()); }

    /// What the list knows of a message file, in sight or not; null when it is not listed. Valid until a row changes.
    const MessageRow* Find(const QString& key) const;

    /// Removes all rows, in sight or not.
    void Clear();

    /// Appends rows at the end, whatever the list was sorted by. In a narrowed list those come into sight that hold the
    /// words.
    void Append(std::vector<MessageRow> rows);

    /// Puts another row in the place of one in sight, which stays there until other words are sought: it would be gone
    /// from under the mouse pointer.
    void Update(int row, MessageRow contents);

    /// Puts a row in the place of the one with its key, as Update() does. One out of sight stays there until other
    /// words are sought, too: where it comes into sight, others would move from under the mouse pointer. Without such a
    /// row it does nothing.
    void Replace(MessageRow contents);

    /// Removes rows in sight by ascending index. Few ranges are removed one by one, many by one reset of the model,
    /// which loses the view's selection.
    void Remove(const std::vector<int>& rows);

    /// Removes the row of a message file, in sight or not.
    void RemoveKey(const QString& key);

    /// Marks rows `first` to `last` of those in sight as unread or read.
    void MarkRows(int first, int last, bool unread);

    /// Marks the row of a message file, in sight or not.
    void MarkKey(const QString& key, bool unread);

    /// Leaves only the rows in sight that hold all words of a text; without words all are in sight again. True when
    /// other rows are in sight now: the model was reset, and a view has lost its selection.
    bool Narrow(const QString& text);
    bool IsNarrowed() const { return sight_.IsNarrowed(); }

    /// Makes up to `most` further rows ready for Narrow(), which otherwise does all that is left. True while rows are
    /// left.
    bool PrepareToNarrow(int most) { return sight_.Prepare(rows_, most); }

    /// Gives back the memory that Narrow() needs; not while the list is narrowed.
    void ForgetNarrowing() { sight_.Forget(); }

    /// The number of a row among all rows, which narrowing does not change, and the other way round; -1 for what is out
    /// of sight.
    int PlaceOf(int row) const { return sight_.PlaceOf(row); }
    int RowAtPlace(int place) const { return sight_.RowAt(place); }

    /// Whether the column "SCL%" holds numbers. Concerns the next sort().
    void SetRatesByNumber(bool ratesByNumber) { ratesByNumber_ = ratesByNumber; }
    bool RatesByNumber() const { return ratesByNumber_; }

    /// Sorts all rows by a column: times and sizes as numbers, texts ignoring case. Rows with equal contents keep their
    /// order, as do views their selection.
    void sort(int column, Qt::SortOrder order) override;

Q_SIGNALS:
    /// How many rows there are, or are in sight, may have changed.
    void CountsChanged();

private:
    void Drop(const std::vector<int>& places);
    void Put(int place, MessageRow contents);
    void Rearrange(const std::vector<int>& sequence);
    void MarkPlace(int place, bool unread) { rows_[static_cast<size_t>(place)].SetUnread(unread); }

    std::vector<MessageRow> rows_; // all of them
    RowsInSight sight_;
    std::array<QVariant, ColumnCount> headerPictures_;
    mutable KeyIndex rowOfKey_;
    bool ratesByNumber_ = false;
};

} // namespace quellbox
