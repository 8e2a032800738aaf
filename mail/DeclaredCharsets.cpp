#include "mail/DeclaredCharsets.h"

#include "mail/Charset.h"
#include "mail/EncodedWords.h"
#include "mail/HeaderScanner.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr qsizetype kMaximumCharsets = 8;
constexpr qsizetype kLongestName = 40;

bool EndsName(char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == '"' || c == ';' || c == '?' || c == '*' || c == '\'' ||
           c == ',';
}

/// The name at the beginning of the text; empty where it does not end within the length of one.
QByteArray NameAt(QByteArrayView text) {
    text = text.first(std::min(text.size(), kLongestName + 1));
    const auto end = std::find_if(text.begin(), text.end(), EndsName);
    return end - text.begin() > kLongestName ? QByteArray() : QByteArray(text.begin(), end - text.begin()).toLower();
}

/// The parameter "charset" in the value of a Content-Type field (RFC 2045, section 5.1).
QByteArray CharsetParameter(QByteArrayView value) {
    const QByteArray lower = value.toByteArray().toLower();
    qsizetype at = lower.indexOf("charset");
    if (at < 0)
        return {};
    at += qsizetype(sizeof "charset") - 1;
    const auto skip = [&](auto belongs) {
        while (at < lower.size() && belongs(lower[at]))
            ++at;
    };
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    skip(isSpace);
    if (at >= lower.size() || lower[at] != '=')
        return {};
    ++at;
    skip([&](char c) { return isSpace(c) || c == '"'; });
    return NameAt(QByteArrayView(lower).sliced(at));
}

QByteArrayView ContentType(QByteArrayView block) {
    static const WantedFields wanted({"Content-Type"});
    HeaderScanner scanner(wanted);
    scanner.Scan(block, true);
    return scanner.Value(0, block);
}

} // namespace

void AddCharset(const QByteArray& charset, QByteArrayList& charsets) {
    static const QByteArrayList noHelp = {"us-ascii", "ascii",    "utf-7",    "utf-16", "utf-16le", "utf-16be",
                                          "utf-32",   "utf-32le", "utf-32be", "ucs-2",  "ucs-4"};
    if (!IsCharsetName(charset) || noHelp.contains(charset) || charsets.size() >= kMaximumCharsets ||
        charsets.contains(charset))
        return;
    charsets.append(charset);
}

bool IsNamedWithoutThought(const QByteArray& charset) {
    static const QByteArrayList western = {"iso-8859-1", "latin1", "windows-1252", "cp1252"};
    return western.contains(charset);
}

QByteArrayList CharsetsOfHeaderBlock(QByteArrayView block) {
    QByteArrayList charsets;
    AddCharset(CharsetParameter(ContentType(block)), charsets);
    for (qsizetype at = FindEncodedWord(block); at >= 0 && charsets.size() < kMaximumCharsets;
         at = FindEncodedWord(block, at + 2))
        AddCharset(NameAt(block.sliced(at + 2)), charsets);
    return charsets;
}

} // namespace quellbox
