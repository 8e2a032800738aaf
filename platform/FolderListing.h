#pragma once

#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QString>

#include <vector>

namespace quellbox {

/// A regular file of a folder.
struct FileEntry {
    QString name; ///< without the folder
    FileStatus status;
};

/// What a folder was found to hold.
struct Listing {
    bool exists = false;
    QString error;                              ///< why the folder cannot be read; empty when it can
    std::vector<FileEntry> files;               ///< in order of arrival: time of last modification, then name
    std::shared_ptr<const FolderReader> reader; ///< of these files; null where there is an error
};

/// Lists the regular files of a folder, beside the thread that wants them. A file that vanishes meanwhile is left out.
/// The files of which the folder does not tell size and time are looked at by many threads at once.
class FolderListing {
public:
    /// Calls `done` once, on the thread that made this object and runs an event loop; it may destroy this object.
    /// Destruction before that drops the listing without waiting for it. `folder` ends with a separator.
    FolderListing(const FileSystem& files, WorkPool& pool, const QString& folder, std::function<void(Listing)> done);

    void Start();

private:
    using Entries = std::vector<FolderEntry>;

    /// The folder as it was listed, of which the files are still to be looked at.
    struct Found {
        Listing listing;
        Entries told;   ///< files of which the folder told everything
        Entries untold; ///< those that are to be looked at
    };

    static Found Read(const FileSystem& files, const QString& folder);
    static std::vector<FileEntry> InOrderOfArrival(Found& found);
    void LookAtFiles();
    void Sort();
    void End(Listing listing);
    void Fail(const std::exception_ptr& thrown);

    const FileSystem& files_;
    WorkPool& pool_;
    const QString folder_;
    std::function<void(Listing)> done_;
    std::shared_ptr<Found> found_;
    std::optional<OrderedWork<std::shared_ptr<Found>>> reading_;
    std::optional<OrderedWork<std::optional<FileStatus>>> looking_;
    std::optional<OrderedWork<std::vector<FileEntry>>> sorting_;
};

} // namespace quellbox
