#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace quellbox {

/// A colour of a page, each part from 0 to 255.
struct CssColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    bool operator==(const CssColor&) const = default;
};

/// Reads a colour as style sheets and attributes write it (CSS Color Module Level 3, and the hexadecimal form without
/// its sign); empty where it is none that is known. `text` is in lower case.
std::optional<CssColor> ReadCssColor(QByteArrayView text);

/// Whether nobody tells a text of the one colour from its background of the other.
bool AreNearlyEqual(const CssColor& left, const CssColor& right);

} // namespace quellbox
