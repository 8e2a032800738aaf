#include "mail/PartContent.h"

#include "mail/Charset.h"

#include <algorithm>

namespace quellbox {

namespace {

/// The text with CRLF line ends. What stands between them is appended as a whole: a character at a time takes many
/// times as long.
QString WithCrlf(const QString& text) {
    const auto isEnd = [](QChar unit) { return unit == u'\r' || unit == u'\n'; };
    QString out;
    out.reserve(text.size() + text.count(u'\n'));
    const auto end = text.cend();
    for (auto line = text.cbegin(); line != end;) {
        auto lineEnd = std::find_if(line, end, isEnd);
        out += QStringView(line, lineEnd);
        if (lineEnd != end) {
            out += QLatin1String("\r\n");
            lineEnd += *lineEnd == u'\r' && lineEnd + 1 != end && lineEnd[1] == u'\n' ? 2 : 1;
        }
        line = lineEnd;
    }
    return out;
}

} // namespace

QString DecodeText(QByteArrayView bytes, QByteArrayView charset, const CharsetEvidence& evidence) {
    auto declared = DecodeNamed(bytes, charset);
    QString text = declared ? *std::move(declared) : evidence.DecodeText(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return text;
}

QString DecodeTextPart(QByteArrayView bytes, QByteArrayView charset, const CharsetEvidence& evidence) {
    return WithCrlf(DecodeText(bytes, charset, evidence));
}

} // namespace quellbox
