#pragma once

#include <QStringView>

namespace quellbox {

/// Languages in Latin letters that share a family of character sets.
enum class LatinGroup {
    Western,         ///< those of Windows-1252, without Icelandic
    Icelandic,       ///< the same character set; its letters are where Turkish has its own
    CentralEuropean, ///< those of Windows-1250
    Turkish,         ///< those of Windows-1254
    Baltic           ///< those of Windows-1257
};

/// How a reading of bytes, in one of the character sets that they may be in, looks to who knows the alphabets.
struct ReadingCheck {
    int looked = 0; ///< characters that are not ASCII
    int odd = 0;    ///< those that no text in these languages has there

    /// Nothing odd at all.
    bool IsFlawless() const { return odd == 0; }

    /// Few oddities, as names from abroad are in a longer text.
    bool IsFair() const { return odd * 12 <= looked; }
};

/// Counts letters that are not in the alphabet of the one language of the group which fits best, and signs in places
/// where nobody writes them, such as a superscript between two letters.
ReadingCheck CheckLatin(QStringView text, LatinGroup group);

} // namespace quellbox
