#pragma once

#include "platform/FolderListing.h"
#include "tests/support/RunUntil.h"

#include <optional>

namespace quellbox {

/// Lists a folder to the end.
inline Listing ListedFolder(const FileSystem& files, const QString& folder, WorkPool& pool) {
    std::optional<Listing> listed;
    FolderListing listing(files, pool, folder, [&listed](Listing found) { listed = std::move(found); });
    listing.Start();
    RunUntil([&listed] { return listed.has_value(); });
    return listed.value_or(Listing());
}

} // namespace quellbox
