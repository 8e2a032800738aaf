#pragma once

#include "mail/ServerProfile.h"
#include "messages/MessageRow.h"
#include "platform/FolderListing.h"

namespace quellbox {

/// A row made from a message file, and whether its headers were read.
struct ReadRow {
    MessageRow row;
    FileStatus status;     ///< of the file, as it was listed
    bool loaded = false;   ///< the message has header fields; else the row shows why not
    bool isPacked = false; ///< the file was opened and is packed
    bool canHeal = false;  ///< not loaded because the file could not be read now, whatever it holds
};

/// Makes the row of a message file, as the profile reads its header fields. In bulk mode the file is not opened, and
/// the subject is the file name. What goes wrong is the subject of the row. May be called from several threads at once.
ReadRow ReadMessageRow(const FolderReader& folder, const FileEntry& entry, bool bulk, const ServerProfile& profile);

} // namespace quellbox
