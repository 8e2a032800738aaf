#include "mail/TextWidth.h"

#include <glib.h>

#include <limits>

namespace quellbox {

namespace {

int ColumnsOfCharacter(char32_t character) {
    if (g_unichar_iszerowidth(character)) {
        return 0;
    }
    return g_unichar_iswide(character) ? 2 : 1;
}

/// The length of the character that a text begins with, which may be a pair of surrogates.
qsizetype LengthOfFirst(QStringView text) {
    const bool isPair = text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate();
    return isPair ? 2 : 1;
}

/// The beginning of a text that takes no more columns, which are counted.
QStringView Beginning(QStringView text, int mostColumns, int& columns) {
    columns = 0;
    qsizetype end = 0;
    while (end < text.size()) {
        const qsizetype length = LengthOfFirst(text.sliced(end));
        const char32_t character =
            length == 2 ? QChar::surrogateToUcs4(text[end], text[end + 1]) : char32_t{text[end].unicode()};
        const int more = ColumnsOfCharacter(character);
        if (more > mostColumns - columns) {
            break;
        }
        columns += more;
        end += length;
    }
    return text.first(end);
}

} // namespace

int ColumnsOf(QStringView text) {
    int columns = 0;
    Beginning(text, std::numeric_limits<int>::max(), columns);
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
