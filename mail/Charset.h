#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Decodes bytes whose character set nobody declared: UTF-8 when they are valid UTF-8, else Windows-1252.
QString DecodeUndeclared(QByteArrayView bytes);

/// Decodes bytes of a named character set (a MIME name, any case). What is invalid in that character set becomes
/// U+FFFD; bytes of an unknown one are decoded as undeclared. Senders often name the small set and send the large one
/// (ISO-8859-1 for Windows-1252, GB2312 for GB18030), so the larger is used throughout. May be called from several
/// threads at once: each keeps its own conversion handles.
QString DecodeCharset(QByteArrayView bytes, QByteArrayView charset);

} // namespace quellbox
