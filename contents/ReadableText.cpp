#include "contents/ReadableText.h"

#include "contents/AttachmentNature.h"
#include "contents/MessageWarnings.h"
#include "contents/ReadableBody.h"
#include "mail/DisplayText.h"
#include "mail/LinkTarget.h"
#include "messages/FormatSize.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

QString AttachmentLine(const OutlinePart& part) {
    const QString name = CleanseForDisplay(part.fileName);
    const AttachmentNature nature = JudgeAttachment(part);
    QString line = QStringLiteral("- %1 (%2, %3)")
                       .arg(name.isEmpty() ? QCoreApplication::translate("quellbox", "without a name") : name,
                            CleanseForDisplay(QString::fromLatin1(part.type)), FormatSize(part.size));
    if (nature.runs) {
        line += QStringLiteral(" ! ") + QCoreApplication::translate("quellbox", "runs when it is opened");
    } else if (nature.hasMacros) {
        line += QStringLiteral(" ! ") + QCoreApplication::translate("quellbox", "holds programs");
    }
    return line + u'\n';
}

QString AttachmentLines(const MessageOutline& outline) {
    QString lines;
    for (const OutlinePart& part : outline.parts) {
        if (part.kind == OutlinePart::Kind::Attachment) {
            lines += AttachmentLine(part);
        }
    }
    return lines.isEmpty() ? lines : QCoreApplication::translate("quellbox", "Attachments:") + u'\n' + lines;
}

/// Where a link leads, and the host where it is not plain to see. Of one whose number does not stand in the text it is
/// said behind that what it shows. The address is without blanks, so that it is plain where it ends.
QString LinkLine(const LinkPlace& place) {
    QString line = CleanseForDisplay(place.address).replace(u' ', QLatin1String("%20"));
    const LinkTarget target = ReadLinkTarget(place.address);
    if (!target.user.isEmpty()) {
        line += QStringLiteral(" (%1)").arg(CleanseForDisplay(target.host));
    }
    const bool saysText = !place.isMarked && !place.text.isEmpty();
    return saysText
               ? QCoreApplication::translate("quellbox", "%1 - shown as: %2").arg(line, CleanseForDisplay(place.text))
               : line;
}

QString WarningLines(const std::vector<MessageWarning>& warnings) {
    QString lines;
    for (const MessageWarning& warning : warnings) {
        lines += QStringLiteral("! ") + warning.text + u'\n';
    }
    return lines;
}

QString LinkLines(const ReadableBody& body) {
    QString lines;
    for (size_t i = 0; i < body.places.size(); ++i) {
        lines += QStringLiteral("[%1] ").arg(i + 1) + LinkLine(body.places[i]) + u'\n';
    }
    if (body.areLinksMissing) {
        lines +=
            QCoreApplication::translate("quellbox", "[Further links are not listed. Behind them stands [?].]") + u'\n';
    }
    return lines.isEmpty() ? lines : QCoreApplication::translate("quellbox", "Links:") + u'\n' + lines;
}

} // namespace

QString ReadableText(const QByteArray& bytes, const ServerProfile& profile, const std::function<bool()>& goOn) {
    MessageOutline outline;
    const LoadError error = ReadOutline(bytes, outline);
    if (error != LoadError::None) {
        return LoadErrorText(error);
    }
    const ReadableBody body = ReadBody(outline, goOn);
    if (goOn && !goOn()) {
        return {};
    }
    const QString warnings = WarningLines(FindWarnings({bytes, outline, body, profile}));
    QString text;
    const QString none = QCoreApplication::translate("quellbox", "[The message holds no text.]") + u'\n';
    const QString& shown = body.text.isEmpty() ? none : body.text;
    const QString cut =
        outline.isCut ? QCoreApplication::translate("quellbox", "[The rest of this message is not shown.]") + u'\n'
                      : QString();
    for (const QString& section : {cut, warnings, HeadLines(outline.fields, outline.evidence), shown,
                                   AttachmentLines(outline), LinkLines(body)}) {
        if (!section.isEmpty()) {
            text += text.isEmpty() ? section : u'\n' + section;
        }
    }
    return CleanseLines(std::move(text));
}

} // namespace quellbox
