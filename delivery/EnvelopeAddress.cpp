#include "delivery/EnvelopeAddress.h"

#include "mail/DisplayText.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

// RFC 5321 allows 256 bytes in section 4.5.3.1.3; addresses that carry another one are sometimes longer.
constexpr qsizetype longestAddress = 500;

/// The length of the quoted local part at the beginning: 0 without one, -1 when it does not end.
qsizetype QuotedLength(const QByteArray& address) {
    if (!address.startsWith('"')) {
        return 0;
    }
    for (qsizetype at = 1; at < address.size(); ++at) {
        if (address[at] == '"') {
            return at + 1;
        }
        if (address[at] == '\\') {
            ++at;
        }
    }
    return -1;
}

bool IsPlainText(const QString& text) {
    return std::none_of(text.cbegin(), text.cend(), [](QChar unit) {
        return unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
               unit == QChar::ParagraphSeparator || unit == QLatin1Char('<') || unit == QLatin1Char('>');
    });
}

} // namespace

bool IsSafeAddress(const QByteArray& address) {
    const QString text = QString::fromUtf8(address);
    if (address.isEmpty() || address.size() > longestAddress || text.toUtf8() != address || !IsPlainText(text)) {
        return false;
    }
    const qsizetype quoted = QuotedLength(address);
    if (quoted < 0) {
        return false;
    }
    const QByteArray rest = address.mid(quoted);
    return (quoted == 0 || rest.isEmpty() || rest.startsWith('@')) && !rest.contains(' ') && !rest.contains('"');
}

QString ProblemOfEnvelope(const Envelope& envelope) {
    if (envelope.recipients.isEmpty()) {
        return QCoreApplication::translate("quellbox", "The message has no recipient.");
    }
    QByteArrayList addresses = envelope.recipients;
    if (!envelope.sender.isEmpty()) {
        addresses += envelope.sender;
    }
    const auto unsafe = std::find_if_not(addresses.cbegin(), addresses.cend(), IsSafeAddress);
    if (unsafe == addresses.cend()) {
        return {};
    }
    return QCoreApplication::translate("quellbox", "This is no address that can be sent to a server: %1")
        .arg(ShownText(CleanseForDisplay(QString::fromUtf8(*unsafe))));
}

} // namespace quellbox
