#include "contents/SenderWarnings.h"

#include "mail/HeaderFields.h"
#include "mail/LinkTarget.h"
#include "mail/MailAddress.h"
#include "mail/OrganizationalDomain.h"
#include "mail/ShownWords.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace quellbox {

namespace {

using WarningKind = MessageWarning::Kind;
using Addresses = std::vector<MailAddress>;

QByteArray RawValue(const RawFieldList& fields, QByteArrayView name) {
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const RawField& field) {
        return name.compare(field.name, Qt::CaseInsensitive) == 0;
    });
    return found == fields.end() ? QByteArray() : found->value;
}

Addresses AddressesOf(const WarningSource& source, QByteArrayView name) {
    return ReadAddresses(RawValue(source.outline.fields, name), source.outline.evidence);
}

/// The first sender in the From that has a domain; another one behind it is no excuse for what the first pretends.
MailAddress FirstSender(const WarningSource& source) {
    const Addresses from = AddressesOf(source, "From");
    const auto found =
        std::find_if(from.begin(), from.end(), [](const MailAddress& each) { return !each.Domain().isEmpty(); });
    return found == from.end() ? MailAddress() : *found;
}

MailAddress EnvelopeSender(const WarningSource& source) {
    // Where a profile takes the whole of a field, more than an address may stand there.
    const Addresses envelope = ReadAddresses(ParseHeaderFields(source.bytes, source.profile).xSender.toUtf8());
    return envelope.empty() ? MailAddress() : envelope.front();
}

/// The domain of the first envelope sender, if a forwarder has rewritten it (Sender Rewriting Scheme): it stands behind
/// a check and a day, as in SRS0=check=day=domain=local, where "local" may hold equals signs, too. SRS1 of a second
/// forwarder has the same behind a check, the first forwarder and an empty piece.
QString RewrittenDomain(const QString& sender) {
    const QString local = sender.section(u'@', 0, -2);
    constexpr qsizetype prefix = 5; // a separator follows the four letters, and need not be an equals sign
    const bool isFirst = local.startsWith(QLatin1String("SRS0"), Qt::CaseInsensitive);
    const bool isSecond = local.startsWith(QLatin1String("SRS1"), Qt::CaseInsensitive);
    if (!isFirst && !isSecond) {
        return {};
    }
    const int domain = isFirst ? 2 : 5;
    return local.sliced(std::min(prefix, local.size())).section(u'=', domain, domain);
}

/// The domains that a text names.
QStringList DomainsIn(QString text) {
    for (QChar& character : text) {
        const bool isOfDomain = character.isLetterOrNumber() || character == u'.' || character == u'-';
        character = isOfDomain ? character : QChar(u' ');
    }
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    return words.filter(QStringLiteral("."));
}

/// Whether a mailing list of the envelope sender's organization has sent the message on, and says so (RFC 2919,
/// RFC 2369). The envelope sender is where returned mail goes, and these two fields are what a list is known by.
bool IsOfList(const WarningSource& source) {
    const QString domain = EnvelopeSender(source).Domain();
    const auto isOfEnvelope = [&domain](const QString& each) { return AreOfOneOrganization(each, domain); };
    const auto namesEnvelope = [&](const char* name) {
        const QString value = RawFieldText(source.outline.fields, name);
        const QStringList named = DomainsIn(value.sliced(value.lastIndexOf(u'<') + 1));
        return std::any_of(named.begin(), named.end(), isOfEnvelope);
    };
    return namesEnvelope("List-Id") || namesEnvelope("List-Post");
}

/// Whether a message was sent on, by what it says itself: nobody can know it, and so the warning is only milder.
bool WasSentOn(const WarningSource& source, const QString& envelope, const MailAddress& from) {
    return AreOfOneOrganization(RewrittenDomain(envelope), from.Domain()) || IsOfList(source);
}

std::optional<MessageWarning> EnvelopeWarning(const WarningSource& source) {
    const MailAddress from = FirstSender(source);
    const MailAddress envelope = EnvelopeSender(source);
    if (envelope.Domain().isEmpty() || from.address.isEmpty() ||
        AreOfOneOrganization(envelope.Domain(), from.Domain())) {
        return std::nullopt;
    }
    if (WasSentOn(source, envelope.address, from)) {
        const QString text = QCoreApplication::translate(
            "quellbox", "The message was sent on by %1, which is not the organization of its sender, %2.");
        return MessageWarning{WarningKind::EnvelopeSender, text.arg(envelope.Domain(), from.address)};
    }
    const QString text = QCoreApplication::translate(
        "quellbox", "The message comes from %1, but names %2 as its sender: these are different organizations.");
    return MessageWarning{WarningKind::EnvelopeSender, text.arg(envelope.address, from.address)};
}

QString ReplyText(const WarningSource& source, const MailAddress& reply, const MailAddress& from) {
    const bool isToList = IsOfList(source) && AreOfOneOrganization(reply.Domain(), EnvelopeSender(source).Domain());
    const QString text =
        isToList ? QCoreApplication::translate("quellbox",
                                               "A reply goes to %1, where the message was sent on, and not to the "
                                               "sender, %2.")
                 : QCoreApplication::translate(
                       "quellbox", "A reply goes to %1, which does not belong to the organization of the sender, %2.");
    return text.arg(reply.address, from.address);
}

std::optional<MessageWarning> ReplyWarning(const WarningSource& source) {
    const MailAddress from = FirstSender(source);
    if (from.address.isEmpty()) {
        return std::nullopt;
    }
    for (const MailAddress& reply : AddressesOf(source, "Reply-To")) {
        if (!reply.Domain().isEmpty() && !AreOfOneOrganization(reply.Domain(), from.Domain())) {
            return MessageWarning{WarningKind::ReplyTo, ReplyText(source, reply, from)};
        }
    }
    return std::nullopt;
}

/// The domain that a word of a name shows: of an address, or because it is one.
QString DomainShownBy(const QString& word) {
    constexpr qsizetype longest = 300;
    if (word.size() > longest || !word.contains(u'.')) {
        return {};
    }
    const qsizetype at = word.lastIndexOf(u'@');
    return at >= 0 ? (IsRegistrableDomain(word.sliced(at + 1)) ? word.sliced(at + 1) : QString()) : HostShownBy(word);
}

std::optional<MessageWarning> NameWarning(const Addresses& from) {
    for (const MailAddress& sender : from) {
        const QString domain = sender.Domain();
        for (const QString& word : ShownWords(sender.name)) {
            const QString shown = DomainShownBy(word);
            if (!shown.isEmpty() && !domain.isEmpty() && !AreOfOneOrganization(shown, domain)) {
                const QString text =
                    QCoreApplication::translate("quellbox", "The name of the sender shows %1, but the address is %2.");
                return MessageWarning{WarningKind::DisplayName, text.arg(word, sender.address)};
            }
        }
    }
    return std::nullopt;
}

} // namespace

QString DomainOfSender(const WarningSource& source) {
    return FirstSender(source).Domain();
}

std::vector<MessageWarning> FindSenderWarnings(const WarningSource& source) {
    std::vector<MessageWarning> warnings;
    const std::optional<MessageWarning> all[] = {EnvelopeWarning(source), ReplyWarning(source),
                                                 NameWarning(AddressesOf(source, "From"))};
    for (const std::optional<MessageWarning>& found : all) {
        if (found) {
            warnings.push_back(*found);
        }
    }
    return warnings;
}

} // namespace quellbox
