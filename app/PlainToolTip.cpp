#include "app/PlainToolTip.h"

#include <QTextDocument>

namespace quellbox {

// A tool tip draws what looks like markup as markup, and everything else as it is, also what was escaped.
QString PlainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped()) : text;
}

} // namespace quellbox
