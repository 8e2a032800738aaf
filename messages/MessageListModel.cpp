#include "messages/MessageListModel.h"

#include "mail/DisplayText.h"
#include "messages/RemoveAt.h"
#include "messages/SortKeys.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <algorithm>
#include <iterator>
#include <memory>
#include <numeric>
#include <utility>

namespace quellbox {

namespace {

// Above this number of separate ranges a view spends longer on the removals than on a reset.
constexpr int mostRangesRemovedSingly = 32;

constexpr std::array<const char*, ColumnCount> captions{
    QT_TRANSLATE_NOOP("quellbox", "Date"), QT_TRANSLATE_NOOP("quellbox", "To"),
    QT_TRANSLATE_NOOP("quellbox", "From"), QT_TRANSLATE_NOOP("quellbox", "Subject"),
    QT_TRANSLATE_NOOP("quellbox", "Size"), QT_TRANSLATE_NOOP("quellbox", "Bytes"),
    QT_TRANSLATE_NOOP("quellbox", "SCL%")};

int AlignmentOf(int column) {
    const bool right = column == ColumnSize || column == ColumnBytes;
    return int{Qt::AlignVCenter} | int{right ? Qt::AlignRight : Qt::AlignLeft};
}

struct Range {
    int first;
    int last;
};

std::vector<Range> RangesOf(const std::vector<int>& rows) {
    std::vector<Range> ranges;
    for (const int row : rows) {
        if (ranges.empty() || ranges.back().last + 1 != row) {
            ranges.push_back({row, row});
        } else {
            ranges.back().last = row;
        }
    }
    return ranges;
}

std::vector<int> RowsOf(const Range& range) {
    std::vector<int> rows(static_cast<size_t>(range.last - range.first + 1));
    std::iota(rows.begin(), rows.end(), range.first);
    return rows;
}

/// Another thread frees a long list, which takes longer than a window may stand still.
void DestroyLater(std::vector<MessageRow> rows) {
    auto unused = std::make_shared<std::vector<MessageRow>>(std::move(rows));
    QThreadPool::globalInstance()->start([last = std::move(unused)]() mutable { last.reset(); });
}

} // namespace

QString MessageListModel::CaptionOf(int column) {
    return QCoreApplication::translate("quellbox", captions[static_cast<size_t>(column)]);
}

int MessageListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count();
}

int MessageListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int{ColumnCount};
}

QVariant MessageListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const MessageRow& row = Row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return ShownText(row.Cell(index.column()));
    case Qt::TextAlignmentRole:
        return AlignmentOf(index.column());
    case unreadRole:
        return row.IsUnread();
    case Qt::AccessibleTextRole:
        return row.IsUnread()
                   ? QCoreApplication::translate("quellbox", "%1, unread").arg(ShownText(row.Cell(index.column())))
                   : ShownText(row.Cell(index.column()));
    default:
        return {};
    }
}

QVariant MessageListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return CaptionOf(section);
    case Qt::TextAlignmentRole:
        return AlignmentOf(section);
    case Qt::DecorationRole:
        return headerPictures_[static_cast<size_t>(section)];
    default:
        return {};
    }
}

bool MessageListModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) {
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount || role != Qt::DecorationRole) {
        return false;
    }
    headerPictures_[static_cast<size_t>(section)] = value;
    Q_EMIT headerDataChanged(orientation, section, section);
    return true;
}

int MessageListModel::RowOfKey(const QString& key) const {
    const int place = rowOfKey_.Find(key, rows_);
    return place < 0 ? -1 : RowAtPlace(place);
}

const MessageRow* MessageListModel::Find(const QString& key) const {
    const int place = rowOfKey_.Find(key, rows_);
    return place < 0 ? nullptr : &rows_[static_cast<size_t>(place)];
}

void MessageListModel::Clear() {
    if (rows_.empty()) {
        return;
    }
    beginResetModel();
    DestroyLater(std::exchange(rows_, {}));
    rowOfKey_.Clear();
    sight_.RemoveAll();
    endResetModel();
    Q_EMIT CountsChanged();
}

void MessageListModel::Append(std::vector<MessageRow> rows) {
    if (rows.empty()) {
        return;
    }
    const std::vector<int> shown = sight_.PlacesOfNew(rows);
    const int count = IsNarrowed() ? static_cast<int>(shown.size()) : static_cast<int>(rows.size());
    if (count > 0) {
        beginInsertRows({}, Count(), Count() + count - 1);
    }
    rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    rowOfKey_.Clear();
    for (const int place : shown) {
        sight_.Add(place);
    }
    if (count > 0) {
        endInsertRows();
    }
    Q_EMIT CountsChanged();
}

