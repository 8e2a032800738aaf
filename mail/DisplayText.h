#pragma once

#include <QString>

namespace quellbox {

/// Makes one line of decoded message text fit for a list cell or another label: white space and line or paragraph
/// separators become plain spaces, other control characters and the characters that embed, override or isolate a
/// writing direction (Unicode Bidi_Control, without the harmless marks) are removed, and the ends are trimmed. What
/// a sender cannot fake then is the order in which the user reads the characters of a name.
QString CleanseForDisplay(QString text);

/// The same for a text of several lines: line ends become LF and stay, as tabs do, and nothing is trimmed.
QString CleanseLines(QString text);

/// Whether a widget or a terminal begins a new line there: LF, VT, FF, CR, NEL, and the separators of Unicode.
constexpr bool IsLineEnd(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= u'\n' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

/// Whether nothing is seen of a character, as of the joiners that fill the preview of a mailbox.
constexpr bool IsUnseen(QChar character) {
    const char16_t unit = character.unicode();
    return unit == 0x00AD || unit == 0x034F || unit == 0x061C || unit == 0x180E || (unit >= 0x200B && unit <= 0x200F) ||
           (unit >= 0x2060 && unit <= 0x2064) || unit == 0x2800 || unit == 0x3164 || unit == 0xFEFF;
}

/// The text of a message with a backslash before each "[", for views in which the program says something in brackets.
QString EscapeBrackets(const QString& text);

/// A cleansed text for the title of a window, in which the mark "[*]" stands for itself only when it is doubled.
QString WindowTitle(const QString& text);

/// So many characters of a text are shown at most; an ellipsis stands for the rest.
constexpr qsizetype longestShownText = 1000;

/// What is shown of a text that may be a megabyte long: widgets lay out what they get at every paint.
QString ShownText(const QString& text);

/// A text with CRLF line ends for a label or a message box, which take a line feed alone for the end of a line.
QString WithLineFeeds(QString text);

} // namespace quellbox
