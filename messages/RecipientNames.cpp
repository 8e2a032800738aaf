#include "messages/RecipientNames.h"

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

constexpr qsizetype longestText = 300;
constexpr size_t mostWords = 16;

// What a mailbox is called after its purpose, or a display name holds besides a name. Subjects use the same words.
constexpr std::array noNames{u"abuse",   u"account", u"admin",   u"and",       u"billing", u"buero",    u"contact",
                             u"dear",    u"der",     u"die",     u"dr",        u"drs",     u"einkauf",  u"email",
                             u"for",     u"fuer",    u"hello",   u"help",      u"info",    u"invoice",  u"jobs",
                             u"kontakt", u"list",    u"mail",    u"marketing", u"mr",      u"mrs",      u"ms",
                             u"news",    u"noreply", u"office",  u"order",     u"orders",  u"post",     u"postmaster",
                             u"prof",    u"sales",   u"service", u"shop",      u"support", u"team",     u"test",
                             u"the",     u"und",     u"verkauf", u"vertrieb",  u"web",     u"webmaster"};

bool IsName(QStringView word) {
    return std::none_of(noNames.begin(), noNames.end(), [word](const char16_t* other) { return word == other; });
}

bool DividesRecipients(QChar unit) {
    return unit.isSpace() || QStringView(u",;:<>()\"'[]").contains(unit);
}

bool DividesLocalPart(QChar unit) {
    return !unit.isLetter();
}

/// Calls `use` with each piece between units of which `divides` is true.
template <class Divides, class Use>
void ForEachPiece(QStringView text, Divides divides, Use use) {
    auto begin = text.begin();
    while (begin != text.end()) {
        const auto end = std::find_if(begin, text.end(), divides);
        if (begin != end) {
            use(QStringView(begin, end));
        }
        begin = end == text.end() ? end : end + 1;
    }
}

} // namespace

void AppendLetters(QStringView text, QString& to) {
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if ((code >= u'a' && code <= u'z') || (code >= u'0' && code <= u'9')) {
            to += unit;
        } else if (code >= u'A' && code <= u'Z') {
            to += QChar(static_cast<char16_t>(code | 0x20));
        } else if (code >= 0x80 && (unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate())) {
            to += unit.toLower();
        }
    }
}

void RecipientNames::Read(QStringView recipients) {
    const QStringView read = recipients.first(std::min(recipients.size(), longestText));
    if (read == text_) {
        return;
    }
    text_.resize(0);
    text_.append(read);
    words_.resize(0);
    places_.clear();
    ForEachPiece(read, DividesRecipients, [this](QStringView piece) {
        constexpr qsizetype shortestOfDisplayName = 3; // shorter ones are initials, titles and particles
        const qsizetype at = piece.lastIndexOf(u'@');
        at < 0 ? AddWord(piece, shortestOfDisplayName) : AddAddress(piece.first(at));
    });
}

void RecipientNames::AddAddress(QStringView localPart) {
    constexpr qsizetype shortest = 2;
    constexpr qsizetype shortestPiece = 3;
    const size_t before = places_.size();
    AddWord(localPart, shortest);
    if (places_.size() > before) {
        ForEachPiece(localPart, DividesLocalPart, [this](QStringView piece) { AddWord(piece, shortestPiece); });
    }
}

void RecipientNames::AddWord(QStringView word, qsizetype shortest) {
    const qsizetype begin = words_.size();
    AppendLetters(word, words_);
    const qsizetype length = words_.size() - begin;
    if (length < shortest || places_.size() == mostWords || !IsName(QStringView(words_).mid(begin))) {
        words_.resize(begin);
        return;
    }
    places_.emplace_back(begin, length);
}

bool RecipientNames::Contains(QStringView word) const {
    return std::any_of(places_.begin(), places_.end(), [this, word](const auto& place) {
        return place.second == word.size() && QStringView(words_).mid(place.first, place.second) == word;
    });
}

} // namespace quellbox
