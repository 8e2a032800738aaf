#pragma once

#include "mail/CharsetEvidence.h"
#include "mail/LoadError.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace quellbox {

/// A header field as it stands in the message: what follows the colon is neither unfolded nor decoded.
struct RawField {
    QByteArray name;
    QByteArray value;
};

/// The fields of one header block, in the order of the file.
using RawFieldList = std::vector<RawField>;

/// The value of the first field of that name (any case), decoded for display; empty where there is none.
QString RawFieldText(const RawFieldList& fields, QByteArrayView name,
                     const CharsetEvidence& evidence = CharsetEvidence());

/// A piece of a message, as a reader meets it.
struct OutlinePart {
    enum class Kind {
        Head,      ///< an attached message begins; its pieces follow with a higher level
        Plain,     ///< text that is shown as it is
        Html,      ///< text that has to be made from HTML
        Attachment ///< anything else, and once more a text that has a name, for it can be saved and opened
    };

    Kind kind = Kind::Attachment;
    int level = 0;            ///< in how many attached messages it stands
    bool isShown = true;      ///< false for a text in the place of which another one is shown that says the same
    QByteArray type = {};     ///< the declared type in lower case, as in "image/png"
    QByteArray charset = {};  ///< the declared one of a text; may be empty
    QString fileName = {};    ///< as declared, not cleansed; empty where there is none
    QByteArray content = {};  ///< without its transfer encoding: all of a text, the first 64 KiB of an attachment
    qint64 size = 0;          ///< bytes of the whole content
    RawFieldList fields = {}; ///< of an attached message
    bool isBlank = false;     ///< a plain text that holds nothing but blanks
};

/// What a message holds, in the order in which a reader meets it.
struct MessageOutline {
    RawFieldList fields; ///< of the message, without those that describe its outermost part
    std::vector<OutlinePart> parts;
    CharsetEvidence evidence; ///< what header block and parts tell about the character sets of what declares none
    bool isCut = false;       ///< there is more, beyond the bounds on depth and on number
};

/// How many attached messages within another are taken apart; one more is an attachment.
inline constexpr int kMaximumAttachedLevels = 8;

/// Takes a message apart for a reader (RFC 2046): of alternatives the plain text is shown if it is not blank, else the
/// HTML; attached messages are taken apart as well. Deviant input never throws. `bytes` have to outlive the outline.
LoadError ReadOutline(const QByteArray& bytes, MessageOutline& outline);

} // namespace quellbox
