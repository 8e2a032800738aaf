#pragma once

#include <QString>

namespace quellbox {

/// A tool tip that shows the text as it is. Where the text looks like markup it comes back as markup that shows it.
QString PlainToolTip(const QString& text);

} // namespace quellbox
