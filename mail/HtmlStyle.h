#pragma once

#include "mail/CssColor.h"

#include <QByteArray>

#include <optional>

namespace quellbox {

/// A length of a style sheet.
struct CssLength {
    double value = 0;
    bool isRelative = false; ///< times what is inherited; else in pixels

    bool operator==(const CssLength&) const = default;
};

/// What a background is painted with; no colour where it is a picture, or one that is not known.
struct CssBackground {
    std::optional<CssColor> color;

    bool operator==(const CssBackground&) const = default;
};

/// What decides whether a text can be read, of the declarations of a style (CSS 2.1, and mso-hide of Outlook).
struct HtmlDeclarations {
    std::optional<bool> isDisplayed;
    std::optional<bool> isVisible;
    std::optional<bool> isTransparent; ///< opacity
    std::optional<bool> isOffScreen;
    std::optional<bool> hasNoRoom; ///< no height or width is left for it
    std::optional<bool> clips;     ///< overflow: what has no room is not painted
    std::optional<bool> hidesInOutlook;
    std::optional<CssLength> fontSize;
    std::optional<CssColor> color;
    std::optional<CssBackground> background;
    std::optional<bool> keepsBlanks; ///< white-space

    /// Takes over what `stronger` declares.
    void Merge(const HtmlDeclarations& stronger);

    bool operator==(const HtmlDeclarations&) const = default;
};

/// Reads declarations as they stand in an attribute "style" or in the braces of a rule. What does not decide whether
/// text can be read is passed over.
HtmlDeclarations ReadDeclarations(QByteArrayView text);

/// How an element looks, with what it inherits.
struct HtmlLook {
    bool isGone = false;   ///< nothing of it is painted, nor of what is in it
    bool isVisible = true; ///< an element inside may be visible again
    bool keepsBlanks = false;
    double fontSize = 16; ///< in pixels
    std::optional<CssColor> color = CssColor{0, 0, 0};
    CssBackground background{CssColor{255, 255, 255}};

    /// How an element inside of this one looks.
    HtmlLook Inside(const HtmlDeclarations& declared) const;

    /// Whether pictures are seen there.
    bool ShowsPictures() const { return !isGone && isVisible; }

    /// Whether text can be read there: it is there, not tiny, and not of the colour of its background.
    bool ShowsText() const;
};

} // namespace quellbox
