#pragma once

#include "messages/TableLines.h"
#include "messages/WholeFile.h"

#include <QString>

namespace quellbox {

/// Writes a table in UTF-8. The end of the name says in which form: ".csv" for spreadsheets, with a byte order mark and
/// headers (CsvLine), ".jsonl" for programs (JsonLine). The file is there as a whole or not at all, and what had its
/// name stays as it is until then.
///
/// Throws FileError, also where there is a file of that name, unless `existing` allows to replace it.
void WriteTable(const QString& path, const TableColumns& columns, const NextRow& next,
                ExistingFile existing = ExistingFile::Keep);

} // namespace quellbox
