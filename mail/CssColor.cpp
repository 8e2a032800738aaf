#include "mail/CssColor.h"

#include "mail/CssColorNames.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quellbox {

namespace {

// Every channel nearer than this: #ffffff and #f0f0f0, say.
constexpr int leastDifference = 16;

CssColor FromNumber(quint32 rgb) {
    return {static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb)};
}

std::optional<CssColor> ReadHexadecimal(QByteArrayView digits) {
    bool isNumber = false;
    const quint32 number = digits.toByteArray().toUInt(&isNumber, 16);
    if (!isNumber || digits.startsWith('+') || digits.startsWith('-')) {
        return std::nullopt;
    }
    const auto doubled = [](quint32 rgb) {
        return FromNumber((rgb & 0xF00) * 0x1100 + (rgb & 0xF0) * 0x110 + (rgb & 0xF) * 0x11);
    };
    switch (digits.size()) {
    case 3:
        return doubled(number);
    case 4: {
        CssColor color = doubled(number >> 4);
        color.alpha = static_cast<std::uint8_t>((number & 0xF) * 0x11);
        return color;
    }
    case 6:
        return FromNumber(number);
    case 8: {
        CssColor color = FromNumber(number >> 8);
        color.alpha = static_cast<std::uint8_t>(number);
        return color;
    }
    default:
        return std::nullopt;
    }
}

std::uint8_t Channel(QByteArray text, double whole) {
    const bool isPercent = text.endsWith('%');
    if (isPercent) {
        text.chop(1);
    }
    const double value = text.toDouble() * (isPercent ? 255.0 / 100 : whole);
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

double DegreesOf(QByteArray text) {
    struct Unit {
        const char* name;
        double degrees;
    };
    for (const Unit& unit : {Unit{"deg", 1}, Unit{"grad", 0.9}, Unit{"rad", 57.29577951308232}, Unit{"turn", 360}}) {
        if (text.endsWith(unit.name)) {
            text.chop(static_cast<qsizetype>(qstrlen(unit.name)));
            return text.toDouble() * unit.degrees;
        }
    }
    return text.toDouble();
}

double ShareOf(QByteArray text) {
    text.replace('%', "");
    return std::clamp(text.toDouble() / 100, 0.0, 1.0);
}

/// Hue, saturation and lightness (CSS Color Module Level 3, 4.2.4).
CssColor FromHsl(const QByteArray& hue, const QByteArray& saturation, const QByteArray& lightness) {
    const double turn = std::fmod(std::fmod(DegreesOf(hue), 360) + 360, 360) / 30; // in twelfths
    const double light = ShareOf(lightness);
    const double range = ShareOf(saturation) * std::min(light, 1 - light);
    const auto channel = [&](double from) {
        const double at = std::fmod(from + turn, 12);
        const double value = light - range * std::max(-1.0, std::min({at - 3, 9 - at, 1.0}));
        return static_cast<std::uint8_t>(std::clamp(value * 255 + 0.5, 0.0, 255.0));
    };
    return {channel(0), channel(8), channel(4)};
}

/// What stands in the brackets of a function, with commas or blanks between.
std::optional<CssColor> ReadFunction(QByteArrayView arguments, bool isHsl) {
    constexpr qsizetype longest = 64;
    const qsizetype end = arguments.indexOf(')');
    if (end < 0 || end > longest) {
        return std::nullopt;
    }
    QByteArray text = arguments.first(end).toByteArray();
    const QList<QByteArray> parts = text.replace(',', ' ').replace('/', ' ').simplified().split(' ');
    if (parts.size() < 3) {
        return std::nullopt;
    }
    CssColor color = isHsl ? FromHsl(parts[0], parts[1], parts[2])
                           : CssColor{Channel(parts[0], 1), Channel(parts[1], 1), Channel(parts[2], 1)};
    if (parts.size() > 3) {
        color.alpha = Channel(parts[3], 255);
    }
    return color;
}

} // namespace

std::optional<CssColor> ReadCssColor(QByteArrayView text) {
    text = text.trimmed();
    if (text.startsWith('#')) {
        return ReadHexadecimal(text.sliced(1));
    }
    for (const QByteArrayView function :
         {QByteArrayView("rgba("), QByteArrayView("rgb("), QByteArrayView("hsla("), QByteArrayView("hsl(")}) {
        if (text.startsWith(function)) {
            return ReadFunction(text.sliced(function.size()), function[0] == 'h');
        }
    }
    if (text == "transparent") {
        return CssColor{0, 0, 0, 0};
    }
    constexpr qsizetype longestName = 20; // lightgoldenrodyellow
    if (text.size() > longestName) {
        return std::nullopt;
    }
    const auto found = CssColorNames().constFind(text.toByteArray());
    if (found != CssColorNames().constEnd()) {
        return FromNumber(*found);
    }
    return text.size() == 6 ? ReadHexadecimal(text) : std::nullopt;
}

bool AreNearlyEqual(const CssColor& left, const CssColor& right) {
    const auto isNear = [](int a, int b) { return std::abs(a - b) < leastDifference; };
    return isNear(left.red, right.red) && isNear(left.green, right.green) && isNear(left.blue, right.blue);
}

} // namespace quellbox
