#pragma once

#include "mail/MessageOutline.h"

#include <QString>

namespace quellbox {

/// What opening an attachment can do, by its name and by its first bytes.
struct AttachmentNature {
    bool runs = false;        ///< it is a program, a script, or what starts one
    bool hasMacros = false;   ///< a document that may hold programs
    bool hidesEnding = false; ///< its name has another ending before the last one, or reverses the writing
    bool disagrees = false;   ///< declared type, name and first bytes cannot all be right
    QString holds;            ///< where they disagree: what it holds, for a reader
};

/// Judges an attachment.
AttachmentNature JudgeAttachment(const OutlinePart& part);

} // namespace quellbox
