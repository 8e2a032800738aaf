#include "mail/HtmlReader.h"

#include "mail/DisplayText.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

using Role = HtmlRole;

constexpr qsizetype mostPieces = 16 * 1024;
constexpr qsizetype mostHiddenText = 1000;

QByteArrayView AttributeOf(const HtmlAttributes& attributes, QByteArrayView name) {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [name](const auto& each) { return each.first == name; });
    return found == attributes.end() ? QByteArrayView() : found->second;
}

bool HasAttribute(const HtmlAttributes& attributes, QByteArrayView name) {
    return std::any_of(attributes.begin(), attributes.end(), [name](const auto& each) { return each.first == name; });
}

QByteArrayView Short(QByteArrayView text, qsizetype longest) {
    return text.first(std::min(text.size(), longest));
}

/// What the attributes of HTML 4 say of how an element looks.
HtmlDeclarations DeclaredByAttributes(QByteArrayView element, const HtmlAttributes& attributes) {
    HtmlDeclarations declared;
    for (const auto& [name, value] : attributes) {
        if (name == "hidden") {
            declared.isDisplayed = false;
        } else if (value.trimmed().isEmpty()) {
            continue;
        } else if (name == "bgcolor") {
            declared.background = CssBackground{ReadCssColor(value.toByteArray().toLower())};
        } else if (name == "background") {
            declared.background = CssBackground{};
        } else if ((name == "color" && element == "font") || (name == "text" && element == "body")) {
            declared.color = ReadCssColor(value.toByteArray().toLower());
        }
    }
    return declared;
}

/// A hostile text is not to end the brackets of a mark in which it stands.
QString Bracketed(QString text) {
    return text.replace(u'[', u'(').replace(u']', u')');
}

/// The text with LF for whatever begins a line.
QString WithLineEnds(QString text) {
    std::replace_if(text.begin(), text.end(), IsLineEnd, QChar(u'\n'));
    return text;
}

QString Mark(const HtmlLink& link) {
    return link.number == 0 ? QStringLiteral("[?]") : QStringLiteral("[%1]").arg(link.number);
}

} // namespace

void HtmlReader::Begin(QByteArrayView element, const HtmlAttributes& attributes) {
    FlushText();
    Open open{.role = RoleOfElement(element), .look = LookOf(element, attributes)};
    open.isIgnored = Top().isIgnored || open.role == Role::Ignored || open.role == Role::Style;
    const bool wasIgnored = Top().isIgnored;
    open_.push_back(open);
    if (!wasIgnored) {
        BeginRole(element, attributes);
    }
}

void HtmlReader::End() {
    FlushText();
    const Open open = open_.back();
    open_.pop_back();
    if (open.role == Role::Style) {
        AddSheet();
    }
    if (!Top().isIgnored) {
        EndRole(open);
    }
}

void HtmlReader::Text(QByteArrayView utf8) {
    if (Top().role == Role::Style && !isSheetWhole_) {
        css_.append(Short(utf8, budget_.sheet - css_.size()));
    }
    if (!Top().isIgnored) {
        // The parser tells each entity by itself, and each stray "<".
        pieces_.append(utf8);
        if (pieces_.size() > mostPieces) {
            FlushText();
        }
    }
}

bool HtmlReader::IsFull() const {
    return flow_.Size() > budget_.text || (budget_.goOn && !budget_.goOn());
}

void HtmlReader::UseSheetOf(HtmlReader& other) {
    sheet_ = std::move(other.sheet_);
    isSheetWhole_ = true;
}

HtmlText HtmlReader::Finish(bool isWhole) {
    FlushText();
    FlushHidden();
    for (; open_.size() > 1; open_.pop_back()) { // in a page that was cut
        EndLink(open_.back());
    }
    return {flow_.Take(), links_.Take(), !isWhole};
}

HtmlLook HtmlReader::LookOf(QByteArrayView element, const HtmlAttributes& attributes) const {
    HtmlDeclarations declared = DeclaredByAttributes(element, attributes);
    declared.Merge(sheet_.Declared(element, AttributeOf(attributes, "class"), AttributeOf(attributes, "id")));
    const QByteArrayView style = AttributeOf(attributes, "style");
    if (!style.isEmpty()) {
        declared.Merge(ReadDeclarations(style));
    }
    if (RoleOfElement(element) == Role::Preformatted) {
        declared.keepsBlanks = true;
    }
    return Top().look.Inside(declared);
}

void HtmlReader::AddSheet() {
    if (!css_.isEmpty()) {
        hasLateSheet_ = hasLateSheet_ || flow_.Size() > 0 || !hidden_.isEmpty();
        budget_.sheet -= css_.size();
        sheet_.Add(std::exchange(css_, {}));
    }
}

void HtmlReader::FlushText() {
    if (!pieces_.isEmpty()) {
        AddText(WithLineEnds(QString::fromUtf8(pieces_)));
        pieces_.truncate(0);
    }
}

void HtmlReader::AddText(const QString& text) {
    const bool isShown = Top().look.ShowsText();
    links_.AddText(text, isShown);
    if (!isShown) {
        AddHidden(text);
        return;
    }
    if (!hidden_.isEmpty() && !text.trimmed().isEmpty()) {
        FlushHidden();
    }
    flow_.Add(EscapeBrackets(text), Top().look.keepsBlanks);
}

/// Without what only fills the preview of a mailbox, which would leave no room for what is really hidden.
void HtmlReader::AddHidden(const QString& text) {
    for (const QChar character : text) {
        if (hidden_.size() > mostHiddenText) {
            return;
        }
        if (!character.isSpace() && !IsUnseen(character)) {
            hidden_ += character;
        } else if (character.isSpace() && !hidden_.endsWith(u' ')) {
            hidden_ += u' ';
        }
    }
}

