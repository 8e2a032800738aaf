#pragma once

#include <QString>

namespace quellbox {

/// Why a message was not loaded. The values are the error codes that readers of messages return; 0 is success.
enum class LoadError {
    None = 0,
    Unreadable = 1,    ///< the file system refused; the text is the file system's
    Empty = 2,         ///< not a single byte
    NoHeaderField = 3, ///< no header block with at least one field
    HeaderTooLarge = 4,
    TooManyFields = 5,
    TooManyParts = 6,
    TooDeep = 7,
    Damaged = 8, ///< what is packed cannot be unpacked, at least not all of it
    UnpackedTooLarge = 9,
};

/// Plain text for the user; empty for None, and for Unreadable the general sentence.
QString LoadErrorText(LoadError error);

} // namespace quellbox
