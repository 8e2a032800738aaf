#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace quellbox {

/// The character sets that a header block declares: the one of its Content-Type field, and those of encoded words; each
/// once, in lower case, in the order of the block, and no more of them than real mail has.
QByteArrayList CharsetsOfHeaderBlock(QByteArrayView block);

/// Adds a character set, in lower case, to those that are declared, unless it says nothing about single bytes beyond
/// ASCII (other bytes than those of UTF-16 may be read as UTF-16), is there already, or there are enough.
void AddCharset(const QByteArray& charset, QByteArrayList& charsets);

/// Whether mailers write that character set, in lower case, without having been asked: it then counts only where the
/// text agrees.
bool IsNamedWithoutThought(const QByteArray& charset);

} // namespace quellbox
