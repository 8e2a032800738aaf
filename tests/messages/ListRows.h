#pragma once

#include "messages/MessageListModel.h"

#include <QStringList>

namespace quellbox {

/// A row whose subject is `subject`; the key too, unless another one is given.
inline MessageRow RowWith(const QString& subject, const QString& key = {}) {
    MessageRow row;
    row.key = key.isEmpty() ? subject : key;
    row.cells[ColumnSubject] = subject;
    return row;
}

inline std::vector<MessageRow> RowsWith(const QStringList& subjects) {
    std::vector<MessageRow> rows;
    for (const QString& subject : subjects) {
        rows.push_back(RowWith(subject));
    }
    return rows;
}

/// Rows with the keys "0", "1" and so on.
inline std::vector<MessageRow> NumberedRows(int count) {
    std::vector<MessageRow> rows;
    for (int row = 0; row < count; ++row) {
        rows.push_back(RowWith(QString::number(row)));
    }
    return rows;
}

inline QStringList KeysOf(const MessageListModel& model) {
    QStringList keys;
    for (int row = 0; row < model.Count(); ++row) {
        keys += model.Row(row).key;
    }
    return keys;
}

/// True when RowOfKey() finds every row where it is.
inline bool FindsEveryRow(const MessageListModel& model) {
    for (int row = 0; row < model.Count(); ++row) {
        if (model.RowOfKey(model.Row(row).key) != row) {
            return false;
        }
    }
    return true;
}

} // namespace quellbox
