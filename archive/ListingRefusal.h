#pragma once

#include "platform/FolderListing.h"

#include <QString>

#include <optional>

namespace quellbox {

/// Why there is nothing to list of an archive.
struct ListingRefusal {
    bool isMissing = false; ///< there is no such folder; else it cannot be read
    QString reason;         ///< what to tell the user
};

/// Judges whether an archive could be listed. Where a share was mounted, there is an empty folder when it no longer is,
/// which must not pass for an empty archive; so it remembers what it saw mounted.
class ListingCheck {
public:
    /// Empty where the archive, which was found to be as `state` says, could be listed.
    std::optional<ListingRefusal> Refusal(const Folder& archive, const FolderState& state);

private:
    bool IsNoLongerMounted(const Folder& archive, const FolderState& state);

    Folder mounted_; // the archive, if something was mounted there when it was listed
};

/// What to tell the user of an archive that cannot be read.
QString UnreadableArchive(const QString& error);

} // namespace quellbox
