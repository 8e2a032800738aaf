#pragma once

#include "samples/Random.h"

#include <QByteArray>

namespace quellbox::samples {

/// A short letter in a character set other than ASCII.
struct ForeignText {
    const char* charset;
    QByteArray subject;
    QByteArray sender;
    QByteArray body;
};

QByteArray SpamSubject(Random& random);
QByteArray WantedSubject(Random& random);
ForeignText Foreign(Random& random);

/// One sentence of advertising, or of a business letter.
QByteArray Sentence(Random& random, bool spam);

/// Sentences in paragraphs until `size` bytes are reached; lines end in CRLF.
QByteArray Paragraphs(Random& random, bool spam, qsizetype size);

/// The same as an HTML page.
QByteArray HtmlPage(Random& random, bool spam, qsizetype size);

/// A person's name, in ASCII.
QByteArray PersonName(Random& random);

/// Addresses; all of their domains are reserved for examples and tests.
QByteArray SpamSender(Random& random);
QByteArray WantedSender(Random& random);
QByteArray Recipient(Random& random);

/// The name of an attached file, in UTF-8 or in ASCII.
QByteArray ForeignFileName(Random& random);
QByteArray FileName(Random& random);

} // namespace quellbox::samples
