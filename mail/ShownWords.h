#pragma once

#include <QString>
#include <QStringList>

namespace quellbox {

/// The words of a text in which domains are looked for, without the punctuation at their ends: blanks of every kind,
/// commas, semicolons, bars, brackets and quotes divide them, and what is not to be seen is gone. Of a very long text
/// only the beginning is looked at.
QStringList ShownWords(const QString& text);

/// Whether a word is something else, although it could be a domain: a title, the form of a firm, or a product, such as
/// "M.Sc", "Co.Ltd" or "ASP.NET", or the name of a file such as "README.md". Endings of files that are top-level
/// domains of countries count only where the name looks like one of a file.
bool IsKnownAsNoDomain(const QString& word);

} // namespace quellbox
