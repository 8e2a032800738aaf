#include "contents/ReadableBody.h"

#include "mail/PartContent.h"

#include <QCoreApplication>

#include <array>
#include <utility>

namespace quellbox {

namespace {

using PieceKind = OutlinePart::Kind;

QString PlainText(const OutlinePart& part, const CharsetEvidence& evidence) {
    QString text = DecodeText(part.content, part.charset, evidence);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    qsizetype end = text.size();
    while (end > 0 && text[end - 1].isSpace()) {
        --end;
    }
    text.truncate(end);
    return text.isEmpty() ? text : text + u'\n';
}

/// Sets off the lines of an attached message from those around it.
QString SetOff(const QString& text, int level) {
    if (level == 0 || text.isEmpty()) {
        return text;
    }
    const QString mark = QStringLiteral("| ").repeated(level);
    QString lines = mark + text.chopped(1);
    lines.replace(u'\n', u'\n' + mark);
    return lines + u'\n';
}

class BodyReader {
public:
    explicit BodyReader(const CharsetEvidence& evidence) : evidence_(evidence) {}

    void Add(const OutlinePart& part) {
        switch (part.kind) {
        case PieceKind::Head:
            AddText(QCoreApplication::translate("quellbox", "Attached message") + u'\n' +
                        HeadLines(part.fields, evidence_),
                    part.level + 1);
            break;
        case PieceKind::Plain:
            AddText(PlainText(part, evidence_), part.level);
            break;
        case PieceKind::Html:
            AddPage(part);
            break;
        case PieceKind::Attachment:
            break; // listed below the text
        }
    }

    ReadableBody Finish() {
        for (size_t i = 0; i < body_.places.size(); ++i) {
            body_.places[i].address = numbers_.Targets()[static_cast<qsizetype>(i)];
        }
        return std::move(body_);
    }

private:
    void AddText(const QString& text, int level) {
        if (!text.isEmpty()) {
            body_.text += (body_.text.isEmpty() ? QString() : QStringLiteral("\n")) + SetOff(text, level);
        }
    }

    void AddPage(const OutlinePart& part) {
        HtmlText page = ReadHtml(part.content, part.charset, numbers_, evidence_);
        if (part.isShown) {
            if (page.isCut) {
                page.text += QCoreApplication::translate("quellbox", "[The rest of this text is not shown.]") + u'\n';
            }
            AddText(page.text, part.level);
        }
        body_.places.resize(static_cast<size_t>(numbers_.Targets().size()));
        for (HtmlLink& link : page.links) {
            if (link.number > 0) {
                LinkPlace& place = body_.places[static_cast<size_t>(link.number - 1)];
                place.isMarked = place.isMarked || part.isShown;
                place.text = place.text.isEmpty() ? link.text : place.text;
            }
            body_.links.push_back(std::move(link));
        }
    }

    const CharsetEvidence& evidence_;
    ReadableBody body_;
    LinkNumbers numbers_;
};

} // namespace

QString HeadLines(const RawFieldList& fields, const CharsetEvidence& evidence) {
    static constexpr std::array<std::pair<const char*, const char*>, 5> captions{
        {{"From", QT_TRANSLATE_NOOP("quellbox", "From: %1")},
         {"To", QT_TRANSLATE_NOOP("quellbox", "To: %1")},
         {"Cc", QT_TRANSLATE_NOOP("quellbox", "Cc: %1")},
         {"Date", QT_TRANSLATE_NOOP("quellbox", "Date: %1")},
         {"Subject", QT_TRANSLATE_NOOP("quellbox", "Subject: %1")}}};
    QString lines;
    for (const auto& [name, caption] : captions) {
        const QString value = RawFieldText(fields, name, evidence);
        if (!value.isEmpty()) {
            lines += QCoreApplication::translate("quellbox", caption).arg(value) + u'\n';
        }
    }
    return lines;
}

ReadableBody ReadBody(const MessageOutline& outline) {
    BodyReader reader(outline.evidence);
    for (const OutlinePart& part : outline.parts) {
        reader.Add(part);
    }
    return reader.Finish();
}

} // namespace quellbox
