#include "mail/TextWidth.h"

#include <QStringIterator>

#include <glib.h>

namespace quellbox {

namespace {

int ColumnsOfCharacter(char32_t character) {
    if (g_unichar_iszerowidth(character)) {
        return 0;
    }
    return g_unichar_iswide(character) ? 2 : 1;
}

/// The beginning of a text that takes no more columns, which are counted.
QStringView Beginning(QStringView text, int mostColumns, int& columns) {
    columns = 0;
    QStringIterator character(text);
    qsizetype end = 0;
    while (character.hasNext()) {
        const int more = ColumnsOfCharacter(character.next());
        if (columns + more > mostColumns) {
            break;
        }
        columns += more;
        end = character.position() - text.begin();
    }
    return text.first(end);
}

} // namespace

int ColumnsOf(QStringView text) {
    int columns = 0;
    for (QStringIterator character(text); character.hasNext();) {
        columns += ColumnsOfCharacter(character.next());
    }
    return columns;
}

QString FitColumns(const QString& text, int columns) {
    int taken = 0;
    QStringView fitting = Beginning(text, columns, taken);
    if (fitting.size() == text.size()) {
        return text + QString(columns - taken, QLatin1Char(' '));
    }
    fitting = Beginning(text, columns - 1, taken);
    return fitting.toString() + QChar(0x2026) + QString(columns - 1 - taken, QLatin1Char(' '));
}

} // namespace quellbox
