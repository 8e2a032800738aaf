#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// The bytes of a message file as plain text: UTF-8 when they are valid UTF-8, else Windows-1252. A NUL becomes its
/// visible symbol, because it would cut off the text where it is copied.
QString RawText(const QByteArray& bytes);

/// How much of `text` to show next, from `position` on: about `wanted` characters, up to the end of a line where there
/// is one, else no more than 2048, and never between the halves of a line end or of a character.
qsizetype NextChunk(const QString& text, qsizetype position, qsizetype wanted);

} // namespace quellbox
