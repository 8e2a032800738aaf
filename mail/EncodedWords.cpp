#include "mail/EncodedWords.h"

#include "mail/Charset.h"

#include <QList>

#include <algorithm>
#include <cstring>
#include <optional>

namespace quellbox {

namespace {

constexpr qsizetype kMaximumCharsetLength = 60;

/// The index of a pair of characters; -1 when there is none. Shorter texts than the general search is made for.
qsizetype FindPair(QByteArrayView text, char first, char second, qsizetype from) {
    const char* const end = text.data() + text.size();
    const char* at = text.data() + from;
    while (end - at >= 2) {
        const void* found = std::memchr(at, first, static_cast<size_t>(end - at - 1));
        if (found == nullptr)
            return -1;
        at = static_cast<const char*>(found);
        if (at[1] == second)
            return at - text.data();
        ++at;
    }
    return -1;
}

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

/// Makes room for that many more bytes at the end, and returns where they go.
char* Grow(QByteArray& bytes, qsizetype count) {
    const qsizetype before = bytes.size();
    bytes.resize(before + count);
    return bytes.data() + before;
}

void AppendDecodedQ(QByteArrayView text, QByteArray& bytes) {
    char* out = Grow(bytes, text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int high = text[i] == '=' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low >= 0) {
            *out++ = static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            *out++ = text[i] == '_' ? ' ' : text[i];
        }
    }
    bytes.truncate(out - bytes.constData());
}

int Base64Value(char c) {
    if (c >= 'A' && c <= 'Z')
        return c - 'A';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 26;
    if (c >= '0' && c <= '9')
        return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

/// Padding inside the text ends a group; what follows begins anew. An unfinished last group yields what it can, and
/// what does not belong into base64 is skipped.
void AppendDecodedB(QByteArrayView text, QByteArray& bytes) {
    char* out = Grow(bytes, text.size());
    unsigned group = 0;
    int bits = 0;
    for (const char c : text) {
        const int value = Base64Value(c);
        if (c == '=')
            bits = 0;
        if (value < 0)
            continue;
        group = (group << 6U) | static_cast<unsigned>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            *out++ = static_cast<char>(group >> static_cast<unsigned>(bits));
        }
    }
    bytes.truncate(out - bytes.constData());
}

void AppendUndeclared(QByteArrayView bytes, const CharsetEvidence& evidence, QString& out) {
    if (!bytes.isEmpty())
        out += evidence.DecodeValue(bytes);
}

/// Adjacent encoded words of one character set.
class Run {
public:
    explicit Run(const CharsetEvidence& evidence) : evidence_(evidence) {}

    void Add(const EncodedWord& word, QString& out) {
        if (charset_.compare(word.charset, Qt::CaseInsensitive) != 0)
            Flush(out);
        // A group of four base64 characters may be split between words; padding says that it was not.
        const bool continues = word.encoding == 'b' && !base64_.isEmpty() && !base64_.endsWith('=');
        if (!continues)
            FinishBase64();
        charset_ = word.charset;
        if (word.encoding == 'b')
            base64_.append(word.text.data(), word.text.size());
        else
            AppendDecodedQ(word.text, bytes_);
        open_ = true;
    }

    void Flush(QString& out) {
        if (!open_)
            return;
        FinishBase64();
        const auto text = DecodeNamed(bytes_, charset_);
        out += text ? *text : evidence_.DecodeValue(bytes_);
        bytes_.truncate(0);
        open_ = false;
    }

    bool IsOpen() const { return open_; }

private:
    void FinishBase64() {
        AppendDecodedB(base64_, bytes_);
        base64_.truncate(0);
    }

    const CharsetEvidence& evidence_;
    QByteArrayView charset_;
    QByteArray base64_; ///< not yet decoded
    QByteArray bytes_;
    bool open_ = false;
};

} // namespace

qsizetype FindEncodedWord(QByteArrayView value, qsizetype from) {
    return FindPair(value, '=', '?', from);
}

QString DecodeEncodedWords(QByteArrayView value, const CharsetEvidence& evidence) {
    QString out;
    Run run(evidence);
    qsizetype plainStart = 0;
    qsizetype at = 0;
    bool mayEnd = true; // false once no "?=" is left, so that a value full of "=?" stays linear
    while (mayEnd && (at = FindEncodedWord(value, at)) >= 0) {
        const auto word = ReadWord(value.sliced(at), [&](qsizetype from) {
            const qsizetype end = FindPair(value, '?', '=', at + from);
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
            AppendUndeclared(plain, evidence, out);
        }
        run.Add(*word, out);
        at += word->length;
        plainStart = at;
    }
    run.Flush(out);
    AppendUndeclared(value.sliced(plainStart), evidence, out);
    return out;
}

} // namespace quellbox
