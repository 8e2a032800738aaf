#pragma once

#include "messages/MessageListModel.h"

#include <QDateTime>
#include <QStringList>

namespace quellbox {

/// A row whose subject is `subject`; the key too, unless another one is given.
inline MessageRow RowWith(const QString& subject, const QString& key = {}) {
    MessageTexts texts;
    texts.subject = subject;
    return {key.isEmpty() ? subject : key, 0, 0, texts};
}

/// The same row for a file of that many bytes.
inline MessageRow WithSize(const MessageRow& row, qint64 bytes) {
    return {row.Key(), bytes, row.Time(), row.Texts()};
}

/// The same row for a file of that local time.
inline MessageRow WithTime(const MessageRow& row, const QDateTime& time) {
    const qint64 seconds = QDateTime(time.date(), time.time(), Qt::UTC).toSecsSinceEpoch();
    return {row.Key(), row.Size(), seconds, row.Texts()};
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
        keys += model.Row(row).Key();
    }
    return keys;
}

/// True when RowOfKey() finds every row where it is.
inline bool FindsEveryRow(const MessageListModel& model) {
    for (int row = 0; row < model.Count(); ++row) {
        if (model.RowOfKey(model.Row(row).Key()) != row) {
            return false;
        }
    }
    return true;
}

} // namespace quellbox
