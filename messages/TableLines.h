#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace quellbox {

/// A column of a table for other programs.
struct TableColumn {
    QString key;    ///< for programs: the same in every language
    QString header; ///< for people
    bool isNumber = false;
};

using TableColumns = std::vector<TableColumn>;

/// Gives the cells of the next row, one for each column; false when there is none. What it throws ends the writing.
/// A number is written as it is used to be in programs, as in -1234.5; a cell without one is empty.
using NextRow = std::function<bool(QStringList& cells)>;

/// A row of CSV (RFC 4180), with its line end. A cell that a spreadsheet would calculate is made harmless as
/// HarmlessInSpreadsheet() says.
QString CsvLine(const TableColumns& columns, const QStringList& cells);

/// The line with the headers, with which CSV begins.
QString CsvHeader(const TableColumns& columns);

/// What stands before that in a file, and not in a pipe: without a byte order mark spreadsheets take the text for one
/// in the old character set of the computer and show the wrong letters.
QString CsvMark();

/// A row of JSON Lines, with its line end: an object that has each cell as it is.
QString JsonLine(const TableColumns& columns, const QStringList& cells);

/// A line as it is written: in UTF-8, in which half of a surrogate pair, which Unicode does not have alone, becomes
/// U+FFFD.
QByteArray TableBytes(const QString& line);

} // namespace quellbox
