#pragma once

#include <QByteArrayList>
#include <QByteArrayView>
#include <QString>

#include <deque>
#include <optional>

namespace quellbox {

/// An answer of an SMTP server (RFC 5321, section 4.2).
struct SmtpReply {
    int code = 0;         ///< 200 to 599
    QByteArrayList lines; ///< what stands behind the code in each line

    /// The server has done what it was asked for.
    bool IsDone() const { return code / 100 == 2; }
    /// The server goes on when it gets more.
    bool WantsMore() const { return code / 100 == 3; }
    /// The server does not do it, now or ever.
    bool IsRefusal() const { return code / 100 == 4 || code / 100 == 5; }
    /// The server ends the connection, which it may do at any time.
    bool EndsConnection() const { return code == 421; }

    /// Code and lines as one line for the user, without what could upset its display.
    QString Words() const;
};

/// Finds the answers in the bytes that a server sends. It keeps no more of them than an honest server sends.
class SmtpReplyReader {
public:
    /// Takes the next bytes. False where they are no answer, or one that is too long: nothing is understood from there
    /// on.
    bool Feed(QByteArrayView bytes);

    /// The next answer that has come in as a whole.
    std::optional<SmtpReply> Take();

    /// Whether something has come in that is not understood; there may be answers from before.
    bool IsJunk() const { return isJunk_; }

    /// Whether nothing has come in but what was taken.
    bool IsEmpty() const { return replies_.empty() && current_.lines.isEmpty() && line_.isEmpty(); }

private:
    bool TakeLine(QByteArrayView line);

    std::deque<SmtpReply> replies_;
    SmtpReply current_;
    QByteArray line_;
    qsizetype waiting_ = 0;
    bool isJunk_ = false;
};

} // namespace quellbox
