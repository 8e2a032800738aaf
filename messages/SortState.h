#pragma once

#include "messages/MessageRow.h"

#include <QString>

namespace quellbox {

/// Which column carries the sort arrow, and what the list is sorted by. The list starts sorted by date, newest first.
struct SortState {
    qint16 SortColumn = ColumnDate; ///< column that carries the arrow
    Qt::SortOrder order = Qt::DescendingOrder;

    /// The column whose texts are compared: "Size" sorts by the zero-padded "Bytes".
    int SortKey() const { return SortColumn == ColumnSize ? int{ColumnBytes} : int{SortColumn}; }

    /// Key of the arrow's picture.
    QString ArrowKey() const { return order == Qt::AscendingOrder ? QStringLiteral("up") : QStringLiteral("down"); }

    /// A click on a column's header: the same column flips, another starts ascending, but "Date" newest first.
    void Click(int column) {
        if (column == SortColumn) {
            order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
            return;
        }
        SortColumn = static_cast<qint16>(column);
        order = column == ColumnDate ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
};

} // namespace quellbox
