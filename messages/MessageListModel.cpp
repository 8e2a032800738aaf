#include "messages/MessageListModel.h"

#include "mail/DisplayText.h"
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

void MessageListModel::Clear() {
    if (rows_.empty()) {
        return;
    }
    beginResetModel();
    DestroyLater(std::exchange(rows_, {}));
    rowOfKey_.Clear();
    endResetModel();
}

void MessageListModel::Append(std::vector<MessageRow> rows) {
    if (rows.empty()) {
        return;
    }
    beginInsertRows({}, Count(), Count() + static_cast<int>(rows.size()) - 1);
    rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    rowOfKey_.Clear();
    endInsertRows();
}

void MessageListModel::Update(int row, MessageRow contents) {
    rows_[static_cast<size_t>(row)] = std::move(contents);
    rowOfKey_.Clear();
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
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
            rows_.erase(rows_.begin() + range.first, rows_.begin() + range.last + 1);
            rowOfKey_.Clear(); // after every range, since a listener may look rows up between them
            endRemoveRows();
        }
        return;
    }
    beginResetModel();
    size_t kept = 0;
    auto removed = rows.begin();
    for (size_t row = 0; row < rows_.size(); ++row) {
        if (removed != rows.end() && static_cast<size_t>(*removed) == row) {
            ++removed;
            continue;
        }
        if (kept != row) {
            rows_[kept] = std::move(rows_[row]);
        }
        ++kept;
    }
    rows_.resize(kept);
    rowOfKey_.Clear();
    endResetModel();
}

void MessageListModel::MarkRows(int first, int last, bool unread) {
    for (int row = first; row <= last; ++row) {
        rows_[static_cast<size_t>(row)].SetUnread(unread);
    }
    if (first <= last) {
        Q_EMIT dataChanged(index(first, 0), index(last, ColumnCount - 1), {unreadRole});
    }
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
    std::vector<MessageRow> sorted;
    sorted.reserve(rows_.size());
    std::vector<int> newRow(rows_.size());
    for (const int row : sequence) {
        newRow[static_cast<size_t>(row)] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(rows_[static_cast<size_t>(row)]));
    }
    rows_ = std::move(sorted);
    rowOfKey_.Clear();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& old : before) {
        after.append(index(newRow[static_cast<size_t>(old.row())], old.column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace quellbox
