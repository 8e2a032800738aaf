#include "platform/PathBytes.h"

#include <QStringDecoder>
#include <QUtf8StringView>

namespace quellbox {

namespace {

constexpr char16_t mark = u'\xFFFD';
constexpr char markUtf8[] = "\xEF\xBF\xBD";

/// The length of the well-formed UTF-8 sequence at the start of `rest`, or 0.
qsizetype SequenceLength(QByteArrayView rest) {
    const auto lead = static_cast<unsigned char>(rest.front());
    const qsizetype length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
    if (length == 0 || length > rest.size() || !QUtf8StringView(rest.data(), length).isValidUtf8()) {
        return 0;
    }
    return length;
}

/// A byte order mark in front is a part of the name.
QString Decoded(QByteArrayView utf8) {
    if (!utf8.startsWith("\xEF\xBB\xBF")) {
        return QString::fromUtf8(utf8);
    }
    return QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom).decode(utf8);
}

void AppendEscaped(QString& text, char byte) {
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text += QChar(mark);
    text += QChar(digits[value >> 4U]);
    text += QChar(digits[value & 15U]);
}

/// The value of an upper-case hexadecimal digit, or -1.
int DigitValue(QChar digit) {
    const char16_t unit = digit.unicode();
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    return unit >= u'A' && unit <= u'F' ? unit - u'A' + 10 : -1;
}

} // namespace

QString PathText(const QByteArray& bytes) {
    if (QUtf8StringView(bytes).isValidUtf8() && !bytes.contains(markUtf8)) {
        return Decoded(bytes);
    }
    QString text;
    QByteArrayView rest(bytes);
    while (!rest.isEmpty()) {
        const qsizetype length = SequenceLength(rest);
        if (length == 0 || rest.first(length) == QByteArrayView(markUtf8)) {
            AppendEscaped(text, rest.front());
            rest = rest.sliced(1);
        } else {
            text += Decoded(rest.first(length));
            rest = rest.sliced(length);
        }
    }
    return text;
}

QByteArray PathBytes(const QString& path) {
    qsizetype next = path.indexOf(QChar(mark));
    if (next < 0) {
        return path.toUtf8();
    }
    QByteArray bytes;
    qsizetype done = 0;
    while (next >= 0) {
        const int high = next + 2 < path.size() ? DigitValue(path.at(next + 1)) : -1;
        const int low = high >= 0 ? DigitValue(path.at(next + 2)) : -1;
        if (low < 0) {
            next = path.indexOf(QChar(mark), next + 1);
            continue;
        }
        bytes += QStringView(path).mid(done, next - done).toUtf8();
        bytes += static_cast<char>(high * 16 + low);
        done = next + 3;
        next = path.indexOf(QChar(mark), done);
    }
    return bytes + QStringView(path).mid(done).toUtf8();
}

} // namespace quellbox
