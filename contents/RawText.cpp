#include "contents/RawText.h"

#include "mail/Charset.h"

#include <algorithm>

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
    // Breaking a piece without blanks into rows takes a time that grows with the square of its length.
    constexpr qsizetype longestPiece = 2048;
    const qsizetype size = std::min(wanted, longestPiece);
    const QChar before = piece[size - 1];
    const bool splits = before == u'\r' || before.isHighSurrogate();
    return splits ? size + 1 : size;
}

} // namespace quellbox
