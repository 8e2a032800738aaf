#include "mail/LatinReading.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <map>

namespace quellbox {

namespace {

/// The letters beyond ASCII of each language, lower case, with those of common loan words and names.
const QStringList& Alphabets(LatinGroup group) {
    static const std::map<LatinGroup, QStringList> alphabets = {
        {LatinGroup::Western,
         {QStringLiteral(u"äöüß"),             // German
          QStringLiteral(u"àâæçèéêëîïôœùûüÿ"), // French
          QStringLiteral(u"áéíñóúüç"),         // Spanish
          QStringLiteral(u"ãáâàçéêíóôõúüñ"),   // Portuguese
          QStringLiteral(u"àèéìíîòóùú"),       // Italian
          QStringLiteral(u"åäöéüà"),           // Swedish
          QStringLiteral(u"åæøéöäüó"),         // Danish, Norwegian
          QStringLiteral(u"ëïéèöüáíóúêçäâô"),  // Dutch
          QStringLiteral(u"åäöšž"),            // Finnish
          QStringLiteral(u"àçèéíïòóúü"),       // Catalan
          QStringLiteral(u"äõöüšž")}},         // Estonian, all of which Windows-1252 has in the same places
        {LatinGroup::Icelandic, {QStringLiteral(u"áðéíóúýþæö")}},
        {LatinGroup::CentralEuropean,
         {QStringLiteral(u"ąćęłńóśźż"),           // Polish
          QStringLiteral(u"áčďéěíňóřšťúůýžöü"),   // Czech
          QStringLiteral(u"áäčďéíĺľňóôŕšťúýžöü"), // Slovak
          QStringLiteral(u"áéíóöőúüű"),           // Hungarian
          QStringLiteral(u"ăâîşţșțé"),            // Romanian
          QStringLiteral(u"čćđšžöüé")}},          // Croatian, Slovene, Serbian in Latin letters
        {LatinGroup::Turkish, {QStringLiteral(u"çğıöşüâîû")}},
        {LatinGroup::Baltic,
         {QStringLiteral(u"ąčęėįšųūž"),   // Lithuanian
          QStringLiteral(u"āčēģīķļņšūž"), // Latvian
          QStringLiteral(u"äõöüšž")}},    // Estonian
    };
    return alphabets.at(group);
}

constexpr QStringView kSignsAnywhere = u"’‘–—…·´“”«»•®™\u00A0\u00AD";
constexpr QStringView kSignsApart = u"„‚‹›©°§€£¥¢†‡¿¡ºª²³¹½¼¾±×÷µ¶`¨¯¬ˆ˜‰";
constexpr QStringView kOpeningSigns = u"¿¡";
constexpr QStringView kNumberSigns = u"¹²³¼½¾";

bool IsLetter(QChar c) {
    return c.isLetter() && c != QChar(u'º') && c != QChar(u'ª') && c != QChar(u'µ');
}

bool IsForeignLetter(QChar c) {
    return c.unicode() > 0x7F && IsLetter(c);
}

/// Whether a sign, which is no letter, does not belong between these two characters.
bool IsOddSign(QChar before, QChar sign, QChar after) {
    if (kSignsAnywhere.contains(sign))
        return false;
    if (!kSignsApart.contains(sign))
        return true;
    const bool opens = kOpeningSigns.contains(sign);
    if (IsLetter(before) && (IsLetter(after) || opens || kNumberSigns.contains(sign)))
        return true;
    if (IsLetter(after) && kNumberSigns.contains(sign))
        return true;
    return IsForeignLetter(before) || (IsForeignLetter(after) && !opens);
}

/// How often each letter occurs, by its code: character sets of one byte have none beyond these.
using LetterCounts = std::array<int, 0x250>;

int CountOutside(const QString& alphabet, const LetterCounts& counts, int letters) {
    for (const QChar letter : alphabet)
        letters -= counts[letter.unicode()];
    return letters;
}

} // namespace

ReadingCheck CheckLatin(QStringView text, LatinGroup group) {
    ReadingCheck check;
    LetterCounts counts = {};
    int letters = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < 0x80)
            continue;
        ++check.looked;
        const QChar before = i > 0 ? text[i - 1] : QChar(u' ');
        const QChar after = i + 1 < text.size() ? text[i + 1] : QChar(u' ');
        const QChar lower = c == QChar(0x130) ? QChar(u'i') : c.toLower(); // the capital of a Turkish i
        if (!IsLetter(c)) {
            check.odd += IsOddSign(before, c, after) ? 1 : 0;
        } else if (lower.unicode() >= 0x80 && lower.unicode() < counts.size()) {
            ++letters;
            ++counts[lower.unicode()];
            check.odd += c.isUpper() && before.isLower() ? 1 : 0; // a capital inside of a word
        } else {
            check.odd += c == QChar(0x130) && group == LatinGroup::Turkish ? 0 : 1;
        }
    }
    int fewest = letters;
    for (const QString& alphabet : Alphabets(group))
        fewest = std::min(fewest, CountOutside(alphabet, counts, letters));
    check.odd += fewest;
    return check;
}

} // namespace quellbox
