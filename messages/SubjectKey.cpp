#include "messages/SubjectKey.h"

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

constexpr QChar ellipsis(u'\u2026');
constexpr qsizetype longestSubject = 1000;

// Of answers and forwarded messages, as mail programs write them in several languages.
constexpr std::array prefixes{u"re", u"aw", u"antw", u"fw",  u"fwd", u"wg", u"sv",  u"vs",  u"vb",
                              u"tr", u"rv", u"ref",  u"rif", u"odp", u"pd", u"res", u"enc", u"betreff"};

bool IsPrefix(QStringView word) {
    return std::any_of(prefixes.begin(), prefixes.end(), [word](const char16_t* prefix) {
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
    qsizetype end = begin + 1;
    while (end < text.size() && !text[end].isSpace() && IsLetterWithoutCase(text[end]) == hasNoCase) {
        ++end;
    }
    return end;
}

/// Calls `use` with the begin and the end of each word, without punctuation at its ends; what is punctuation alone is
/// none.
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
        if (at < end) {
            use(at, end);
        }
        at = SkipSpaces(text, next);
    }
}

QStringView Counted(QStringView subject) {
    return WithoutPrefixes(subject.first(std::min(subject.size(), longestSubject)));
}

} // namespace

bool SubjectKey::IsChanging(QStringView word) {
    word_.resize(0);
    const bool changes =
        std::any_of(word.begin(), word.end(), [](QChar unit) { return unit == u'@' || unit.isDigit(); });
    AppendLetters(word, word_);
    if (changes || names_.Contains(word_)) {
        return true;
    }
    for (const QChar apostrophe : {QChar(u'\''), QChar(u'\u2019')}) {
        if (const qsizetype at = word.indexOf(apostrophe); at > 0) { // as in "Ann's"
            return names_.Contains(QStringView(word_).first(std::min(at, word_.size())));
        }
    }
    return false;
}

const QString& SubjectKey::Of(QStringView subject, QStringView recipients) {
    names_.Read(recipients);
    const QStringView text = Counted(subject);
    key_.resize(0);
    bool hasChanged = false;
    ForEachWord(text, [&](qsizetype begin, qsizetype end) {
        const bool changes = IsChanging(text.mid(begin, end - begin));
        if (changes && hasChanged) {
            return;
        }
        if (!key_.isEmpty()) {
            key_ += u' ';
        }
        changes ? key_.append(ellipsis) : key_.append(word_);
        hasChanged = changes;
    });
    if (key_.isEmpty()) {
        key_.append(text.trimmed());
    }
    return key_;
}

QString SubjectKey::Title(QStringView subject, QStringView recipients) {
    names_.Read(recipients);
    const QStringView text = Counted(subject);
    QString title;
    qsizetype done = 0;
    bool hasChanged = false;
    ForEachWord(text, [&](qsizetype begin, qsizetype end) {
        const bool changes = IsChanging(text.mid(begin, end - begin));
        if (!changes || !hasChanged) {
            title.append(text.mid(done, begin - done));
            changes ? title.append(ellipsis) : title.append(text.mid(begin, end - begin));
        }
        done = end;
        hasChanged = changes;
    });
    title.append(text.mid(done));
    return title.trimmed();
}

} // namespace quellbox
