#include "mail/ScriptReading.h"

namespace quellbox {

namespace {

bool IsAsciiLetter(QChar c) {
    return c.unicode() < 0x80 && c.isLetter();
}

bool IsDrawing(QChar c) {
    return (c.unicode() >= 0x80 && c.unicode() < 0xA0) || (c.unicode() >= 0x2500 && c.unicode() < 0x25A0);
}

/// Marks that may stand inside of a word.
bool IsInnerMark(QChar c) {
    return QStringView(u"’‘–—…·´“”«»•\u00A0\u00AD").contains(c);
}

int OdditiesOfLetter(QChar before, QChar letter, QChar after, QChar::Script script) {
    int odd = letter.script() == script || letter.script() == QChar::Script_Inherited ? 0 : 1;
    odd += IsAsciiLetter(before) ? 1 : 0;
    odd += IsAsciiLetter(after) ? 1 : 0;
    odd += letter.isUpper() && before.isLower() ? 1 : 0;
    return odd;
}

bool IsOfEastAsia(QChar c) {
    switch (c.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
    case QChar::Script_Bopomofo:
        return true;
    default:
        // Punctuation, marks of lengthened sounds, and the wide forms of ASCII; the halves of rare ideographs.
        return (c.unicode() >= 0x3000 && c.unicode() < 0x3100) || c.unicode() >= 0xFF00 || c.isSurrogate() ||
               QStringView(u"·—―‖‘’“”…※℃→←↑↓■□◆◇○●◎★☆△▲▽▼×÷").contains(c);
    }
}

} // namespace

ReadingCheck CheckScript(QStringView text, QChar::Script script) {
    ReadingCheck check;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < 0x80)
            continue;
        ++check.looked;
        const QChar before = i > 0 ? text[i - 1] : QChar(u' ');
        const QChar after = i + 1 < text.size() ? text[i + 1] : QChar(u' ');
        if (c.isLetter() || c.isMark())
            check.odd += OdditiesOfLetter(before, c, after, script);
        else if (IsDrawing(c) || (before.isLetter() && after.isLetter() && !IsInnerMark(c)))
            ++check.odd;
    }
    return check;
}

ReadingCheck CheckEastAsian(QStringView text) {
    ReadingCheck check;
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            continue;
        ++check.looked;
        check.odd += IsOfEastAsia(c) ? 0 : 1;
    }
    return check;
}

} // namespace quellbox
