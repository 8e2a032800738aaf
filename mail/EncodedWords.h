#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>
#include <QString>

namespace quellbox {

/// The index of the first encoded word, or of what looks like one, from an index on; -1 when there is none.
qsizetype FindEncodedWord(QByteArrayView value, qsizetype from = 0);

/// Decodes the encoded words of an unfolded header value (RFC 2047); what stands between them is undeclared text,
/// and so is a word in a character set that nobody knows.
/// Lenient where senders are careless: encoded words count anywhere in a value, also inside a quoted string and next
/// to other characters, and may hold spaces. Adjacent words of one character set are joined before conversion, because
/// senders split characters between them. A word of unknown encoding stays as written.
QString DecodeEncodedWords(QByteArrayView value, const CharsetEvidence& evidence);

} // namespace quellbox
