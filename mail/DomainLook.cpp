#include "mail/DomainLook.h"

#include "mail/OrganizationalDomain.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>

namespace quellbox {

namespace {

using Scripts = QSet<int>;

/// The letters in lower case that look like letters of ASCII (Unicode's confusables.txt, UTS 39, those of one letter
/// that a domain may hold).
QChar SeenAs(QChar letter) {
    static const QHash<char16_t, char> lookAlikes{// Cyrillic
                                                  {0x0430, 'a'},
                                                  {0x0435, 'e'},
                                                  {0x043E, 'o'},
                                                  {0x0440, 'p'},
                                                  {0x0441, 'c'},
                                                  {0x0443, 'y'},
                                                  {0x0445, 'x'},
                                                  {0x0455, 's'},
                                                  {0x0456, 'i'},
                                                  {0x0458, 'j'},
                                                  {0x04BB, 'h'},
                                                  {0x04CF, 'l'},
                                                  {0x0501, 'd'},
                                                  {0x051B, 'q'},
                                                  {0x051D, 'w'},
                                                  {0x0433, 'r'},
                                                  {0x04AF, 'y'},
                                                  {0x0475, 'v'},
                                                  {0x04C0, 'l'},
                                                  // Greek
                                                  {0x03B1, 'a'},
                                                  {0x03B3, 'y'},
                                                  {0x03B9, 'i'},
                                                  {0x03BD, 'v'},
                                                  {0x03BF, 'o'},
                                                  {0x03C1, 'p'},
                                                  {0x03C3, 'o'},
                                                  {0x03C5, 'u'},
                                                  {0x03F2, 'c'},
                                                  {0x03F3, 'j'},
                                                  // Armenian
                                                  {0x0561, 'w'},
                                                  {0x0563, 'q'},
                                                  {0x0566, 'q'},
                                                  {0x0570, 'h'},
                                                  {0x0578, 'n'},
                                                  {0x057C, 'n'},
                                                  {0x057D, 'u'},
                                                  {0x0581, 'g'},
                                                  {0x0584, 'f'},
                                                  {0x0585, 'o'},
                                                  // Latin beyond ASCII that bears no mark
                                                  {0x0131, 'i'},
                                                  {0x0251, 'a'},
                                                  {0x0261, 'g'},
                                                  {0x0269, 'i'},
                                                  {0x026A, 'i'},
                                                  {0x026F, 'w'},
                                                  {0x028B, 'u'},
                                                  {0x028F, 'y'},
                                                  {0x0280, 'r'},
                                                  {0x029F, 'l'},
                                                  {0x1D04, 'c'},
                                                  {0x1D0F, 'o'},
                                                  {0x1D1C, 'u'},
                                                  {0x1D20, 'v'},
                                                  {0x1D21, 'w'},
                                                  {0x1D22, 'z'},
                                                  {0x1D0B, 'k'},
                                                  {0x1D00, 'a'},
                                                  {0x1D07, 'e'},
                                                  {0x1D1B, 't'},

                                                  {0x1E9D, 'f'}};
    const auto found = lookAlikes.constFind(letter.unicode());
    return found == lookAlikes.constEnd() ? QChar() : QChar(QLatin1Char(*found));
}

/// The same of letters that are only loosely alike, and not listed there for ASCII: among Latin ones they are taken for
/// them, but a word of such letters alone is read as what it is.
QChar LooselySeenAs(QChar letter) {
    static const QHash<char16_t, char> lookAlikes{{0x044C, 'b'}, {0x043C, 'm'}, {0x043D, 'h'}, {0x0442, 't'},
                                                  {0x043A, 'k'}, {0x0432, 'b'}, {0x0491, 'r'}, {0x03BA, 'k'},
                                                  {0x03C7, 'x'}, {0x03C4, 't'}, {0x03B7, 'n'}, {0x03C9, 'w'},
                                                  {0x03B5, 'e'}, {0x0575, 'j'}, {0x0582, 'i'}};
    const auto found = lookAlikes.constFind(letter.unicode());
    return found == lookAlikes.constEnd() ? SeenAs(letter) : QChar(QLatin1Char(*found));
}

bool IsSaidLetter(QChar character) {
    return character.script() != QChar::Script_Common && character.script() != QChar::Script_Inherited;
}

Scripts ScriptsOf(const QString& label) {
    Scripts scripts;
    for (const char32_t character : label.toUcs4()) {
        const QChar::Script script = QChar::script(character);
        if (script != QChar::Script_Common && script != QChar::Script_Inherited) {
            scripts.insert(script);
        }
    }
    return scripts;
}

bool MayStandTogether(const Scripts& scripts) {
    static const Scripts together[] = {
        {QChar::Script_Latin, QChar::Script_Han, QChar::Script_Hiragana, QChar::Script_Katakana},
        {QChar::Script_Latin, QChar::Script_Han, QChar::Script_Bopomofo},
        {QChar::Script_Latin, QChar::Script_Han, QChar::Script_Hangul}};
    return scripts.size() < 2 || std::any_of(std::begin(together), std::end(together),
                                             [&scripts](const Scripts& all) { return all.contains(scripts); });
}

QString SeenLabel(const QString& label) {
    QString seen = label;
    for (QChar& character : seen) {
        const QChar other = LooselySeenAs(character);
        character = other.isNull() ? character : other;
    }
    return seen;
}

bool IsAscii(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x80; });
}

/// Whether a label of one script passes for another one: all its letters do, or in Latin some do.
bool PassesForAnother(const QString& label, const QString& topLevel) {
    const Scripts scripts = ScriptsOf(label);
    const bool isTurkish = topLevel == QLatin1String("tr") || topLevel == QLatin1String("az");
    if (scripts == Scripts{QChar::Script_Latin}) {
        return std::any_of(label.begin(), label.end(), [isTurkish](QChar letter) {
            return !SeenAs(letter).isNull() && !(isTurkish && letter == QChar(0x0131));
        });
    }
    return !ScriptsOf(topLevel).intersects(scripts) && std::all_of(label.begin(), label.end(), [](QChar letter) {
        return !IsSaidLetter(letter) || !SeenAs(letter).isNull();
    });
}

} // namespace

DomainLook JudgeDomain(const QString& domain) {
    const QString ascii = AsciiDomain(domain);
    if (!ascii.contains(QLatin1String("xn--"))) {
        return {DomainLook::Kind::Plain, domain, domain};
    }
    const QString readable = ReadableDomain(ascii);
    const QStringList labels = readable.split(u'.');
    DomainLook look{DomainLook::Kind::Plain, readable, {}};
    QStringList seen;
    for (const QString& label : labels) {
        seen.append(SeenLabel(label));
        if (IsAscii(label)) {
            continue;
        }
        if (!MayStandTogether(ScriptsOf(label))) {
            look.kind = DomainLook::Kind::MixedScripts;
        } else if (look.kind == DomainLook::Kind::Plain && PassesForAnother(label, labels.last())) {
            look.kind = DomainLook::Kind::LookAlike;
        }
    }
    look.seenAs = seen.join(u'.');
    return look;
}

} // namespace quellbox
