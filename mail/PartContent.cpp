#include "mail/PartContent.h"

#include "mail/Charset.h"

namespace quellbox {

namespace {

QString WithCrlf(const QString& text) {
    QString out;
    out.reserve(text.size() + text.count(u'\n'));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit == u'\r' || unit == u'\n') {
            out += u'\r';
            out += u'\n';
            if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
        } else {
            out += unit;
        }
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
