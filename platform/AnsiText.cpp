#include "platform/AnsiText.h"

#include <QList>

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

/// The characters of the bytes from 0x80 to 0x9F; 0 where there is none.
constexpr std::array<char32_t, 32> middle = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                             0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char Windows1252Byte(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        return static_cast<char>(character);
    }
    const auto* const found = std::find(middle.begin(), middle.end(), character);
    return found == middle.end() ? '?' : static_cast<char>(0x80 + (found - middle.begin()));
}

} // namespace

QByteArray Windows1252Text(const QString& text) {
    QByteArray bytes;
    for (const char32_t character : text.toUcs4()) {
        bytes += Windows1252Byte(character);
    }
    return bytes;
}

#ifdef _WIN32

QByteArray AnsiText(const QString& text) {
    return text.toLocal8Bit();
}

#else

QByteArray AnsiText(const QString& text) {
    return Windows1252Text(text);
}

#endif

} // namespace quellbox
