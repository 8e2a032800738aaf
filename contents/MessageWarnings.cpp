#include "contents/MessageWarnings.h"

#include "contents/AttachmentNature.h"
#include "contents/SenderWarnings.h"
#include "mail/DisplayText.h"
#include "mail/DomainLook.h"
#include "mail/LinkTarget.h"
#include "mail/MailAddress.h"
#include "mail/OrganizationalDomain.h"
#include "mail/ShownWords.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace quellbox {

namespace {

using Warnings = std::vector<MessageWarning>;

constexpr size_t mostOfAKind = 3;
constexpr qsizetype mostAddresses = 10'000;

/// Adds sentences, each once, and no more than are read.
void AddOnce(Warnings& warnings, MessageWarning::Kind kind, const QString& text) {
    const auto isSame = [&](const MessageWarning& each) { return each.kind == kind && each.text == text; };
    const auto isOfKind = [&](const MessageWarning& each) { return each.kind == kind; };
    if (std::none_of(warnings.begin(), warnings.end(), isSame) &&
        static_cast<size_t>(std::count_if(warnings.begin(), warnings.end(), isOfKind)) < mostOfAKind) {
        warnings.push_back({kind, text});
    }
}

/// The first host that a link shows and does not lead to; empty where there is none. Each of its words may show one,
/// but no reader looks at very many.
QString OtherHostShownBy(const QString& text, const QString& host) {
    constexpr int mostWords = 16;
    int looked = 0;
    for (const QString& word : ShownWords(text)) {
        const bool mayBeHost = word.contains(u'.') && ++looked <= mostWords;
        QString shown = mayBeHost ? HostShownBy(word) : QString();
        if (!shown.isEmpty() && !AreOfOneOrganization(shown, host)) {
            return shown;
        }
    }
    return {};
}

Warnings FindLinkWarnings(const std::vector<HtmlLink>& links) {
    Warnings warnings;
    for (const HtmlLink& link : links) {
        if (warnings.size() == mostOfAKind) {
            break;
        }
        const LinkTarget target = ReadLinkTarget(link.target);
        if (target.host.isEmpty()) {
            continue;
        }
        const QString shown = OtherHostShownBy(link.text, target.host);
        const QString pretended = HostShownBy(target.user.section(u':', 0, 0));
        if (!shown.isEmpty()) {
            const QString text = QCoreApplication::translate("quellbox", "A link shows %1, but leads to %2.");
            AddOnce(warnings, MessageWarning::Kind::LinkText, text.arg(shown, target.host));
        } else if (!pretended.isEmpty() && !AreOfOneOrganization(pretended, target.host)) {
            const QString text =
                QCoreApplication::translate("quellbox", "A link begins as if it led to %1, but leads to %2.");
            AddOnce(warnings, MessageWarning::Kind::LinkText, text.arg(pretended, target.host));
        }
    }
    return warnings;
}

/// Where the host ends that begins there in a text, or is to be read no further.
qsizetype EndOfHost(const QString& text, qsizetype begin) {
    constexpr qsizetype longest = 300;
    const QStringView rest = QStringView(text).sliced(begin).left(longest);
    const auto end = std::find_if(rest.begin(), rest.end(), [](QChar c) {
        return c.isSpace() || c == u'>' || c == u'/' || c == u'\\' || c == u'?' || c == u'#';
    });
    return begin + (end - rest.begin());
}

/// The hosts of the addresses of the web in a text. It is bounded how many addresses are looked at, however often they
/// repeat.
void AddHostsOf(const QString& text, QSet<QString>& hosts) {
    qsizetype looked = 0;
    for (qsizetype at = text.indexOf(u':'); at >= 0 && looked < mostAddresses; at = text.indexOf(u':', at)) {
        ++at;
        if (QStringView(text).sliced(at).startsWith(QLatin1String("//"))) {
            const qsizetype begin = at + 2;
            at = EndOfHost(text, begin);
            hosts.insert(ReadLinkTarget(QStringLiteral("http://") + text.sliced(begin, at - begin)).host);
            ++looked;
        }
    }
}

QSet<QString> DomainsOf(const WarningSource& source) {
    QSet<QString> domains;
    for (const HtmlLink& link : source.body.links) {
        domains.insert(ReadLinkTarget(link.target).host);
    }
    AddHostsOf(source.body.text, domains);
    for (const RawField& field : source.outline.fields) {
        const QByteArray name = field.name.toLower();
        if (name == "from" || name == "reply-to" || name == "sender") {
            for (const MailAddress& address : ReadAddresses(field.value, source.outline.evidence)) {
                domains.insert(address.Domain());
            }
        }
    }
    return domains;
}

Warnings FindDomainWarnings(const WarningSource& source) {
    const QSet<QString> all = DomainsOf(source);
    QStringList domains(all.begin(), all.end());
    domains.sort(); // the same message has the same warnings
    Warnings warnings;
    for (const QString& domain : domains) {
        const DomainLook look = JudgeDomain(domain);
        const QString ascii = AsciiDomain(domain);
        if (look.kind == DomainLook::Kind::LookAlike) {
            const QString text = QCoreApplication::translate(
                "quellbox", "The domain %1 (%2) is written in letters that can be taken for those of %3.");
            AddOnce(warnings, MessageWarning::Kind::LookAlikeDomain, text.arg(look.domain, ascii, look.seenAs));
        } else if (look.kind == DomainLook::Kind::MixedScripts) {
            const QString text = QCoreApplication::translate(
                "quellbox", "The domain %1 (%2) mixes letters of several scripts, and can be taken for %3.");
            AddOnce(warnings, MessageWarning::Kind::LookAlikeDomain, text.arg(look.domain, ascii, look.seenAs));
        }
    }
    return warnings;
}

QString AttachmentName(const OutlinePart& part) {
    const QString name = CleanseForDisplay(part.fileName).trimmed();
    return name.isEmpty() ? u'(' + QCoreApplication::translate("quellbox", "without a name") + u')' : name;
}

void AddAttachmentWarnings(const OutlinePart& part, Warnings& warnings) {
    const AttachmentNature nature = JudgeAttachment(part);
    const QString name = AttachmentName(part);
    if (nature.disagrees && !nature.holds.isEmpty()) {
        const QString text =
            QCoreApplication::translate("quellbox", "The attachment %1 is declared as %2, but holds %3.");
        AddOnce(warnings, MessageWarning::Kind::AttachmentType,
                text.arg(name, QString::fromLatin1(part.type), nature.holds));
    } else if (nature.disagrees) {
        const QString text = QCoreApplication::translate(
            "quellbox", "The attachment %1 is declared as %2, which does not fit its name.");
        AddOnce(warnings, MessageWarning::Kind::AttachmentType, text.arg(name, QString::fromLatin1(part.type)));
    } else if (nature.hidesEnding) {
        const QString text = QCoreApplication::translate("quellbox", "The name of the attachment %1 hides its ending.");
        AddOnce(warnings, MessageWarning::Kind::AttachmentType, text.arg(name));
    }
    if (nature.runs || nature.hasMacros) {
        const QString text =
            nature.runs
                ? QCoreApplication::translate("quellbox", "The attachment %1 runs when it is opened.")
                : QCoreApplication::translate("quellbox", "The attachment %1 is a document with programs in it.");
        AddOnce(warnings, MessageWarning::Kind::RunnableAttachment, text.arg(name));
    }
}

Warnings FindAttachmentWarnings(const MessageOutline& outline) {
    Warnings warnings;
    for (const OutlinePart& part : outline.parts) {
        if (part.kind == OutlinePart::Kind::Attachment) {
            AddAttachmentWarnings(part, warnings);
        }
    }
    std::stable_sort(warnings.begin(), warnings.end(),
                     [](const MessageWarning& left, const MessageWarning& right) { return left.kind < right.kind; });
    return warnings;
}

} // namespace

std::vector<MessageWarning> FindWarnings(const WarningSource& source) {
    Warnings all;
    for (const Warnings& found :
         {FindSenderWarnings(source), FindLinkWarnings(source.body.links), FindDomainWarnings(source),
          FindAuthenticationWarnings(source.outline.fields, DomainOfSender(source)),
          FindAttachmentWarnings(source.outline)}) {
        std::transform(found.begin(), found.end(), std::back_inserter(all), [](const MessageWarning& each) {
            return MessageWarning{each.kind, CleanseForDisplay(each.text)};
        });
    }
    return all;
}

} // namespace quellbox
