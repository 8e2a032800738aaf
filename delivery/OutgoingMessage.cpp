#include "delivery/OutgoingMessage.h"

#include <algorithm>
#include <vector>

namespace quellbox {

namespace {

/// A field of the header block, its folded lines and its line end included.
struct Field {
    QByteArray name; ///< in lower case
    QByteArrayView value;
    qsizetype start = 0;
    qsizetype end = 0;
    bool isOnTop = false; ///< it stands above the first Received field
};

qsizetype EndOfLine(QByteArrayView bytes, qsizetype from) {
    const qsizetype found = bytes.indexOf('\n', from);
    return found < 0 ? bytes.size() : found + 1;
}

/// Where the field that begins at `from` ends: the lines that begin with a blank belong to it.
qsizetype EndOfField(QByteArrayView bytes, qsizetype from) {
    qsizetype end = EndOfLine(bytes, from);
    while (end < bytes.size() && (bytes[end] == ' ' || bytes[end] == '\t')) {
        end = EndOfLine(bytes, end);
    }
    return end;
}

bool IsBlankLine(QByteArrayView line) {
    return line == "\n" || line == "\r\n" || line.isEmpty();
}

/// The fields of the header block, in their order. Lines that are none are passed over.
std::vector<Field> FieldsOf(QByteArrayView message) {
    std::vector<Field> fields;
    bool isOnTop = true;
    const qsizetype limit = std::min(message.size(), kMaximumHeaderBytes);
    for (qsizetype start = 0; start < limit;) {
        const qsizetype end = EndOfField(message, start);
        const QByteArrayView line = message.sliced(start, end - start);
        if (IsBlankLine(message.sliced(start, EndOfLine(message, start) - start))) {
            break;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon > 0) {
            const QByteArray name = line.first(colon).toByteArray().trimmed().toLower();
            isOnTop = isOnTop && name != "received";
            fields.push_back({name, line.sliced(colon + 1), start, end, isOnTop});
        }
        start = end;
    }
    return fields;
}

/// The addresses of the first of the wanted fields that is there.
QByteArrayList AddressesIn(const std::vector<Field>& fields, const std::vector<AddressField>& wanted) {
    for (const AddressField& address : wanted) {
        QByteArrayList found;
        bool isThere = false;
        for (const Field& field : fields) {
            if (field.isOnTop && field.name == address.name.toLower() && (!isThere || address.repeats)) {
                isThere = true;
                found.append(PathAddresses(field.value));
            }
        }
        if (isThere) {
            return found;
        }
    }
    return {};
}

bool IsAmong(const std::vector<AddressField>& addresses, const QByteArray& name) {
    return std::any_of(addresses.begin(), addresses.end(),
                       [&name](const AddressField& address) { return address.name.toLower() == name; });
}

bool BeginsAsAdded(const ServerProfile& profile, const QByteArray& name) {
    return std::any_of(profile.added.begin(), profile.added.end(),
                       [&name](const QByteArray& beginning) { return name.startsWith(beginning.toLower()); });
}

/// Fields that mail systems add where a message is delivered, and that would be taken for signs of a loop there.
bool IsOfDelivery(const QByteArray& name) {
    return name == "return-path" || name == "delivered-to" || name == "x-original-to" || name == "envelope-to";
}

bool IsOfServer(const ServerProfile& profile, const QByteArray& name) {
    const auto isName = [&name](const QByteArray& other) { return other.toLower() == name; };
    return IsOfDelivery(name) || BeginsAsAdded(profile, name) || IsAmong(profile.senders, name) ||
           IsAmong(profile.recipients, name) || std::any_of(profile.marks.begin(), profile.marks.end(), isName) ||
           std::any_of(profile.reasons.begin(), profile.reasons.end(), isName);
}

} // namespace

Envelope EnvelopeOf(QByteArrayView message, const ServerProfile& profile) {
    const std::vector<Field> fields = FieldsOf(message);
    const QByteArrayList senders = AddressesIn(fields, profile.senders);
    Envelope envelope;
    envelope.sender = senders.isEmpty() ? QByteArray() : senders.first();
    for (const QByteArray& recipient : AddressesIn(fields, profile.recipients)) {
        if (!envelope.recipients.contains(recipient)) {
            envelope.recipients.append(recipient);
        }
    }
    return envelope;
}

QByteArray WithoutServerFields(const QByteArray& message, const ServerProfile& profile) {
    QByteArray outgoing;
    outgoing.reserve(message.size());
    // What separates the messages of a mailbox is no field.
    qsizetype copied = message.startsWith("From ") ? EndOfLine(message, 0) : 0;
    for (const Field& field : FieldsOf(message)) {
        if (field.name == "bcc" || (field.isOnTop && IsOfServer(profile, field.name))) {
            outgoing.append(QByteArrayView(message).sliced(copied, field.start - copied));
            copied = field.end;
        }
    }
    return outgoing.append(QByteArrayView(message).sliced(copied));
}

} // namespace quellbox
