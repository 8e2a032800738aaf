#pragma once

#include <QString>

namespace quellbox {

/// How many columns of a terminal a text takes: two for a wide character of East Asia, none for a combining mark.
int ColumnsOf(QStringView text);

/// As much of the beginning of a text as fits into so many columns, padded with blanks to them. What does not fit is
/// told by "…" at the end.
QString FitColumns(const QString& text, int columns);

} // namespace quellbox
