#include "mail/HeaderDecoder.h"

#include "mail/DisplayText.h"
#include "mail/EncodedWords.h"

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

/// True for a text of printable ASCII only. It looks at all characters, which a processor does many at a time.
bool IsPlain(QByteArrayView text) {
    unsigned char highest = 0;
    for (const char c : text)
        highest = std::max(highest, static_cast<unsigned char>(c - ' '));
    return highest < '\x7F' - ' ';
}

/// Removes the line ends of folds. Control bytes go already here, because GMime's texts end at a NUL and both ways of
/// reading a header must see the same; ESC, SO and SI stay, for ISO 2022 uses them.
QByteArray Unfold(QByteArrayView raw) {
    QByteArray value(raw.size(), Qt::Uninitialized);
    char* out = value.data();
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\t' || (c == '\r' && i + 1 < raw.size() && raw[i + 1] != '\n'))
            *out++ = ' ';
        else if (byte >= 0x20 || c == '\x1B' || c == '\x0E' || c == '\x0F')
            *out++ = c;
    }
    value.truncate(out - value.data());
    return std::move(value).trimmed();
}

} // namespace

QString DecodeHeaderValue(QByteArrayView raw, const CharsetEvidence& evidence) {
    raw = raw.trimmed();
    if (IsPlain(raw) && FindEncodedWord(raw) < 0)
        return QString::fromLatin1(raw);
    return CleanseForDisplay(DecodeEncodedWords(Unfold(raw), evidence));
}

} // namespace quellbox
