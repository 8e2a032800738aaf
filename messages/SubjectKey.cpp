#include "messages/SubjectKey.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quellbox {

namespace {

constexpr QChar ellipsis(u'\u2026');

// Of answers and forwarded messages, as mail programs write them in several languages.
constexpr auto prefixes =
    std::to_array<std::u16string_view>({u"re", u"aw", u"antw", u"fw", u"fwd", u"wg", u"sv", u"vs", u"vb", u"tr", u"rv",
                                        u"ref", u"rif", u"odp", u"pd", u"res", u"enc", u"betreff"});

bool IsPrefix(QStringView word) {
    return std::any_of(prefixes.begin(), prefixes.end(), [word](std::u16string_view prefix) {
        return word.compare(QStringView(prefix), Qt::CaseInsensitive) == 0;
    });
}

bool IsAsciiLetter(QChar unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

qsizetype SkipSpaces(QStringView text, qsizetype at) {
    while (at < text.size() && text[at].isSpace()) {
        ++at;
    }
    return at;
}

/// Behind a count such as "[2]" or "(2)", when there is one.
qsizetype SkipCount(QStringView text, qsizetype at) {
    if (at == text.size() || (text[at] != u'[' && text[at] != u'(')) {
        return at;
    }
    const QChar close = text[at] == u'[' ? u']' : u')';
    qsizetype end = at + 1;
    while (end < text.size() && text[end].isDigit()) {
        ++end;
    }
    return end < text.size() && end > at + 1 && text[end] == close ? end + 1 : at;
}

QStringView WithoutPrefixes(QStringView subject) {
    qsizetype begin = SkipSpaces(subject, 0);
    for (;;) {
        qsizetype end = begin;
        while (end < subject.size() && IsAsciiLetter(subject[end])) {
            ++end;
        }
        const qsizetype colon = SkipSpaces(subject, SkipCount(subject, SkipSpaces(subject, end)));
        const bool hasColon = colon < subject.size() && (subject[colon] == u':' || subject[colon] == u'\uFF1A');
        if (!hasColon || !IsPrefix(subject.mid(begin, end - begin))) {
            return subject.mid(begin);
        }
        begin = SkipSpaces(subject, colon + 1);
    }
}

/// Letters of scripts that write without spaces between words, among others. A number in them is a word of its own.
bool IsLetterWithoutCase(QChar unit) {
    return unit.unicode() >= 0x80 && unit.category() == QChar::Letter_Other;
}

bool IsPartOfWord(QChar unit) {
    return unit.unicode() < 0x80 ? IsAsciiLetter(unit) || (unit >= u'0' && unit <= u'9')
                                 : unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate();
}

qsizetype EndOfRun(QStringView text, qsizetype begin) {
    const bool hasNoCase = IsLetterWithoutCase(text[begin]);
    const auto ends = [hasNoCase](QChar unit) { return unit.isSpace() || IsLetterWithoutCase(unit) != hasNoCase; };
    return std::find_if(text.begin() + begin + 1, text.end(), ends) - text.begin();
}

/// Calls `use` with the begin and the end of each word, without punctuation at its ends, until it returns false; what
/// is punctuation alone is none.
template <class Use>
void ForEachWord(QStringView text, Use use) {
    for (qsizetype at = SkipSpaces(text, 0); at < text.size();) {
        const qsizetype next = EndOfRun(text, at);
        qsizetype end = next;
        while (at < end && !IsPartOfWord(text[at])) {
            ++at;
        }
        while (end > at && !IsPartOfWord(text[end - 1])) {
            --end;
        }
        if (at < end && !use(at, end)) {
            return;
        }
        at = SkipSpaces(text, next);
    }
}

} // namespace

QStringView SubjectKey::Counted(QStringView subject) {
    return WithoutPrefixes(subject.first(std::min(subject.size(), longestSubject)));
}

/// Of a word and of its letters alone.
bool SubjectKey::IsChanging(QStringView word, QStringView letters) const {
    const auto isCode = [](QChar unit) { return unit == u'@' || unit.isDigit(); };
    if (std::any_of(word.begin(), word.end(), isCode) || names_.Contains(letters)) {
        return true;
    }
    if (letters.size() == word.size()) {
        return false;
    }
    const auto isApostrophe = [](QChar unit) { return unit == u'\'' || unit == u'\u2019'; };
    const qsizetype at = std::find_if(word.begin(), word.end(), isApostrophe) - word.begin();
    return at < word.size() && names_.Contains(letters.first(std::min(at, letters.size()))); // as in "Ann's"
}

/// Writes the key of a text into letters_, as long as `goesOn` says so of what is written.
template <class GoesOn>
QStringView SubjectKey::Write(QStringView text, GoesOn goesOn) {
    char16_t* end = letters_.data();
    bool hasChanged = false;
    ForEachWord(text, [&](qsizetype from, qsizetype to) {
        const QStringView word = text.mid(from, to - from);
        char16_t* const begin = end == letters_.data() ? end : end + 1;
        char16_t* const wordEnd = WriteLetters(word, begin);
        const bool changes = IsChanging(word, QStringView(begin, wordEnd));
        if (changes && hasChanged) {
            return true;
        }
        if (begin != end) {
            *end = u' ';
        }
        end = wordEnd;
        if (changes) {
            *begin = ellipsis.unicode();
            end = begin + 1;
        }
        hasChanged = changes;
        return goesOn(QStringView(letters_.data(), end));
    });
    return end == letters_.data() ? text.trimmed() : QStringView(letters_.data(), end);
}

const QString& SubjectKey::Of(QStringView subject, QStringView recipients) {
    names_.Read(recipients);
    key_.resize(0);
    key_.append(Write(Counted(subject), [](QStringView) { return true; }));
    return key_;
}

bool SubjectKey::Is(QStringView key, QStringView subject, QStringView recipients) {
    names_.Read(recipients);
    return Write(Counted(subject), [key](QStringView begin) { return key.startsWith(begin); }) == key;
}

QString SubjectKey::Title(QStringView subject, QStringView recipients) {
    names_.Read(recipients);
    const QStringView text = Counted(subject);
    QString title;
    qsizetype done = 0;
    bool hasChanged = false;
    ForEachWord(text, [&](qsizetype begin, qsizetype end) {
        const QStringView word = text.mid(begin, end - begin);
        const bool changes = IsChanging(word, {letters_.data(), WriteLetters(word, letters_.data())});
        if (!changes || !hasChanged) {
            title.append(text.mid(done, begin - done));
            changes ? title.append(ellipsis) : title.append(text.mid(begin, end - begin));
        }
        done = end;
        hasChanged = changes;
        return true;
    });
    title.append(text.mid(done));
    return title.trimmed();
}

} // namespace quellbox
