#include "contents/ReadableBody.h"

#include "mail/DisplayText.h"
#include "mail/PartContent.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <utility>

namespace quellbox {

namespace {

using PieceKind = OutlinePart::Kind;

/// The text of a part with LF line ends, and brackets that are none of the program's own (see EscapeBrackets()).
QString PlainText(const OutlinePart& part, const CharsetEvidence& evidence) {
    QString text = DecodeText(part.content, part.charset, evidence);
    const auto begin = text.begin();
    const auto end = text.end();
    auto out = begin;
    for (auto in = begin; in != end; ++in) {
        const bool isHalfOfEnd = *in == u'\r' && in + 1 != end && in[1] == u'\n';
        if (!isHalfOfEnd) {
            *out++ = IsLineEnd(*in) ? QChar(u'\n') : *in;
        }
    }
    while (out != begin && out[-1].isSpace()) {
        --out;
    }
    text.truncate(out - begin);
    return text.isEmpty() ? text : EscapeBrackets(text) + u'\n';
}

/// Who says what stands in a line.
enum class Voice { Program, Message };

/// What stands in front of a line. The lines of an attached message have bars, one for each level. Those of a message
/// have blanks, which those of the program never have: so that no message can pretend to be the program.
QString MarkOf(Voice voice, int level) {
    return QStringLiteral("| ").repeated(level) + (voice == Voice::Message ? QStringLiteral("  ") : QString());
}

class BodyReader {
public:
    BodyReader(const CharsetEvidence& evidence, const std::function<bool()>& goOn) : evidence_(evidence) {
        budget_.goOn = goOn;
    }

    /// False when nothing more is wanted.
    bool Add(const OutlinePart& part) {
        switch (part.kind) {
        case PieceKind::Head:
            AddLines(QCoreApplication::translate("quellbox", "Attached message") + u'\n' +
                         HeadLines(part.fields, evidence_),
                     part.level + 1, Voice::Program);
            break;
        case PieceKind::Plain:
            AddLines(PlainText(part, evidence_), part.level, Voice::Message);
            break;
        case PieceKind::Html:
            AddPage(part);
            break;
        case PieceKind::Attachment:
            break; // listed below the text
        }
        return !budget_.IsSpent();
    }

    ReadableBody Finish() {
        for (size_t i = 0; i < body_.places.size(); ++i) {
            body_.places[i].address = numbers_.Targets()[static_cast<qsizetype>(i)];
        }
        body_.areLinksMissing = numbers_.AreMissing();
        return std::move(body_);
    }

private:
    /// Adds lines, each with a line end, behind a blank one.
    void AddLines(const QString& lines, int level, Voice voice) {
        if (lines.isEmpty()) {
            return;
        }
        const QString mark = MarkOf(voice, level);
        const QString markOfBlank = mark.trimmed();
        MakeRoom(lines.size() + lines.count(u'\n') * mark.size());
        body_.text += body_.text.isEmpty() ? QString() : QStringLiteral("\n");
        qsizetype at = 0;
        while (at < lines.size() && !budget_.IsSpent()) {
            const qsizetype end = lines.indexOf(u'\n', at) + 1;
            body_.text += end - at == 1 ? markOfBlank : mark;
            body_.text += QStringView(lines).sliced(at, end - at);
            budget_.text -= mark.size() + end - at;
            at = end;
        }
        if (at < lines.size()) {
            TellCut(level);
        }
    }

    /// For the many lines of a large text at once, and not anew for each of many small ones.
    void MakeRoom(qsizetype wanted) {
        const qsizetype size = body_.text.size() + std::min(wanted, budget_.text) + 1;
        if (size > body_.text.capacity()) {
            body_.text.reserve(std::max(size, 2 * body_.text.capacity()));
        }
    }

    void TellCut(int level) {
        body_.text += MarkOf(Voice::Program, level) +
                      QCoreApplication::translate("quellbox", "[The rest of this text is not shown.]") + u'\n';
    }

    void AddPage(const OutlinePart& part) {
        HtmlText page = ReadHtml(part.content, part.charset, numbers_, evidence_, budget_);
        if (part.isShown) {
            AddLines(page.text, part.level, Voice::Message);
            if (page.isCut) {
                TellCut(part.level);
            }
        }
        body_.places.resize(static_cast<size_t>(numbers_.Targets().size()));
        for (HtmlLink& link : page.links) {
            if (link.number > 0) {
                LinkPlace& place = body_.places[static_cast<size_t>(link.number - 1)];
                place.isMarked = place.isMarked || (part.isShown && link.isMarked);
                place.text = place.text.isEmpty() ? link.text : place.text;
            }
            body_.links.push_back(std::move(link));
        }
    }

    const CharsetEvidence& evidence_;
    ReadableBody body_;
    LinkNumbers numbers_;
    ReadingBudget budget_;
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
            lines += QCoreApplication::translate("quellbox", caption).arg(CleanseForDisplay(value)) + u'\n';
        }
    }
    return lines;
}

ReadableBody ReadBody(const MessageOutline& outline, const std::function<bool()>& goOn) {
    BodyReader reader(outline.evidence, goOn);
    for (const OutlinePart& part : outline.parts) {
        if (!reader.Add(part)) {
            break;
        }
    }
    return reader.Finish();
}

} // namespace quellbox
