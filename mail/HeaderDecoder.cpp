#include "mail/HeaderDecoder.h"

#include "mail/DisplayText.h"
#include "mail/EncodedWords.h"

#include <algorithm>

namespace quellbox {

namespace {

bool IsPlain(char c) {
    return c >= 0x20 && c < 0x7F;
}

/// Removes the line ends of folds. Control bytes go already here, because GMime's texts end at a NUL and both ways of
/// reading a header must see the same; ESC stays, for ISO-2022 uses it.
QByteArray Unfold(QByteArrayView raw) {
    QByteArray value;
    value.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\t' || (c == '\r' && i + 1 < raw.size() && raw[i + 1] != '\n'))
            value.append(' ');
        else if (byte >= 0x20 || c == '\x1B')
            value.append(c);
    }
    return value.trimmed();
}

} // namespace

QString DecodeHeaderValue(QByteArrayView raw) {
    raw = raw.trimmed();
    if (std::all_of(raw.begin(), raw.end(), IsPlain) && !raw.contains("=?"))
        return QString::fromLatin1(raw);
    return CleanseForDisplay(DecodeEncodedWords(Unfold(raw)));
}

} // namespace quellbox
