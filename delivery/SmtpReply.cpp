#include "delivery/SmtpReply.h"

#include "mail/DisplayText.h"

#include <QStringList>

#include <utility>

namespace quellbox {

namespace {

// RFC 5321 allows 512 bytes, which some servers exceed with what they explain.
constexpr qsizetype longestReplyLine = 4096;
constexpr qsizetype mostReplyLines = 256;
// Of what was not asked for yet, or is not taken yet while many recipients are told at once.
constexpr qsizetype mostWaitingBytes = 4 * 1024 * 1024;

bool IsBetween(char byte, char first, char last) {
    return byte >= first && byte <= last;
}

/// The code that a line begins with, 0 when it begins with none.
int CodeOf(QByteArrayView line) {
    if (line.size() < 3 || !IsBetween(line[0], '2', '5') || !IsBetween(line[1], '0', '9') ||
        !IsBetween(line[2], '0', '9')) {
        return 0;
    }
    return (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
}

} // namespace

QString SmtpReply::Words() const {
    QStringList words(QString::number(code));
    for (const QByteArray& line : lines) {
        const QString text = CleanseForDisplay(QString::fromUtf8(line));
        if (!text.isEmpty()) {
            words += text;
        }
    }
    return ShownText(words.join(QLatin1Char(' ')));
}

bool SmtpReplyReader::Feed(QByteArrayView bytes) {
    while (!isJunk_ && !bytes.isEmpty()) {
        const qsizetype end = bytes.indexOf('\n');
        const QByteArrayView part = end < 0 ? bytes : bytes.first(end);
        waiting_ += part.size();
        isJunk_ = line_.size() + part.size() > longestReplyLine || waiting_ > mostWaitingBytes;
        if (isJunk_) {
            break;
        }
        line_.append(part);
        if (end < 0) {
            break;
        }
        isJunk_ = !TakeLine(line_);
        line_.clear();
        bytes = bytes.sliced(end + 1);
    }
    return !isJunk_;
}

bool SmtpReplyReader::TakeLine(QByteArrayView line) {
    if (line.endsWith('\r')) {
        line.chop(1);
    }
    const int code = CodeOf(line);
    const bool goesOn = line.size() > 3 && line[3] == '-';
    const bool fits = code != 0 && (line.size() == 3 || goesOn || line[3] == ' ') &&
                      (current_.lines.isEmpty() || current_.code == code) && current_.lines.size() < mostReplyLines;
    if (!fits) {
        return false;
    }
    current_.code = code;
    current_.lines += line.size() > 4 ? line.sliced(4).toByteArray() : QByteArray();
    if (!goesOn) {
        replies_.push_back(std::exchange(current_, {}));
    }
    return true;
}

std::optional<SmtpReply> SmtpReplyReader::Take() {
    if (replies_.empty()) {
        return std::nullopt;
    }
    SmtpReply reply = std::move(replies_.front());
    replies_.pop_front();
    if (IsEmpty()) {
        waiting_ = 0;
    }
    return reply;
}

} // namespace quellbox
