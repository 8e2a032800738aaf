#include "delivery/OutgoingMessage.h"

#include "mail/FieldNames.h"

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
    const qsizetype limit = std::min(message.size(), kMaximumHeaderBytes);
    for (qsizetype start = 0; start < limit;) {
        const qsizetype end = EndOfField(message, start);
        const QByteArrayView line = message.sliced(start, end - start);
        if (IsBlankLine(message.sliced(start, EndOfLine(message, start) - start))) {
            break;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon > 0) {
            fields.push_back({line.first(colon).toByteArray().trimmed().toLower(), line.sliced(colon + 1), start, end});
        }
        start = end;
    }
    return fields;
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

/// What belongs to the message is not the server's, even where the server writes its rating into it.
bool IsOfServer(const ServerProfile& profile, const QByteArray& name) {
    const auto isName = [&name](const QByteArray& other) { return other.toLower() == name; };
    const auto isRating = [&isName](const RatingField& rating) { return isName(rating.name); };
    return !IsFieldOfMessage(name) &&
           (IsOfDelivery(name) || BeginsAsAdded(profile, name) || IsAmong(profile.senders, name) ||
            IsAmong(profile.recipients, name) || std::any_of(profile.marks.begin(), profile.marks.end(), isName) ||
            std::any_of(profile.reasons.begin(), profile.reasons.end(), isName) ||
            std::any_of(profile.ratings.begin(), profile.ratings.end(), isRating));
}

/// How many fields the server has certainly put on top: those that it is known for, above all others and above the
/// trace of its reception. Without such a trace nothing separates them from what the sender wrote. What separates the
/// messages of a mailbox may come first.
size_t CountOnTop(const std::vector<Field>& fields, const ServerProfile& profile) {
    const bool hasTrace =
        std::any_of(fields.begin(), fields.end(), [](const Field& field) { return field.name == "received"; });
    const auto isOthers = [&profile](const Field& field) {
        return !IsOfServer(profile, field.name) && !field.name.startsWith("from ");
    };
    const auto end = std::find_if(fields.begin(), fields.end(), isOthers);
    return hasTrace ? static_cast<size_t>(end - fields.begin()) : 0;
}

/// Which of the wanted fields counts: the topmost one, unless one that stands beside it overrides it. Null without any.
const AddressField* ChooseField(const std::vector<Field>& onTop, const ServerProfile& profile,
                                const std::vector<AddressField>& wanted) {
    const AddressField* chosen = nullptr;
    for (const Field& field : onTop) {
        const auto found = std::find_if(wanted.begin(), wanted.end(), [&field](const AddressField& address) {
            return address.name.toLower() == field.name;
        });
        const bool isEnvelope = IsAmong(profile.senders, field.name) || IsAmong(profile.recipients, field.name);
        if (found != wanted.end() && (chosen == nullptr || found->overrides)) {
            chosen = &*found;
        } else if (chosen != nullptr && !isEnvelope) {
            break;
        }
    }
    return chosen;
}

QByteArrayList AddressesIn(const std::vector<Field>& onTop, const ServerProfile& profile,
                           const std::vector<AddressField>& wanted) {
    QByteArrayList found;
    const AddressField* chosen = ChooseField(onTop, profile, wanted);
    for (const Field& field : onTop) {
        if (chosen != nullptr && field.name == chosen->name.toLower()) {
            found.append(PathAddresses(field.value));
            chosen = chosen->repeats ? chosen : nullptr;
        }
    }
    return found;
}

} // namespace

Envelope EnvelopeOf(QByteArrayView message, const ServerProfile& profile) {
    std::vector<Field> fields = FieldsOf(message);
    fields.resize(CountOnTop(fields, profile));
    const QByteArrayList senders = AddressesIn(fields, profile, profile.senders);
    Envelope envelope;
    envelope.sender = senders.isEmpty() ? QByteArray() : senders.first();
    for (const QByteArray& recipient : AddressesIn(fields, profile, profile.recipients)) {
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
    const std::vector<Field> fields = FieldsOf(message);
    const size_t onTop = CountOnTop(fields, profile);
    for (size_t number = 0; number < fields.size(); ++number) {
        const Field& field = fields[number];
        if (field.name == "bcc" || number < onTop) {
            outgoing.append(QByteArrayView(message).sliced(copied, std::max(copied, field.start) - copied));
            copied = field.end;
        }
    }
    return outgoing.append(QByteArrayView(message).sliced(copied));
}

bool HasFieldOnTop(QByteArrayView message, const QByteArrayList& names) {
    const std::vector<Field> fields = FieldsOf(message);
    const auto trace =
        std::find_if(fields.begin(), fields.end(), [](const Field& field) { return field.name == "received"; });
    return std::any_of(fields.begin(), trace, [&names](const Field& field) { return names.contains(field.name); });
}

} // namespace quellbox
