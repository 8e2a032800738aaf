#include "contents/RawText.h"

#include "mail/Charset.h"

namespace quellbox {

QString RawText(const QByteArray& bytes) {
    QString text = DecodeUndeclared(bytes);
    constexpr char16_t symbolForNul = 0x2400;
    if (text.contains(QChar(QChar::Null))) {
        text.replace(QChar(QChar::Null), QChar(symbolForNul));
    }
    return text;
}

qsizetype NextChunk(const QString& text, qsizetype position, qsizetype wanted) {
    const qsizetype left = text.size() - position;
    if (left <= wanted) {
        return left;
    }
    const QStringView piece = QStringView(text).mid(position, wanted);
    const qsizetype lineEnd = piece.lastIndexOf(u'\n');
    if (lineEnd >= 0) {
        return lineEnd + 1;
    }
    const QChar before = piece.back();
    const bool splits = before == u'\r' || before.isHighSurrogate();
    return splits ? wanted + 1 : wanted;
}

} // namespace quellbox
