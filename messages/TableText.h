#pragma once

#include <QString>

namespace quellbox {

/// True for a number as JSON has it, which spreadsheets take for the same number.
bool IsPlainNumber(const QString& text);

/// A text as a spreadsheet may open it: an apostrophe stands before what it would otherwise calculate. That is what
/// begins with = + - or @, ordinary or full-width, after any blanks and quotes, unless it is a mere number, and what
/// begins with a tab or a line break. A spreadsheet whose separator is no comma divides a cell at semicolons, tabs and
/// line breaks, so what follows those is treated as a beginning, too.
QString HarmlessInSpreadsheet(const QString& text);

/// Appends a text as a cell of CSV (RFC 4180): in quotes, with its own quotes doubled. A NUL, at which many programs
/// end a text, becomes U+FFFD.
void AppendCsvText(const QString& text, QString& to);

/// Appends a text as a string of JSON. Besides what JSON demands, all that some program takes for the end of a line is
/// escaped.
void AppendJsonText(const QString& text, QString& to);

} // namespace quellbox
