#include "delivery/OutgoingMessage.h"
#include "delivery/SmtpReply.h"
#include "delivery/SmtpText.h"
#include "fuzz/FuzzTarget.h"

#include <algorithm>
#include <vector>

namespace quellbox {
namespace {

/// What a server that follows the RFC to the letter makes of the text: without the dots that were added (RFC 5321,
/// section 4.5.2). Requires that no line ends the message early.
QByteArray AsReceived(const QByteArray& text) {
    QByteArray received;
    Require(text.endsWith("\r\n"), "the last line is whole");
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = text.indexOf("\r\n", at);
        const QByteArray line = text.sliced(at, end - at);
        Require(!line.contains('\r') && !line.contains('\n'), "every line ends with CRLF");
        Require(line != ".", "no line ends the message");
        received += line.startsWith('.') ? line.sliced(1) : line;
        received += "\r\n";
        at = end + 2;
    }
    return received;
}

void TryText(const QByteArray& message) {
    const QByteArray text = SmtpText(message);
    const QByteArray received = AsReceived(text);
    Require(received.size() == SmtpTextSize(text), "the size is that of what is received");
    Require(AsReceived(SmtpText(received)) == received, "what was received is sent as it is");
}

bool IsMadeByRemoving(const QByteArray& whole, const QByteArray& rest) {
    auto next = whole.begin();
    for (const char byte : rest) {
        next = std::find(next, whole.end(), byte);
        if (next == whole.end()) {
            return false;
        }
        ++next;
    }
    return true;
}

void TryProfile(const QByteArray& message, const ServerProfile& profile) {
    const QByteArray outgoing = WithoutServerFields(message, profile);
    Require(IsMadeByRemoving(message, outgoing), "fields are taken off, and nothing is added or changed");
    for (const QByteArray& recipient : EnvelopeOf(message, profile).recipients) {
        Require(!recipient.isEmpty(), "a recipient is an address");
    }
}

std::vector<QByteArray> RepliesIn(const QByteArray& bytes, qsizetype piece) {
    SmtpReplyReader reader;
    std::vector<QByteArray> words;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        const bool isUnderstood = reader.Feed(QByteArrayView(bytes).sliced(at, std::min(piece, bytes.size() - at)));
        Require(isUnderstood != reader.IsJunk(), "junk is told");
        while (const std::optional<SmtpReply> reply = reader.Take()) {
            Require(reply->code >= 200 && reply->code <= 599 && !reply->lines.isEmpty(),
                    "a reply has a code and lines");
            words.push_back(QByteArray::number(reply->code) + reply->lines.join('\n'));
        }
        if (!isUnderstood) {
            break;
        }
    }
    return words;
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    TryText(bytes);
    for (const ServerProfile& profile : ServerProfiles()) {
        TryProfile(bytes, profile);
    }
    Require(RepliesIn(bytes, std::max<qsizetype>(1, bytes.size())) == RepliesIn(bytes, 7),
            "replies are the same however they come in");
    return 0;
}
