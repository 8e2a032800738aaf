#pragma once

#include <QString>

namespace quellbox {

/// Makes one line of decoded message text fit for a list cell or another label: white space and line or paragraph
/// separators become plain spaces, other control characters and the characters that embed, override or isolate a
/// writing direction (Unicode Bidi_Control, without the harmless marks) are removed, and the ends are trimmed. What
/// a sender cannot fake then is the order in which the user reads the characters of a name.
QString CleanseForDisplay(QString text);

/// The same for the title of a window, in which the mark "[*]" stands for itself only when it is doubled.
QString WindowTitle(const QString& text);

} // namespace quellbox