/// What was hidden up to here stands there as one mark.
void HtmlReader::FlushHidden() {
    QString hidden = std::exchange(hidden_, {}).trimmed();
    if (hidden.isEmpty()) {
        return;
    }
    if (hidden.size() > mostHiddenText) {
        hidden = hidden.left(mostHiddenText) + QChar(0x2026);
    }
    flow_.AddMark(QCoreApplication::translate("quellbox", "[hidden text: %1]").arg(Bracketed(hidden)));
    flow_.Add(QStringLiteral(" "));
}

void HtmlReader::BeginRole(QByteArrayView element, const HtmlAttributes& attributes) {
    switch (Top().role) {
    case Role::Heading:
        flow_.BeginHeading(element[1] - '0');
        break;
    case Role::Quote:
        flow_.BeginQuote();
        break;
    case Role::BulletList:
        flow_.BeginList(false, 1);
        break;
    case Role::NumberedList:
        flow_.BeginList(true, HasAttribute(attributes, "start") ? AttributeOf(attributes, "start").toInt() : 1);
        break;
    case Role::Item:
        flow_.BeginItem();
        break;
    case Role::Row:
        flow_.BeginRow();
        break;
    case Role::Cell:
        flow_.BeginCell();
        break;
    default:
        BeginOther(element, attributes);
    }
}

void HtmlReader::BeginOther(QByteArrayView element, const HtmlAttributes& attributes) {
    switch (Top().role) {
    case Role::LineBreak:
        flow_.BreakLine();
        break;
    case Role::Rule:
        flow_.EndLine();
        flow_.Add(QStringLiteral("----------"));
        flow_.EndLine();
        break;
    case Role::Link:
        BeginLink(attributes, HasAttribute(attributes, "href") ? "href" : "xlink:href", element != "a");
        break;
    case Role::Form:
        flow_.EndLine();
        BeginLink(attributes, "action", true);
        break;
    case Role::Picture:
        AddPicture(attributes);
        break;
    case Role::Control:
        AddControl(attributes);
        break;
    case Role::Base:
        if (HasAttribute(attributes, "href")) {
            base_.Set(AttributeOf(attributes, "href"));
        }
        break;
    default:
        EndRole(Top());
    }
}

void HtmlReader::EndRole(const Open& open) {
    switch (open.role) {
    case Role::Block:
        flow_.EndLine();
        break;
    case Role::Paragraph:
    case Role::Preformatted:
        flow_.EndParagraph();
        break;
    case Role::Heading:
        flow_.EndHeading();
        break;
    case Role::Quote:
        flow_.EndQuote();
        break;
    case Role::BulletList:
    case Role::NumberedList:
        flow_.EndList();
        break;
    case Role::Item:
        flow_.EndLine();
        break;
    case Role::Row:
        flow_.EndRow();
        break;
    case Role::Link:
    case Role::Form:
        EndLink(open);
        break;
    default:
        break;
    }
}

void HtmlReader::BeginLink(const HtmlAttributes& attributes, QByteArrayView attribute, bool hasContent) {
    const QString target = base_.Resolve(AttributeOf(attributes, attribute));
    if (!target.isEmpty()) {
        open_.back().isLink = true;
        links_.Begin(target, hasContent);
    }
}

void HtmlReader::EndLink(const Open& open) {
    if (!open.isLink) {
        return;
    }
    std::optional<HtmlLink> link = links_.End();
    if (!link) {
        return;
    }
    link->isMarked = open.look.ShowsPictures();
    if (link->isMarked) {
        AddLinkMark(open, *link);
    }
    links_.Keep(*std::move(link));
}

void HtmlReader::AddLinkMark(const Open& open, const HtmlLink& link) {
    if (open.role == Role::Form) {
        flow_.EndLine();
        flow_.AddMark(QCoreApplication::translate("quellbox", "[a form that is sent to %1]").arg(Mark(link)));
        flow_.EndLine();
    } else {
        FlushHidden();
        flow_.AddMark(Mark(link));
    }
}

void HtmlReader::AddPicture(const HtmlAttributes& attributes) {
    links_.AddContent();
    const QString text = QString::fromUtf8(Short(AttributeOf(attributes, "alt"), 1000)).simplified();
    if (!Top().look.ShowsPictures() || text.isEmpty()) {
        return;
    }
    FlushHidden();
    flow_.AddMark(QCoreApplication::translate("quellbox", "[picture: %1]").arg(Bracketed(text)));
    flow_.Add(QStringLiteral(" "));
}

void HtmlReader::AddControl(const HtmlAttributes& attributes) {
    const QByteArray type = Short(AttributeOf(attributes, "type"), 20).toByteArray().toLower();
    if (type == "hidden" || !Top().look.ShowsPictures()) {
        return;
    }
    if (type == "password") {
        flow_.AddMark(QCoreApplication::translate("quellbox", "[a field for a password]"));
        return;
    }
    const QString text = QString::fromUtf8(Short(AttributeOf(attributes, "value"), 1000)).simplified();
    if (!text.isEmpty()) {
        const bool isButton = type == "submit" || type == "button" || type == "reset";
        const QString mark = isButton ? QCoreApplication::translate("quellbox", "[button: %1]")
                                      : QCoreApplication::translate("quellbox", "[field: %1]");
        flow_.AddMark(mark.arg(Bracketed(text)));
    }
}

} // namespace quellbox
