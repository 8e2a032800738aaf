#include "mail/HtmlStyle.h"

#include <QHash>

#include <algorithm>

namespace quellbox {

namespace {

// Up to this height in pixels a letter is a dot.
constexpr double largestUnreadable = 2;
// So far to the left or above nothing is in sight, whatever it is measured from.
constexpr double farOutside = -400;

/// The number at the beginning of a text; the rest is its unit.
std::optional<double> LeadingDecimal(QByteArrayView& text) {
    constexpr qsizetype longest = 20;
    qsizetype end = 0;
    while (end < std::min(text.size(), longest) && QByteArrayView("+-.0123456789").contains(text[end])) {
        ++end;
    }
    bool isNumber = false;
    const double value = text.first(end).toByteArray().toDouble(&isNumber);
    text = text.sliced(end).trimmed();
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<CssLength> ReadCssLength(QByteArrayView text) {
    const std::optional<double> value = LeadingDecimal(text);
    if (!value) {
        return std::nullopt;
    }
    struct Unit {
        QByteArrayView name;
        CssLength one;
    };
    static constexpr double pixelsOfPoint = 96.0 / 72;
    static const Unit units[] = {{"px", {1, false}},    {"pt", {pixelsOfPoint, false}},
                                 {"em", {1, true}},     {"rem", {16, false}},
                                 {"%", {0.01, true}},   {"ex", {0.5, true}},
                                 {"pc", {16, false}},   {"in", {96, false}},
                                 {"cm", {37.8, false}}, {"mm", {3.78, false}}};
    for (const Unit& unit : units) {
        if (text.startsWith(unit.name)) {
            return CssLength{*value * unit.one.value, unit.one.isRelative};
        }
    }
    return CssLength{*value, false};
}

std::optional<CssLength> ReadFontSize(QByteArrayView text) {
    if (text == "xx-small" || text == "x-small" || text == "small") {
        return CssLength{10, false};
    }
    if (text == "medium" || text == "large" || text == "x-large" || text == "xx-large" || text == "initial") {
        return CssLength{16, false};
    }
    return ReadCssLength(text);
}

/// Takes the first word, with what stands in its brackets.
QByteArrayView TakeWord(QByteArrayView& text) {
    qsizetype end = 0;
    for (int depth = 0; end < text.size() && (depth > 0 || text[end] != ' '); ++end) {
        depth += text[end] == '(' ? 1 : text[end] == ')' ? -1 : 0;
    }
    const QByteArrayView word = text.first(end);
    text = text.sliced(end).trimmed();
    return word;
}

bool IsEmptyPicture(QByteArrayView word) {
    return word == "url()" || word == "url('')" || word == "url(\"\")";
}

/// What a background is; empty where it says nothing. Without a colour it is transparent. What else stands in brackets
/// is a picture, or a colour in words that are not known.
std::optional<CssBackground> ReadBackground(QByteArrayView text) {
    static const QByteArray words = " none transparent initial inherit unset revert repeat no-repeat repeat-x repeat-y "
                                    "scroll fixed local left right top bottom center cover contain 0 ";
    CssColor color{0, 0, 0, 0};
    bool isKnown = false;
    while (!text.isEmpty()) {
        const QByteArrayView word = TakeWord(text);
        const std::optional<CssColor> read = ReadCssColor(word);
        if (!read && word.contains('(') && !IsEmptyPicture(word)) {
            return CssBackground{};
        }
        color = read.value_or(color);
        isKnown = isKnown || read || IsEmptyPicture(word) || words.contains(' ' + word.toByteArray() + ' ');
    }
    return isKnown ? std::optional(CssBackground{color}) : std::nullopt;
}

bool IsZero(QByteArrayView text) {
    const std::optional<CssLength> length = ReadCssLength(text);
    return length && length->value <= 0;
}

bool IsFarOutside(QByteArrayView text) {
    const std::optional<CssLength> length = ReadCssLength(text);
    return length && !length->isRelative && length->value <= farOutside;
}

template <class Value>
void TakeDeclared(std::optional<Value>& into, const std::optional<Value>& from) {
    if (from) {
        into = from;
    }
}

using Reader = void (*)(HtmlDeclarations&, QByteArrayView);

const QHash<QByteArray, Reader>& Readers() {
    static const Reader offScreen = [](HtmlDeclarations& to, QByteArrayView value) {
        to.isOffScreen = to.isOffScreen.value_or(false) || IsFarOutside(value);
    };
    static const Reader room = [](HtmlDeclarations& to, QByteArrayView value) {
        to.hasNoRoom = to.hasNoRoom.value_or(false) || IsZero(value);
    };
    static const Reader background = [](HtmlDeclarations& to, QByteArrayView value) {
        TakeDeclared(to.background, ReadBackground(value));
    };
    static const QHash<QByteArray, Reader> readers{
        {"display", [](HtmlDeclarations& to, QByteArrayView value) { to.isDisplayed = value != "none"; }},
        {"visibility",
         [](HtmlDeclarations& to, QByteArrayView value) { to.isVisible = value != "hidden" && value != "collapse"; }},
        {"opacity",
         [](HtmlDeclarations& to, QByteArrayView value) {
             const std::optional<double> opacity = LeadingDecimal(value);
             to.isTransparent = opacity && *opacity < 0.05;
         }},
        {"overflow", [](HtmlDeclarations& to, QByteArrayView value) { to.clips = value == "hidden"; }},
        {"mso-hide", [](HtmlDeclarations& to, QByteArrayView value) { to.hidesInOutlook = value == "all"; }},
        {"font-size", [](HtmlDeclarations& to, QByteArrayView value) { to.fontSize = ReadFontSize(value); }},
        {"color", [](HtmlDeclarations& to, QByteArrayView value) { TakeDeclared(to.color, ReadCssColor(value)); }},
        {"background", background},
        {"background-color", background},
        {"background-image",
         [](HtmlDeclarations& to, QByteArrayView value) {
             if (value.contains('(') && !IsEmptyPicture(value)) {
                 to.background = CssBackground{};
             }
         }},
        {"white-space", [](HtmlDeclarations& to, QByteArrayView value) { to.keepsBlanks = value.startsWith("pre"); }},
        {"max-height",
         [](HtmlDeclarations& to, QByteArrayView value) {
             to.hasNoRoom = IsZero(value);
             to.clips = to.clips.value_or(IsZero(value));
         }},
        {"height", room},
        {"width", room},
        {"max-width", room},
        {"left", offScreen},
        {"top", offScreen},
        {"text-indent", offScreen},
        {"margin-left", offScreen},
        {"margin-top", offScreen}};
    return readers;
}

void ReadDeclaration(QByteArrayView text, HtmlDeclarations& declared) {
    constexpr qsizetype longestName = 20;
    const qsizetype colon = text.indexOf(':');
    if (colon < 0) {
        return;
    }
    const QByteArrayView name = text.first(colon).trimmed();
    if (name.isEmpty() || name.size() > longestName) {
        return;
    }
    const auto reader = Readers().constFind(name.toByteArray().toLower());
    if (reader == Readers().constEnd()) {
        return;
    }
    QByteArray value = text.sliced(colon + 1).trimmed().toByteArray().toLower();
    const qsizetype important = value.indexOf('!');
    if (important >= 0) {
        value = value.first(important).trimmed();
    }
    (*reader)(declared, value);
}

bool HidesAll(const HtmlDeclarations& declared) {
    return !declared.isDisplayed.value_or(true) || declared.isTransparent.value_or(false) ||
           declared.isOffScreen.value_or(false) || declared.hidesInOutlook.value_or(false) ||
           (declared.hasNoRoom.value_or(false) && declared.clips.value_or(false));
}

} // namespace

void HtmlDeclarations::Merge(const HtmlDeclarations& stronger) {
    TakeDeclared(isDisplayed, stronger.isDisplayed);
    TakeDeclared(isVisible, stronger.isVisible);
    TakeDeclared(isTransparent, stronger.isTransparent);
    TakeDeclared(isOffScreen, stronger.isOffScreen);
    TakeDeclared(hasNoRoom, stronger.hasNoRoom);
    TakeDeclared(clips, stronger.clips);
    TakeDeclared(hidesInOutlook, stronger.hidesInOutlook);
    TakeDeclared(fontSize, stronger.fontSize);
    TakeDeclared(color, stronger.color);
    TakeDeclared(background, stronger.background);
    TakeDeclared(keepsBlanks, stronger.keepsBlanks);
}

HtmlDeclarations ReadDeclarations(QByteArrayView text) {
    HtmlDeclarations declared;
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf(';');
        ReadDeclaration(end < 0 ? text : text.first(end), declared);
        text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
    }
    return declared;
}

HtmlLook HtmlLook::Inside(const HtmlDeclarations& declared) const {
    HtmlLook look = *this;
    look.isGone = isGone || HidesAll(declared);
    look.isVisible = declared.isVisible.value_or(isVisible);
    look.keepsBlanks = declared.keepsBlanks.value_or(keepsBlanks);
    if (declared.fontSize) {
        look.fontSize = declared.fontSize->isRelative ? declared.fontSize->value * fontSize : declared.fontSize->value;
    }
    if (declared.color) {
        look.color = declared.color;
    }
    // What shines through is the background behind it, more or less.
    if (declared.background && !(declared.background->color && declared.background->color->alpha < 128)) {
        look.background = *declared.background;
    }
    return look;
}

bool HtmlLook::ShowsText() const {
    if (!ShowsPictures() || fontSize <= largestUnreadable) {
        return false;
    }
    constexpr int barelyThere = 13;
    const bool isInvisible =
        color && (color->alpha < barelyThere || (background.color && AreNearlyEqual(*color, *background.color)));
    return !isInvisible;
}

} // namespace quellbox
