#pragma once

#include <QChar>

namespace quellbox {

/// Folds the case of a text in place, so that equal letters of either case become equal. The text keeps its length,
/// wherefore a letter that would fold to two keeps its form.
void FoldCase(QChar* text, const QChar* end);

} // namespace quellbox
