#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Decodes the encoded words of an unfolded header value (RFC 2047); what stands between them is undeclared text.
/// Lenient where senders are careless: encoded words count anywhere in a value, also inside a quoted string and next
/// to other characters, and may hold spaces. Adjacent words of one character set are joined before conversion, because
/// senders split characters between them. A word of unknown encoding stays as written.
QString DecodeEncodedWords(QByteArrayView value);

} // namespace quellbox
