#include "mail/CssColor.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <cstdlib>

namespace quellbox {

namespace {

// Every channel nearer than this: #ffffff and #f0f0f0, say.
constexpr int leastDifference = 16;

const QHash<QByteArray, quint32>& NamedColors() {
    static const QHash<QByteArray, quint32> colors{
        {"black", 0x000000},       {"white", 0xFFFFFF},        {"red", 0xFF0000},          {"green", 0x008000},
        {"blue", 0x0000FF},        {"yellow", 0xFFFF00},       {"gray", 0x808080},         {"grey", 0x808080},
        {"silver", 0xC0C0C0},      {"maroon", 0x800000},       {"purple", 0x800080},       {"fuchsia", 0xFF00FF},
        {"magenta", 0xFF00FF},     {"lime", 0x00FF00},         {"olive", 0x808000},        {"navy", 0x000080},
        {"teal", 0x008080},        {"aqua", 0x00FFFF},         {"cyan", 0x00FFFF},         {"orange", 0xFFA500},
        {"brown", 0xA52A2A},       {"pink", 0xFFC0CB},         {"gold", 0xFFD700},         {"snow", 0xFFFAFA},
        {"ivory", 0xFFFFF0},       {"whitesmoke", 0xF5F5F5},   {"ghostwhite", 0xF8F8FF},   {"floralwhite", 0xFFFAF0},
        {"azure", 0xF0FFFF},       {"mintcream", 0xF5FFFA},    {"seashell", 0xFFF5EE},     {"honeydew", 0xF0FFF0},
        {"aliceblue", 0xF0F8FF},   {"lavender", 0xE6E6FA},     {"beige", 0xF5F5DC},        {"linen", 0xFAF0E6},
        {"lightyellow", 0xFFFFE0}, {"lightcyan", 0xE0FFFF},    {"gainsboro", 0xDCDCDC},    {"lightgray", 0xD3D3D3},
        {"lightgrey", 0xD3D3D3},   {"darkgray", 0xA9A9A9},     {"darkgrey", 0xA9A9A9},     {"dimgray", 0x696969},
        {"darkblue", 0x00008B},    {"midnightblue", 0x191970}, {"darkslategray", 0x2F4F4F}};
    return colors;
}

CssColor FromNumber(quint32 rgb) {
    return {static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb)};
}

std::optional<CssColor> ReadHexadecimal(QByteArrayView digits) {
    bool isNumber = false;
    const quint32 number = digits.toByteArray().toUInt(&isNumber, 16);
    if (!isNumber || digits.startsWith('+') || digits.startsWith('-')) {
        return std::nullopt;
    }
    switch (digits.size()) {
    case 3:
        return FromNumber((number & 0xF00) * 0x1100 + (number & 0xF0) * 0x110 + (number & 0xF) * 0x11);
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

/// What stands in the brackets of rgb() or rgba(), with commas or blanks between.
std::optional<CssColor> ReadFunction(QByteArrayView arguments) {
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
    CssColor color{Channel(parts[0], 1), Channel(parts[1], 1), Channel(parts[2], 1)};
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
    for (const QByteArrayView function : {QByteArrayView("rgba("), QByteArrayView("rgb(")}) {
        if (text.startsWith(function)) {
            return ReadFunction(text.sliced(function.size()));
        }
    }
    if (text == "transparent") {
        return CssColor{0, 0, 0, 0};
    }
    constexpr qsizetype longestName = 20;
    if (text.size() > longestName) {
        return std::nullopt;
    }
    const auto found = NamedColors().constFind(text.toByteArray());
    if (found != NamedColors().constEnd()) {
        return FromNumber(*found);
    }
    return text.size() == 6 ? ReadHexadecimal(text) : std::nullopt;
}

bool AreNearlyEqual(const CssColor& left, const CssColor& right) {
    const auto isNear = [](int a, int b) { return std::abs(a - b) < leastDifference; };
    return isNear(left.red, right.red) && isNear(left.green, right.green) && isNear(left.blue, right.blue);
}

} // namespace quellbox
