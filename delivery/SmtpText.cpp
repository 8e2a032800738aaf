#include "delivery/SmtpText.h"

#include <QByteArrayView>

#include <algorithm>

namespace quellbox {

namespace {

/// Calls `take` with each line and the bytes that end it, until that returns false.
template <class Take>
bool ForEachSmtpLine(QByteArrayView rest, Take take) {
    while (!rest.isEmpty()) {
        const auto end =
            std::find_if(rest.begin(), rest.end(), [](char letter) { return letter == '\r' || letter == '\n'; });
        const QByteArrayView line = rest.first(end - rest.begin());
        rest = rest.sliced(line.size());
        const QByteArrayView lineEnd = rest.first(rest.startsWith("\r\n") ? 2 : std::min<qsizetype>(rest.size(), 1));
        rest = rest.sliced(lineEnd.size());
        if (!take(line, lineEnd)) {
            return false;
        }
    }
    return true;
}

enum class Dots { AsTheyAre, Doubled };

/// The message with a CRLF behind each line, and one more dot where a line begins with one, if that is wanted.
QByteArray AsLines(const QByteArray& message, Dots dots) {
    qsizetype lines = 0;
    const auto getsDot = [dots](QByteArrayView line) { return dots == Dots::Doubled && line.startsWith('.'); };
    const bool isFit = ForEachSmtpLine(message, [&](QByteArrayView line, QByteArrayView lineEnd) {
        ++lines;
        return lineEnd.size() == 2 && !getsDot(line);
    });
    if (isFit && lines > 0) {
        return message;
    }
    QByteArray text;
    text.reserve(message.size() + message.size() / 32 + 2);
    ForEachSmtpLine(message, [&](QByteArrayView line, QByteArrayView) {
        if (getsDot(line)) {
            text += '.';
        }
        text.append(line);
        text += "\r\n";
        return true;
    });
    return text.isEmpty() ? QByteArrayLiteral("\r\n") : text;
}

} // namespace

QByteArray SmtpText(const QByteArray& message) {
    return AsLines(message, Dots::Doubled);
}

QByteArray WithCrLf(const QByteArray& message) {
    return AsLines(message, Dots::AsTheyAre);
}

qint64 SmtpTextSize(const QByteArray& text) {
    qint64 size = text.size() - (text.startsWith('.') ? 1 : 0);
    for (qsizetype at = text.indexOf("\n."); at >= 0; at = text.indexOf("\n.", at + 2)) {
        --size;
    }
    return size;
}

} // namespace quellbox
