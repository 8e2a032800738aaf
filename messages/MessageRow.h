#pragma once

#include <QString>

#include <array>

namespace quellbox {

/// The columns of the message list, in display order. `Bytes` is hidden; it is what `Size` sorts by.
enum Column { ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnBytes, ColumnScl, ColumnCount };

/// One row of the message list: a message file of the archive directory.
struct MessageRow {
    QString key;                            ///< file name within the archive directory, unique in the list
    std::array<QString, ColumnCount> cells; ///< display texts, by Column
    QString tag;                            ///< envelope sender
    bool unread = false;                    ///< shown bold
};

} // namespace quellbox