void MessageListModel::Update(int row, MessageRow contents) {
    Put(PlaceOf(row), std::move(contents));
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void MessageListModel::Put(int place, MessageRow contents) {
    rows_[static_cast<size_t>(place)] = std::move(contents);
    rowOfKey_.Clear();
    sight_.Put(place, rows_[static_cast<size_t>(place)]);
}

void MessageListModel::Replace(MessageRow contents) {
    const int place = rowOfKey_.Find(contents.Key(), rows_);
    if (place < 0) {
        return;
    }
    if (const int row = RowAtPlace(place); row >= 0) {
        Update(row, std::move(contents));
    } else {
        Put(place, std::move(contents));
    }
}

void MessageListModel::Drop(const std::vector<int>& places) {
    sight_.Remove(places, TotalCount());
    RemoveAt(rows_, places);
    rowOfKey_.Clear();
}

void MessageListModel::Remove(const std::vector<int>& rows) {
    if (rows.empty()) {
        return;
    }
    std::vector<Range> ranges = RangesOf(rows);
    if (ranges.size() <= mostRangesRemovedSingly) {
        for (; !ranges.empty(); ranges.pop_back()) {
            const Range range = ranges.back();
            beginRemoveRows({}, range.first, range.last);
            Drop(sight_.PlacesOf(RowsOf(range))); // each time, since a listener may look rows up between them
            endRemoveRows();
        }
    } else {
        beginResetModel();
        Drop(sight_.PlacesOf(rows));
        endResetModel();
    }
    Q_EMIT CountsChanged();
}

void MessageListModel::RemoveKey(const QString& key) {
    const int place = rowOfKey_.Find(key, rows_);
    if (place < 0) {
        return;
    }
    if (const int row = RowAtPlace(place); row >= 0) {
        Remove({row});
        return;
    }
    Drop({place});
    Q_EMIT CountsChanged();
}

void MessageListModel::MarkRows(int first, int last, bool unread) {
    for (int row = first; row <= last; ++row) {
        MarkPlace(PlaceOf(row), unread);
    }
    if (first <= last) {
        Q_EMIT dataChanged(index(first, 0), index(last, ColumnCount - 1), {unreadRole});
    }
}

void MessageListModel::MarkKey(const QString& key, bool unread) {
    const int place = rowOfKey_.Find(key, rows_);
    if (place < 0) {
        return;
    }
    if (const int row = RowAtPlace(place); row >= 0) {
        MarkRows(row, row, unread);
    } else {
        MarkPlace(place, unread);
    }
}

bool MessageListModel::Narrow(const QString& text) {
    const QuickFilter filter(text);
    if (filter == sight_.Filter()) {
        return false;
    }
    std::vector<int> places = sight_.PlacesFor(filter, rows_);
    const bool isShown = sight_.IsShown(filter, places, TotalCount());
    if (isShown) {
        sight_.Show(filter, std::move(places));
        return false;
    }
    beginResetModel();
    sight_.Show(filter, std::move(places));
    endResetModel();
    Q_EMIT CountsChanged();
    return true;
}

void MessageListModel::sort(int column, Qt::SortOrder order) {
    const SortKeys keys(rows_, column, ratesByNumber_);
    const auto precedes = [&keys, order](int left, int right) {
        const int compared = keys.Compare(left, right);
        return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
    };
    std::vector<int> sequence(rows_.size());
    std::iota(sequence.begin(), sequence.end(), 0);
    if (std::is_sorted(sequence.begin(), sequence.end(), precedes)) {
        return;
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::stable_sort(sequence.begin(), sequence.end(), precedes);
    Rearrange(sequence);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

/// Puts the row of each place of the sequence where that stands in it, and lets the views' indexes follow.
void MessageListModel::Rearrange(const std::vector<int>& sequence) {
    std::vector<MessageRow> sorted;
    sorted.reserve(rows_.size());
    std::vector<int> newPlaces(rows_.size());
    for (const int place : sequence) {
        newPlaces[static_cast<size_t>(place)] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(rows_[static_cast<size_t>(place)]));
    }
    const QModelIndexList before = persistentIndexList();
    std::vector<int> places(static_cast<size_t>(before.size()));
    std::transform(before.begin(), before.end(), places.begin(),
                   [&](const QModelIndex& old) { return newPlaces[static_cast<size_t>(PlaceOf(old.row()))]; });
    rows_ = std::move(sorted);
    rowOfKey_.Clear();
    sight_.Reorder(sequence, newPlaces);
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype number = 0; number < before.size(); ++number) {
        after.append(index(RowAtPlace(places[static_cast<size_t>(number)]), before[number].column()));
    }
    changePersistentIndexList(before, after);
}

} // namespace quellbox
