#include "mail/CharsetEvidence.h"

#include "mail/Charset.h"
#include "mail/CharsetGuess.h"
#include "mail/DeclaredCharsets.h"

#include <algorithm>

namespace quellbox {

namespace {

// Real header blocks have fewer lines beyond ASCII, and a hostile one is not to cost more.
constexpr qsizetype kGuessedLines = 8;

/// Text in 7 bits that says by escape sequences what it is.
std::optional<QString> DecodeEscaped(QByteArrayView bytes) {
    const bool isSevenBit =
        std::none_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    const QByteArray charset = isSevenBit ? Iso2022Charset(bytes) : QByteArray();
    return charset.isEmpty() ? std::nullopt : DecodeNamed(bytes, charset);
}

/// UTF-8 which a program that counts bytes has cut, or into which single bytes of another kind have got.
std::optional<QString> DecodeDamagedUtf8(QByteArrayView bytes) {
    const QString text = QString::fromUtf8(bytes);
    const auto beyondAscii = std::count_if(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x80; });
    const auto damaged = text.count(QChar(QChar::ReplacementCharacter));
    return damaged * 3 <= beyondAscii ? std::optional(text) : std::nullopt;
}

std::optional<QString> DecodeAs(QByteArrayView bytes, const QByteArray& charset) {
    if (charset == "utf-8" || charset == "utf8")
        return DecodeDamagedUtf8(bytes);
    if (IsNamedWithoutThought(charset))
        return IsPlausiblyWestern(bytes) ? DecodeNamed(bytes, charset) : std::nullopt;
    if (charset == "iso-8859-15" && !IsPlausible(bytes, charset))
        return std::nullopt;
    return DecodeStrictly(bytes, charset);
}

} // namespace

bool SpeaksForItself(QByteArrayView bytes) {
    return QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8() && !bytes.contains('\x1B');
}

void CharsetEvidence::Declare(QByteArrayView charset) {
    ofParts_.append(charset.trimmed().toByteArray().toLower());
    declared_.reset();
}

const QByteArrayList& CharsetEvidence::Declared() const {
    if (!declared_) {
        declared_ = CharsetsOfHeaderBlock(block_);
        for (const QByteArray& charset : ofParts_)
            AddCharset(charset, *declared_);
    }
    return *declared_;
}

std::optional<QString> CharsetEvidence::DecodeAsDeclared(QByteArrayView bytes) const {
    if (auto text = DecodeEscaped(bytes))
        return text;
    if (QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8())
        return QString::fromUtf8(bytes);
    for (const QByteArray& charset : Declared()) {
        if (auto text = DecodeAs(bytes, charset))
            return text;
    }
    return std::nullopt;
}

const QByteArrayList& CharsetEvidence::GuessesOfBlock() const {
    if (!guesses_) {
        const QByteArray joined = LinesBeyondAscii(block_);
        guesses_ = QByteArrayList();
        AddCharset(GuessCharset(joined), *guesses_);
        const QByteArrayList lines = joined.split('\n');
        for (const QByteArray& line : lines.first(std::min(lines.size(), kGuessedLines)))
            AddCharset(GuessCharset(line), *guesses_);
    }
    return *guesses_;
}

QString CharsetEvidence::DecodeValue(QByteArrayView bytes) const {
    if (SpeaksForItself(bytes))
        return QString::fromUtf8(bytes);
    if (auto text = DecodeAsDeclared(bytes))
        return *std::move(text);
    for (const QByteArray& guess : GuessesOfBlock()) {
        if (IsPlausible(bytes, guess))
            return DecodeCharset(bytes, guess);
    }
    return DecodeUndeclared(bytes);
}

QString CharsetEvidence::DecodeText(QByteArrayView bytes) const {
    if (SpeaksForItself(bytes))
        return QString::fromUtf8(bytes);
    if (auto text = DecodeAsDeclared(bytes))
        return *std::move(text);
    const QByteArray guess = GuessCharset(LinesBeyondAscii(bytes));
    return guess.isEmpty() ? DecodeUndeclared(bytes) : DecodeCharset(bytes, guess);
}

} // namespace quellbox
