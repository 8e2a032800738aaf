#include "mail/HtmlText.h"

#include "mail/HtmlElements.h"
#include "mail/HtmlParser.h"
#include "mail/HtmlStyleSheet.h"
#include "mail/PartContent.h"
#include "mail/TextFlow.h"

#include <QCoreApplication>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

using Role = HtmlRole;

constexpr qsizetype mostText = 48 * 1024 * 1024;
constexpr qsizetype mostPieces = 16 * 1024;
constexpr size_t mostLinks = 10'000;
constexpr qsizetype mostLinkText = 300;
constexpr qsizetype mostHiddenText = 1000;
constexpr qsizetype longestTarget = 8192;

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

/// Writes what the parser tells into a flow of text.
class HtmlReader : public HtmlSink {
public:
    explicit HtmlReader(LinkNumbers& numbers) : numbers_(numbers) {}

    void Begin(QByteArrayView element, const HtmlAttributes& attributes) override {
        FlushText();
        Open open{.role = RoleOfElement(element), .look = LookOf(element, attributes)};
        open.isIgnored = Top().isIgnored || open.role == Role::Ignored || open.role == Role::Style;
        const bool wasIgnored = Top().isIgnored;
        open_.push_back(open);
        if (!wasIgnored) {
            BeginRole(element, attributes);
        }
    }

    void End() override {
        FlushText();
        const Open open = open_.back();
        open_.pop_back();
        if (open.role == Role::Style) {
            sheet_.Add(std::exchange(css_, {}));
        }
        if (!Top().isIgnored) {
            EndRole(open);
        }
    }

    void Text(QByteArrayView utf8) override {
        if (Top().role == Role::Style) {
            css_.append(utf8);
        }
        if (!Top().isIgnored) {
            // The parser tells each entity by itself, and each stray "<".
            pieces_.append(utf8);
            if (pieces_.size() > mostPieces) {
                FlushText();
            }
        }
    }

    bool IsFull() const override { return flow_.Size() > mostText; }

    HtmlText Finish(bool isWhole) {
        FlushText();
        FlushHidden();
        return {flow_.Take(), std::move(links_), !isWhole};
    }

private:
    struct Open {
        HtmlRole role = Role::Block;
        bool isIgnored = false;
        HtmlLook look = {};
        qsizetype link = -1; // of the list of links; -1 for what is none
    };

    const Open& Top() const { return open_.back(); }

    HtmlLook LookOf(QByteArrayView element, const HtmlAttributes& attributes) const {
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

    void FlushText() {
        if (!pieces_.isEmpty()) {
            AddText(QString::fromUtf8(pieces_));
            pieces_.truncate(0);
        }
    }

    void AddText(const QString& text) {
        if (!Top().look.ShowsText()) {
            if (hidden_.size() < mostHiddenText) {
                hidden_ += text;
            }
            return;
        }
        if (!hidden_.isEmpty() && !text.trimmed().isEmpty()) {
            FlushHidden();
        }
        if (innermostLink_ >= 0) {
            QString& linkText = links_[static_cast<size_t>(innermostLink_)].text;
            linkText += QStringView(text).left(std::max<qsizetype>(0, mostLinkText - linkText.size()));
        }
        flow_.Add(text, Top().look.keepsBlanks);
    }

    /// What was hidden up to here stands there as one mark, without what only fills the preview of a mailbox.
    void FlushHidden() {
        QString hidden = std::exchange(hidden_, {});
        hidden.removeIf([](QChar character) {
            const char16_t unit = character.unicode();
            return unit == 0x00AD || unit == 0x034F || (unit >= 0x200B && unit <= 0x200F) || unit == 0xFEFF;
        });
        hidden = hidden.simplified();
        if (hidden.isEmpty()) {
            return;
        }
        if (hidden.size() > mostHiddenText) {
            hidden = hidden.left(mostHiddenText) + QChar(0x2026);
        }
        flow_.AddMark(QCoreApplication::translate("quellbox", "[hidden text: %1]").arg(Bracketed(hidden)));
        flow_.Add(QStringLiteral(" "));
    }

    void BeginRole(QByteArrayView element, const HtmlAttributes& attributes) {
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
            BeginOther(attributes);
        }
    }

