#include "messages/RecipientNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quellbox {

namespace {

// What a mailbox is called after its purpose, or a display name holds besides a name. Subjects use the same words.
constexpr auto noNames = std::to_array<std::u16string_view>(
    {u"abuse",     u"account", u"admin",      u"and",     u"billing", u"buero",    u"contact", u"dear",
     u"der",       u"die",     u"dr",         u"drs",     u"einkauf", u"email",    u"for",     u"fuer",
     u"hello",     u"help",    u"info",       u"invoice", u"jobs",    u"kontakt",  u"list",    u"mail",
     u"marketing", u"mr",      u"mrs",        u"ms",      u"news",    u"noreply",  u"office",  u"order",
     u"orders",    u"post",    u"postmaster", u"prof",    u"sales",   u"service",  u"shop",    u"support",
     u"team",      u"test",    u"the",        u"und",     u"verkauf", u"vertrieb", u"web",     u"webmaster"});

bool IsName(QStringView word) {
    const std::u16string_view letters(word.utf16(), static_cast<size_t>(word.size()));
    return std::find(noNames.begin(), noNames.end(), letters) == noNames.end();
}

bool DividesRecipients(QChar unit) {
    switch (unit.unicode()) {
    case u',':
    case u';':
    case u':':
    case u'<':
    case u'>':
    case u'(':
    case u')':
    case u'[':
    case u']':
    case u'"':
    case u'\'':
        return true;
    default:
        return unit.isSpace();
    }
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

// To append one character after the other to a QString takes several times as long.
char16_t* WriteLetters(QStringView text, char16_t* to) {
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if ((code >= u'a' && code <= u'z') || (code >= u'0' && code <= u'9')) {
            *to++ = code;
        } else if (code >= u'A' && code <= u'Z') {
            *to++ = static_cast<char16_t>(code | 0x20);
        } else if (code >= 0x80 && (unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate())) {
            *to++ = unit.toLower().unicode();
        }
    }
    return to;
}

void RecipientNames::Read(QStringView recipients) {
    const QStringView read = recipients.first(std::min(recipients.size(), longestText));
    if (read == text_) {
        return;
    }
    text_.resize(0);
    text_.append(read);
    used_ = 0;
    count_ = 0;
    ForEachPiece(read, DividesRecipients, [this](QStringView piece) {
        constexpr qsizetype shortestOfDisplayName = 3; // shorter ones are initials, titles and particles
        const qsizetype at = piece.lastIndexOf(u'@');
        at < 0 ? AddWord(piece, shortestOfDisplayName) : AddAddress(piece.first(at));
    });
}

void RecipientNames::AddAddress(QStringView localPart) {
    constexpr qsizetype shortest = 2;
    constexpr qsizetype shortestPiece = 3;
    AddWord(localPart, shortest);
    ForEachPiece(localPart, DividesLocalPart, [this, localPart](QStringView piece) {
        if (piece.size() < localPart.size()) {
            AddWord(piece, shortestPiece);
        }
    });
}

void RecipientNames::AddWord(QStringView word, qsizetype shortest) {
    char16_t* const begin = letters_.data() + used_;
    const qsizetype length = WriteLetters(word, begin) - begin;
    if (length < shortest || count_ == places_.size()) {
        return;
    }
    places_[count_++] = {used_, length};
    used_ += length;
}

// Hardly a word of a subject is one of the recipient's, and only then it matters whether that is a name.
bool RecipientNames::Contains(QStringView word) const {
    const auto end = places_.begin() + static_cast<std::ptrdiff_t>(count_);
    const bool isThere = std::any_of(places_.begin(), end, [this, word](const Place& place) {
        return place.length == word.size() && QStringView(letters_.data() + place.begin, place.length) == word;
    });
    return isThere && IsName(word);
}

} // namespace quellbox
