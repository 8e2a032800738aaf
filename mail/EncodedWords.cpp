#include "mail/EncodedWords.h"

#include "mail/Charset.h"

#include <QList>

#include <algorithm>
#include <optional>

namespace quellbox {

namespace {

constexpr qsizetype kMaximumCharsetLength = 60;

struct EncodedWord {
    QByteArrayView charset; ///< without the language tag of RFC 2231
    char encoding;          ///< 'b' or 'q'
    QByteArrayView text;
    qsizetype length; ///< bytes of the whole word
};

/// Reads the word at the start of `bytes`, which begins with "=?". `end` finds the terminating "?=".
template <typename FindEnd>
std::optional<EncodedWord> ReadWord(QByteArrayView bytes, FindEnd end) {
    const qsizetype charsetEnd = bytes.sliced(2).first(std::min(bytes.size() - 2, kMaximumCharsetLength)).indexOf('?');
    if (charsetEnd < 1 || bytes.size() < charsetEnd + 7)
        return std::nullopt;
    QByteArrayView charset = bytes.sliced(2, charsetEnd);
    if (charset.contains(' '))
        return std::nullopt;
    const char encoding = static_cast<char>(bytes[charsetEnd + 3] | 0x20);
    if ((encoding != 'b' && encoding != 'q') || bytes[charsetEnd + 4] != '?')
        return std::nullopt;
    const qsizetype textStart = charsetEnd + 5;
    const qsizetype textEnd = end(textStart);
    if (textEnd < 0)
        return std::nullopt;
    const qsizetype language = charset.indexOf('*');
    if (language >= 0)
        charset.truncate(language);
    return EncodedWord{charset, encoding, bytes.sliced(textStart, textEnd - textStart), textEnd + 2};
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

QByteArray DecodeQ(QByteArrayView text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int high = text[i] == '=' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low >= 0) {
            bytes.append(static_cast<char>(high * 16 + low));
            i += 2;
        } else {
            bytes.append(text[i] == '_' ? ' ' : text[i]);
        }
    }
    return bytes;
}

QByteArray DecodeB(const QByteArray& text) {
    // Padding inside the text ends a group; what follows begins anew. An unfinished last group yields what it can.
    QByteArray bytes;
    for (const QByteArray& segment : text.split('='))
        bytes.append(QByteArray::fromBase64(segment));
    return bytes;
}

/// Adjacent encoded words of one character set.
class Run {
public:
    void Add(const EncodedWord& word, QString& out) {
        if (charset_.compare(word.charset, Qt::CaseInsensitive) != 0)
            Flush(out);
        // A group of four base64 characters may be split between words; padding says that it was not.
        const bool continues = word.encoding == 'b' && !base64_.isEmpty() && !base64_.endsWith('=');
        if (!continues)
            FinishBase64();
        charset_ = word.charset.toByteArray();
        if (word.encoding == 'b')
            base64_.append(word.text.data(), word.text.size());
        else
            bytes_.append(DecodeQ(word.text));
        open_ = true;
    }

    void Flush(QString& out) {
        if (!open_)
            return;
        FinishBase64();
        out += DecodeCharset(bytes_, charset_);
        bytes_.clear();
        open_ = false;
    }

    bool IsOpen() const { return open_; }

private:
    void FinishBase64() {
        if (!base64_.isEmpty())
            bytes_.append(DecodeB(base64_));
        base64_.clear();
    }

    QByteArray charset_;
    QByteArray base64_; ///< not yet decoded
    QByteArray bytes_;
    bool open_ = false;
};

} // namespace

QString DecodeEncodedWords(QByteArrayView value) {
    QString out;
    Run run;
    qsizetype plainStart = 0;
    qsizetype at = 0;
    bool mayEnd = true; // false once no "?=" is left, so that a value full of "=?" stays linear
    while (mayEnd && (at = value.indexOf("=?", at)) >= 0) {
        const auto word = ReadWord(value.sliced(at), [&](qsizetype from) {
            const qsizetype end = value.indexOf("?=", at + from);
            mayEnd = end >= 0;
            return mayEnd ? end - at : -1;
        });
        if (!word) {
            ++at;
            continue;
        }
        const QByteArrayView plain = value.sliced(plainStart, at - plainStart);
        if (!(run.IsOpen() && plain.trimmed().isEmpty())) {
            run.Flush(out);
            out += DecodeUndeclared(plain);
        }
        run.Add(*word, out);
        at += word->length;
        plainStart = at;
    }
    run.Flush(out);
    return out + DecodeUndeclared(value.sliced(plainStart));
}

} // namespace quellbox
