#include "messages/TableText.h"

#include <QRegularExpression>

namespace quellbox {

namespace {

constexpr QChar replacement = QChar::ReplacementCharacter;

/// What divides a cell where the separator is another one than ours.
bool DividesCells(QChar unit) {
    return unit == u'\t' || unit == u'\r' || unit == u'\n' || unit == u';';
}

/// What spreadsheets pass over before they decide what a cell holds, or may pass over.
bool IsPassedOver(QChar unit) {
    return unit.isSpace() || unit == u'"' || unit.category() == QChar::Other_Format ||
           unit.category() == QChar::Other_Control;
}

bool BeginsFormula(QChar unit) {
    return QStringView(u"=+-@\uFF1D\uFF0B\uFF0D\uFF20\uFE66\uFE62\uFE63\uFE6B\u2212").contains(unit);
}

/// A part of a cell that a spreadsheet may take for a whole one.
bool IsFormula(QStringView part) {
    for (const QChar unit : part) {
        if (!IsPassedOver(unit)) {
            return BeginsFormula(unit);
        }
    }
    return false;
}

} // namespace

bool IsPlainNumber(const QString& text) {
    static const QRegularExpression number(QStringLiteral("\\A-?(0|[1-9][0-9]*)(\\.[0-9]+)?([eE][-+]?[0-9]+)?\\z"));
    return number.match(text).hasMatch();
}

QString HarmlessInSpreadsheet(const QString& text) {
    if (IsPlainNumber(text)) {
        return text;
    }
    QString harmless;
    qsizetype begin = 0;
    if (!text.isEmpty() && text.front() != u';' && DividesCells(text.front())) {
        harmless += u'\'';
    }
    while (begin < text.size()) {
        qsizetype end = begin;
        while (end < text.size() && !DividesCells(text[end])) {
            ++end;
        }
        const QStringView part = QStringView(text).mid(begin, end - begin);
        if (IsFormula(part)) {
            harmless += u'\'';
        }
        harmless += part;
        if (end < text.size()) {
            harmless += text[end];
        }
        begin = end + 1;
    }
    return harmless;
}

void AppendCsvText(const QString& text, QString& to) {
    to += u'"';
    for (const QChar unit : text) {
        if (unit == u'"') {
            to += u'"';
        }
        to += unit.isNull() ? replacement : unit;
    }
    to += u'"';
}

void AppendJsonText(const QString& text, QString& to) {
    to += u'"';
    for (const QChar unit : text) {
        if (unit == u'"' || unit == u'\\') {
            to += u'\\';
            to += unit;
        } else if (unit.category() == QChar::Other_Control || unit == u'\u2028' || unit == u'\u2029') {
            to += QStringLiteral("\\u%1").arg(static_cast<int>(unit.unicode()), 4, 16, QLatin1Char('0'));
        } else {
            to += unit;
        }
    }
    to += u'"';
}

} // namespace quellbox