    void BeginOther(const HtmlAttributes& attributes) {
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
            BeginLink(attributes, "href");
            break;
        case Role::Form:
            flow_.EndLine();
            BeginLink(attributes, "action");
            break;
        case Role::Picture:
            AddPicture(attributes);
            break;
        case Role::Control:
            AddControl(attributes);
            break;
        case Role::Base:
            base_ = QUrl(QString::fromUtf8(Short(AttributeOf(attributes, "href"), longestTarget)));
            break;
        default:
            EndRole(Top());
        }
    }

    void EndRole(const Open& open) {
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

    QString TargetOf(QByteArrayView value) const {
        value = value.trimmed();
        if (value.isEmpty() || value.startsWith('#')) {
            return {};
        }
        // A browser passes over line ends and tabs in an address.
        QString target = QString::fromUtf8(Short(value, longestTarget));
        target.removeIf([](QChar character) { return character == u'\n' || character == u'\r' || character == u'\t'; });
        const bool isRelative = base_.isValid() && !base_.isEmpty() && QUrl(target).isRelative();
        return isRelative ? base_.resolved(QUrl(target)).toString() : target;
    }

    void BeginLink(const HtmlAttributes& attributes, QByteArrayView attribute) {
        const QString target = TargetOf(AttributeOf(attributes, attribute));
        if (target.isEmpty() || links_.size() >= mostLinks) {
            return;
        }
        open_.back().link = static_cast<qsizetype>(links_.size());
        links_.push_back({{}, target, numbers_.NumberOf(target)});
        outerLinks_.push_back(std::exchange(innermostLink_, open_.back().link));
    }

    void EndLink(const Open& open) {
        if (open.link < 0) {
            return;
        }
        innermostLink_ = outerLinks_.back();
        outerLinks_.pop_back();
        HtmlLink& link = links_[static_cast<size_t>(open.link)];
        link.text = link.text.simplified();
        if (!open.look.ShowsPictures()) {
            return; // its place is in the list all the same
        }
        if (open.role == Role::Form) {
            flow_.EndLine();
            flow_.AddMark(QCoreApplication::translate("quellbox", "[a form that is sent to %1]").arg(Mark(link)));
            flow_.EndLine();
        } else {
            FlushHidden();
            flow_.AddMark(Mark(link));
        }
    }

    static QString Mark(const HtmlLink& link) {
        return link.number == 0 ? QStringLiteral("[?]") : QStringLiteral("[%1]").arg(link.number);
    }

    void AddPicture(const HtmlAttributes& attributes) {
        const QString text = QString::fromUtf8(Short(AttributeOf(attributes, "alt"), 1000)).simplified();
        if (!Top().look.ShowsPictures() || text.isEmpty()) {
            return;
        }
        FlushHidden();
        flow_.AddMark(QCoreApplication::translate("quellbox", "[picture: %1]").arg(Bracketed(text)));
        flow_.Add(QStringLiteral(" "));
    }

    void AddControl(const HtmlAttributes& attributes) {
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
            flow_.AddMark(QStringLiteral("[%1]").arg(Bracketed(text)));
        }
    }

    LinkNumbers& numbers_;
    TextFlow flow_;
    HtmlStyleSheet sheet_;
    std::vector<HtmlLink> links_;
    std::vector<Open> open_{Open{}};    // the elements that are open, below them the page itself
    std::vector<qsizetype> outerLinks_; // around the innermost one
    qsizetype innermostLink_ = -1;
    QByteArray pieces_; // of text, not yet in the flow
    QByteArray css_;    // of the style element that is open
    QString hidden_;    // not yet in the flow
    QUrl base_;
};

/// The character set that a page declares itself at its beginning; empty where it does not.
QByteArray CharsetOfPage(const QByteArray& page) {
    constexpr qsizetype searched = 4096;
    const QByteArray head = page.left(searched).toLower();
    for (qsizetype meta = head.indexOf("<meta"); meta >= 0; meta = head.indexOf("<meta", meta + 1)) {
        const QByteArray tag =
            head.sliced(meta, head.indexOf('>', meta) < 0 ? head.size() - meta : head.indexOf('>', meta) - meta);
        const qsizetype at = tag.indexOf("charset");
        if (at < 0) {
            continue;
        }
        QByteArray name = tag.sliced(at + 7).trimmed();
        if (!name.startsWith('=')) {
            continue;
        }
        name = name.sliced(1).replace('"', ' ').replace('\'', ' ').replace(';', ' ').replace('/', ' ').trimmed();
        name = name.left(name.indexOf(' ') < 0 ? name.size() : name.indexOf(' '));
        // Who could read the declaration has not read that.
        return name.startsWith("utf-16") || name.startsWith("utf-32") ? QByteArray("utf-8") : name;
    }
    return {};
}

} // namespace

int LinkNumbers::NumberOf(const QString& target) {
    const auto found = numbers_.constFind(target);
    if (found != numbers_.constEnd()) {
        return *found;
    }
    if (targets_.size() >= static_cast<qsizetype>(mostLinks)) {
        return 0;
    }
    targets_.append(target);
    numbers_.insert(target, static_cast<int>(targets_.size()));
    return static_cast<int>(targets_.size());
}

QByteArray PageAsUtf8(const QByteArray& page, QByteArrayView charset, const CharsetEvidence& evidence) {
    const QByteArray declared = charset.trimmed().isEmpty() ? CharsetOfPage(page) : charset.toByteArray();
    const QByteArray name = declared.trimmed().toLower();
    const bool isUtf8 = name.isEmpty() || name == "utf-8" || name == "us-ascii";
    if (isUtf8 && !page.startsWith("\xEF\xBB\xBF") && !page.contains('\x1B') && QUtf8StringView(page).isValidUtf8()) {
        return page; // as nearly every page is; a large one is not copied back and forth. ISO 2022 has escapes
    }
    return DecodeText(page, declared, evidence).toUtf8();
}

HtmlText ReadHtml(const QByteArray& page, QByteArrayView charset, LinkNumbers& numbers,
                  const CharsetEvidence& evidence) {
    HtmlReader reader(numbers);
    const bool isWhole = ParseHtml(PageAsUtf8(page, charset, evidence), reader);
    return reader.Finish(isWhole);
}

} // namespace quellbox
