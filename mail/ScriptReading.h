#pragma once

#include "mail/LatinReading.h"

#include <QChar>

namespace quellbox {

/// Counts what no text in a script other than the Latin one has: letters of other scripts, a word of two scripts, a
/// capital inside of a word, a sign between letters, box drawing.
ReadingCheck CheckScript(QStringView text, QChar::Script script);

/// Counts what no Chinese, Japanese or Korean text has: characters beyond ASCII that are neither its scripts' letters
/// nor its punctuation.
ReadingCheck CheckEastAsian(QStringView text);

} // namespace quellbox
