#include "mail/CharsetGuess.h"

#include "mail/Charset.h"
#include "mail/CharsetDetector.h"
#include "mail/EastAsianBytes.h"
#include "mail/ScriptReading.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <vector>

namespace quellbox {

namespace {

/// What must come out of bytes that are read in a character set.
enum class Kind { Latin, Script, EastAsian };

struct CharsetFacts {
    QByteArray answer; ///< of the detector
    QByteArray name;   ///< the character set to read with
    Kind kind;
    LatinGroup group = LatinGroup::Western;
    QChar::Script script = QChar::Script_Latin;
};

/// The character sets that mail is written in. What else the detector knows it only ever names by mistake.
const std::vector<CharsetFacts>& AllFacts() {
    static const std::vector<CharsetFacts> facts = {
        {"iso-8859-15", "iso-8859-15", Kind::Latin, LatinGroup::Western},
        {"windows-1254", "windows-1254", Kind::Latin, LatinGroup::Turkish},
        {"iso-8859-9", "windows-1254", Kind::Latin, LatinGroup::Turkish},
        {"windows-1250", "windows-1250", Kind::Latin, LatinGroup::CentralEuropean},
        {"iso-8859-2", "iso-8859-2", Kind::Latin, LatinGroup::CentralEuropean},
        {"iso-8859-16", "windows-1250", Kind::Latin, LatinGroup::CentralEuropean}, // Romanian
        {"windows-1257", "windows-1257", Kind::Latin, LatinGroup::Baltic},
        {"iso-8859-13", "iso-8859-13", Kind::Latin, LatinGroup::Baltic},
        {"iso-8859-4", "iso-8859-4", Kind::Latin, LatinGroup::Baltic},
        {"windows-1251", "windows-1251", Kind::Script, {}, QChar::Script_Cyrillic},
        {"koi8-r", "koi8-u", Kind::Script, {}, QChar::Script_Cyrillic}, // which has all its letters
        {"iso-8859-5", "iso-8859-5", Kind::Script, {}, QChar::Script_Cyrillic},
        {"ibm866", "cp866", Kind::Script, {}, QChar::Script_Cyrillic},
        {"mac-cyrillic", "x-mac-cyrillic", Kind::Script, {}, QChar::Script_Cyrillic},
        {"windows-1253", "windows-1253", Kind::Script, {}, QChar::Script_Greek},
        {"iso-8859-7", "iso-8859-7", Kind::Script, {}, QChar::Script_Greek},
        {"windows-1255", "windows-1255", Kind::Script, {}, QChar::Script_Hebrew},
        {"iso-8859-8", "windows-1255", Kind::Script, {}, QChar::Script_Hebrew},
        {"windows-1256", "windows-1256", Kind::Script, {}, QChar::Script_Arabic},
        {"iso-8859-6", "iso-8859-6", Kind::Script, {}, QChar::Script_Arabic},
        {"tis-620", "tis-620", Kind::Script, {}, QChar::Script_Thai},
        {"gb18030", "gb18030", Kind::EastAsian},
        {"big5", "big5", Kind::EastAsian},
        {"uhc", "euc-kr", Kind::EastAsian},
        {"euc-jp", "euc-jp", Kind::EastAsian},
        {"shift_jis", "shift_jis", Kind::EastAsian},
        {"euc-tw", "euc-tw", Kind::EastAsian},
    };
    return facts;
}

const CharsetFacts* FactsOf(const QByteArray& answer) {
    const auto found = std::find_if(AllFacts().begin(), AllFacts().end(),
                                    [&](const CharsetFacts& facts) { return facts.answer == answer; });
    return found == AllFacts().end() ? nullptr : &*found;
}

ReadingCheck CheckText(QStringView text, const CharsetFacts& facts) {
    switch (facts.kind) {
    case Kind::Latin:
        return CheckLatin(text, facts.group);
    case Kind::Script:
        return CheckScript(text, facts.script);
    case Kind::EastAsian:
        return CheckEastAsian(text);
    }
    return {};
}

/// Nothing when the bytes cannot be read in that character set.
std::optional<ReadingCheck> CheckBytes(QByteArrayView bytes, const CharsetFacts& facts) {
    const std::optional<QString> text = DecodeStrictly(bytes, facts.name);
    return text ? std::optional(CheckText(*text, facts)) : std::nullopt;
}

ReadingCheck CheckWestern(QByteArrayView bytes, LatinGroup group = LatinGroup::Western) {
    return CheckLatin(DecodeCharset(bytes, "windows-1252"), group);
}

/// The answer, and the character set that the detector mixes it up with. The first one wins a tie: the answer, unless
/// it is one that hardly any mail is written in.
QByteArrayList WithRelative(const QByteArray& answer) {
    static const std::array<std::array<QByteArray, 2>, 5> mixedUp = {{{"windows-1251", "mac-cyrillic"},
                                                                      {"windows-1253", "iso-8859-7"},
                                                                      {"windows-1256", "iso-8859-6"},
                                                                      {"windows-1250", "iso-8859-2"},
                                                                      {"windows-1257", "iso-8859-13"}}};
    for (const auto& [frequent, other] : mixedUp) {
        if (answer == frequent || (answer == other && other == "mac-cyrillic"))
            return {frequent, other};
        if (answer == other)
            return {other, frequent};
    }
    return {answer};
}

struct Reading {
    QByteArray name;
    ReadingCheck check;
};

/// The reading with the fewest oddities, of the detector's answer and of what it is mixed up with.
std::optional<Reading> BestReading(QByteArrayView bytes, const CharsetFacts& answer) {
    std::optional<Reading> best;
    for (const QByteArray& relative : WithRelative(answer.answer)) {
        const CharsetFacts& facts = *FactsOf(relative);
        const auto check = CheckBytes(bytes, facts);
        if (check && (!best || check->odd < best->check.odd))
            best = Reading{facts.name, *check};
    }
    return best;
}

/// Bytes of which the detector's answer is no help: the character sets whose alphabets they keep to, the frequent ones
/// first. `isWestern` says that the answer was one for languages of the west.
QByteArray GuessByAlphabet(QByteArrayView bytes, bool isWestern) {
    static const QByteArrayList western = {"iso-8859-15"};
    static const QByteArrayList any = {"iso-8859-15",  "windows-1254", "windows-1250", "iso-8859-2",
                                       "windows-1257", "windows-1251", "koi8-r"};
    for (const QByteArray& answer : isWestern ? western : any) {
        const CharsetFacts& facts = *FactsOf(answer);
        const auto check = CheckBytes(bytes, facts);
        if (check && check->IsFair())
            return facts.name;
    }
    const QByteArray eastAsian = GuessEastAsian(bytes);
    return IsPlausible(bytes, eastAsian) ? eastAsian : QByteArray();
}

/// Whether an eth, which is where Turkish has its soft g, stands where Turkish has none: at the end of a word, or not
/// behind a vowel.
bool HasIcelandicEth(const QString& lower) {
    for (qsizetype at = lower.indexOf(QChar(u'ð')); at >= 0; at = lower.indexOf(QChar(u'ð'), at + 1)) {
        const bool isBehindVowel = at > 0 && QStringView(u"aeiouöüýâîû").contains(lower[at - 1]);
        if (!isBehindVowel || at + 1 == lower.size() || !lower[at + 1].isLetter())
            return true;
    }
    return false;
}

/// Icelandic in Windows-1252, which has its letters where Turkish and Baltic character sets have theirs.
bool IsIcelandic(QByteArrayView bytes, const CharsetFacts* answer) {
    const QString text = DecodeCharset(bytes, "windows-1252").toLower();
    const auto hasOneOf = [&](QStringView letters) {
        return std::any_of(text.begin(), text.end(), [&](QChar c) { return letters.contains(c); });
    };
    const bool mayBeTurkish = answer != nullptr && answer->group == LatinGroup::Turkish;
    return hasOneOf(u"ðþ") && (!mayBeTurkish || hasOneOf(u"áéíóúæ") || HasIcelandicEth(text)) &&
           CheckLatin(text, LatinGroup::Icelandic).IsFlawless();
}

QByteArray GuessByDetector(QByteArrayView bytes, const ReadingCheck& western) {
    const QByteArray answer = DetectCharset(bytes);
    const CharsetFacts* facts = FactsOf(answer);
    const std::optional<Reading> best = facts == nullptr ? std::nullopt : BestReading(bytes, *facts);
    const bool isFair = best && best->check.IsFair();
    if (isFair && facts->kind != Kind::Latin)
        return best->name;
    if (IsIcelandic(bytes, facts))
        return {};
    if (isFair && best->check.odd < western.odd)
        return best->name;
    if (western.IsFair())
        return {};
    return GuessByAlphabet(bytes, answer == "iso-8859-1" || answer == "iso-8859-15" || answer == "windows-1252");
}

/// The beginning of a line that is too long, cut where in no character set a character goes on.
QByteArrayView WithinLength(QByteArrayView line, qsizetype length) {
    if (line.size() <= length)
        return line;
    while (length > 0 && static_cast<unsigned char>(line[length - 1]) >= '0')
        --length;
    return line.first(length);
}

} // namespace

QByteArray GuessCharset(QByteArrayView bytes) {
    const ReadingCheck western = CheckWestern(bytes);
    return western.IsFlawless() ? QByteArray() : GuessByDetector(bytes, western);
}

bool IsPlausible(QByteArrayView bytes, const QByteArray& charset) {
    const auto facts = std::find_if(AllFacts().begin(), AllFacts().end(),
                                    [&](const CharsetFacts& each) { return each.name == charset; });
    const auto check = facts == AllFacts().end() ? std::nullopt : CheckBytes(bytes, *facts);
    return check && check->IsFair();
}

bool IsPlausiblyWestern(QByteArrayView bytes) {
    return CheckWestern(bytes).IsFair();
}

QByteArray LinesBeyondAscii(QByteArrayView bytes) {
    constexpr qsizetype enough = 8192;
    QByteArray lines;
    const auto isBeyond = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    auto at = bytes.begin();
    while (lines.size() < enough && (at = std::find_if(at, bytes.end(), isBeyond)) != bytes.end()) {
        auto begin = at;
        while (begin != bytes.begin() && begin[-1] != '\n' && at - begin < enough)
            --begin;
        const auto end = std::find(at, bytes.end(), '\n');
        lines.append(WithinLength(QByteArrayView(begin, end), 2 * enough)).append('\n');
        at = end;
    }
    return lines;
}

QByteArray Iso2022Charset(QByteArrayView bytes) {
    struct Sequence {
        QByteArrayView bytes;
        const char* charset;
    };
    static constexpr Sequence sequences[] = {
        {"$)C", "iso-2022-kr"},  {"$)A", "iso-2022-cn"},   {"$)G", "iso-2022-cn"},   {"$*H", "iso-2022-cn"},
        {"$B", "iso-2022-jp"},   {"$@", "iso-2022-jp"},    {"(J", "iso-2022-jp"},    {"(I", "iso-2022-jp-3"},
        {"$A", "iso-2022-jp-2"}, {"$(C", "iso-2022-jp-2"}, {"$(D", "iso-2022-jp-2"},
    };
    for (qsizetype at = bytes.indexOf('\x1B'); at >= 0; at = bytes.indexOf('\x1B', at + 1)) {
        for (const Sequence& sequence : sequences) {
            if (bytes.sliced(at + 1).startsWith(sequence.bytes))
                return sequence.charset;
        }
    }
    return {};
}

} // namespace quellbox
