#include "contents/ReadableText.h"

#include "contents/ReadableBody.h"
#include "mail/DisplayText.h"
#include "messages/FormatSize.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

QString AttachmentLine(const OutlinePart& part) {
    const QString name = CleanseForDisplay(part.fileName);
    return QStringLiteral("  %1 (%2, %3)\n")
        .arg(name.isEmpty() ? QCoreApplication::translate("quellbox", "without a name") : name,
             CleanseForDisplay(QString::fromLatin1(part.type)), FormatSize(part.size));
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

QString LinkLines(const ReadableBody& body) {
    QString lines;
    for (qsizetype i = 0; i < body.targets.size(); ++i) {
        lines += QStringLiteral("[%1] ").arg(i + 1) + CleanseForDisplay(body.targets[i]) + u'\n';
    }
    return lines.isEmpty() ? lines : QCoreApplication::translate("quellbox", "Links:") + u'\n' + lines;
}

} // namespace

QString ReadableText(const QByteArray& bytes, const ServerProfile&) {
    MessageOutline outline;
    const LoadError error = ReadOutline(bytes, outline);
    if (error != LoadError::None) {
        return LoadErrorText(error);
    }
    const ReadableBody body = ReadBody(outline);
    QString text;
    for (const QString& section : {HeadLines(outline.fields), body.text, AttachmentLines(outline), LinkLines(body)}) {
        if (!section.isEmpty()) {
            text += text.isEmpty() ? section : u'\n' + section;
        }
    }
    return CleanseLines(std::move(text));
}

} // namespace quellbox
