#include "contents/SenderWarnings.h"

#include "mail/AuthenticationResults.h"
#include "mail/HeaderFields.h"
#include "mail/LinkTarget.h"
#include "mail/MailAddress.h"
#include "mail/OrganizationalDomain.h"

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

bool IsOfAny(const QString& domain, const Addresses& addresses) {
    return std::any_of(addresses.begin(), addresses.end(),
                       [&domain](const MailAddress& each) { return AreOfOneOrganization(domain, each.Domain()); });
}

/// The domain of the envelope sender. A forwarder that rewrites it (SRS) puts the first one into the local part.
QString EnvelopeDomain(const QString& sender) {
    const qsizetype at = sender.lastIndexOf(u'@');
    if (at < 0) {
        return {};
    }
    const QString local = sender.first(at);
    if (local.startsWith(QLatin1String("SRS0"), Qt::CaseInsensitive) && local.count(u'=') >= 3) {
        return local.section(u'=', -2, -2);
    }
    return sender.sliced(at + 1);
}

/// Whether a mailing list has sent the message on, and says so: its domain stands in one of these fields.
bool IsOfList(const RawFieldList& fields, const QString& domain) {
    for (const char* name : {"Sender", "List-Id", "List-Post", "List-Unsubscribe", "Mailing-List", "X-Mailing-List"}) {
        QString text = RawFieldText(fields, name).toLower();
        for (QChar& character : text) {
            const bool isOfDomain = character.isLetterOrNumber() || character == u'.' || character == u'-';
            character = isOfDomain ? character : QChar(u' ');
        }
        const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
        if (std::any_of(words.begin(), words.end(), [&domain](const QString& word) {
                return word.contains(u'.') && AreOfOneOrganization(word, domain);
            })) {
            return true;
        }
    }
    return false;
}

std::optional<MessageWarning> EnvelopeWarning(const WarningSource& source, const Addresses& from) {
    // Where a profile takes the whole of a field, more than an address may stand there.
    const Addresses envelope = ReadAddresses(ParseHeaderFields(source.bytes, source.profile).xSender.toUtf8());
    const QString sender = envelope.empty() ? QString() : envelope.front().address;
    const QString domain = EnvelopeDomain(sender);
    if (domain.isEmpty() || from.empty() || from.front().Domain().isEmpty() || IsOfAny(domain, from) ||
        IsOfList(source.outline.fields, domain)) {
        return std::nullopt;
    }
    const QString text = QCoreApplication::translate(
        "quellbox", "The message comes from %1, but names %2 as its sender: these are different organizations.");
    return MessageWarning{WarningKind::EnvelopeSender, text.arg(sender, from.front().address)};
}

std::optional<MessageWarning> ReplyWarning(const RawFieldList& fields, const Addresses& from) {
    const Addresses replies = ReadAddresses(RawValue(fields, "Reply-To"));
    Addresses known = from;
    for (const char* name : {"To", "Cc"}) {
        const Addresses more = ReadAddresses(RawValue(fields, name));
        known.insert(known.end(), more.begin(), more.end());
    }
    if (from.empty() || from.front().Domain().isEmpty()) {
        return std::nullopt;
    }
    for (const MailAddress& reply : replies) {
        const QString domain = reply.Domain();
        const bool isKnown = std::any_of(known.begin(), known.end(), [&reply](const MailAddress& each) {
            return each.address.compare(reply.address, Qt::CaseInsensitive) == 0;
        });
        if (!domain.isEmpty() && !isKnown && !IsOfAny(domain, from) && !IsOfList(fields, domain)) {
            const QString text = QCoreApplication::translate(
                "quellbox", "A reply goes to %1, which does not belong to the organization of the sender, %2.");
            return MessageWarning{WarningKind::ReplyTo, text.arg(reply.address, from.front().address)};
        }
    }
    return std::nullopt;
}

/// The domain that a word of a name shows: of an address, or because it is one.
QString DomainShownBy(QString word) {
    constexpr qsizetype longest = 300;
    while (!word.isEmpty() && !word.front().isLetterOrNumber()) {
        word.remove(0, 1);
    }
    while (!word.isEmpty() && !word.back().isLetterOrNumber()) {
        word.chop(1);
    }
    if (word.size() > longest || !word.contains(u'.')) {
        return {};
    }
    const qsizetype at = word.lastIndexOf(u'@');
    return at >= 0 ? (IsRegistrableDomain(word.sliced(at + 1)) ? word.sliced(at + 1) : QString()) : HostShownBy(word);
}

std::optional<MessageWarning> NameWarning(const Addresses& from) {
    for (const MailAddress& sender : from) {
        const QString domain = sender.Domain();
        const QStringList words = sender.name.left(1000).split(u' ', Qt::SkipEmptyParts);
        for (const QString& word : words) {
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

bool HasResult(const AuthenticationReport& report, const char* method, QLatin1String result) {
    return std::any_of(report.results.begin(), report.results.end(), [&](const AuthenticationResult& each) {
        return each.method == QLatin1String(method) && each.result == result;
    });
}

} // namespace

std::vector<MessageWarning> FindSenderWarnings(const WarningSource& source) {
    const Addresses from = ReadAddresses(RawValue(source.outline.fields, "From"));
    std::vector<MessageWarning> warnings;
    const std::optional<MessageWarning> all[] = {EnvelopeWarning(source, from),
                                                 ReplyWarning(source.outline.fields, from), NameWarning(from)};
    for (const std::optional<MessageWarning>& found : all) {
        if (found) {
            warnings.push_back(*found);
        }
    }
    return warnings;
}

std::vector<MessageWarning> FindAuthenticationWarnings(const RawFieldList& fields) {
    AuthenticationReport all;
    for (const AuthenticationReport& report : ReportsOfOwnServer(fields)) {
        all.server = all.server.isEmpty() ? report.server : all.server;
        all.results.insert(all.results.end(), report.results.begin(), report.results.end());
    }
    const QLatin1String pass("pass");
    if (all.server.isEmpty() || HasResult(all, "dmarc", pass)) {
        return {};
    }
    QStringList failed;
    bool hasPassed = false;
    for (const AuthenticationResult& each : all.results) {
        const bool isCheck = each.method == QLatin1String("spf") || each.method == QLatin1String("dkim") ||
                             each.method == QLatin1String("dmarc");
        hasPassed = hasPassed || (isCheck && each.result == pass);
        if (isCheck && (each.result.contains(QLatin1String("fail")) || each.result == QLatin1String("permerror"))) {
            failed.append(each.method + u'=' + each.result);
        }
    }
    const bool isRefused = HasResult(all, "dmarc", QLatin1String("fail"));
    if (!failed.isEmpty() && (isRefused || !hasPassed)) {
        const QString text = QCoreApplication::translate(
            "quellbox", "Your server %1 has found that the message does not come from where it says: %2.");
        return {{WarningKind::Authentication, text.arg(all.server, failed.join(QLatin1String(", ")))}};
    }
    if (!hasPassed) {
        const QString text = QCoreApplication::translate(
            "quellbox", "Your server %1 has found no proof of where the message comes from.");
        return {{WarningKind::Authentication, text.arg(all.server)}};
    }
    return {};
}

} // namespace quellbox
