#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace quellbox {

/// A column of a table that is written to a file.
struct TableColumn {
    QString key;    ///< for programs: the same in every language
    QString header; ///< for people
    bool isNumber = false;
};

using TableColumns = std::vector<TableColumn>;

/// Gives the cells of the next row, one for each column; false when there is none. What it throws ends the writing.
/// A number is written as it is used to be in programs, as in -1234.5; a cell without one is empty.
using NextRow = std::function<bool(QStringList& cells)>;

/// What becomes of a file that has the name already.
enum class ExistingFile { Keep, Replace };

/// Writes a table. The end of the name says in which form: ".csv" for spreadsheets, ".jsonl" for programs (a JSON
/// object in each line). The file is there as a whole or not at all, and what had its name stays as it is until then.
///
/// CSV is that of RFC 4180, in UTF-8. It begins with a byte order mark: without one spreadsheets take the text for one
/// in the old character set of the computer and show the wrong letters, while readers that take UTF-8 for granted have
/// a name for this kind. A cell that a spreadsheet would calculate is made harmless as HarmlessInSpreadsheet() says;
/// JSON Lines have each cell as it is, but for what Unicode cannot express.
///
/// Throws FileError, also where there is a file of that name, unless `existing` allows to replace it.
void WriteTable(const QString& path, const TableColumns& columns, const NextRow& next,
                ExistingFile existing = ExistingFile::Keep);

} // namespace quellbox
