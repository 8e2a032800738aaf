#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/MessagePlaces.h"
#include "platform/OrderedWork.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace quellbox {

/// A regular file of a folder.
struct FileEntry {
    QString name; ///< without the folder
    FileStatus status;
};

/// Whether a folder could be listed.
struct FolderState {
    bool exists = false;
    bool isUnanswered = false;                  ///< the server of the folder does not answer; there is an error then
    QString error;                              ///< why the folder cannot be read; empty when it can
    bool isMountPoint = false;                  ///< something is mounted at the folder
    std::shared_ptr<const FolderReader> reader; ///< of its files; null where there is an error

    /// Opens the folder and then calls `list`, which lists it. A FileError, also of `list`, becomes the state.
    void Open(const FileSystem& files, const Folder& folder, const std::function<void()>& list);

    /// What was thrown has ended the listing.
    void SetFailure(const std::exception_ptr& thrown);
};

/// What a folder was found to hold.
struct Listing : FolderState {
    QStringList dotFolders;       ///< names with a dot before them, of what is no file as far as the folder reports
    std::vector<FileEntry> files; ///< in order of arrival: time of last modification, then name
};

/// Lists the regular files of a folder, beside the thread that wants them. A file that vanishes meanwhile is left out.
/// Where the folder does not report size and time, many threads call Status() at once.
class FolderListing {
public:
    /// Calls `done` once, on the thread that made this object and runs an event loop; it may destroy this object.
    /// Destruction before that drops the listing without waiting for it.
    FolderListing(const FileSystem& files, WorkPool& pool, const Folder& folder, std::function<void(Listing)> done);

    /// The same for the files of an archive that are in the places of messages.
    FolderListing(const FileSystem& files, WorkPool& pool, const Folder& archive, MessagePlaces places,
                  std::function<void(Listing)> done);

    void Start();

private:
    using Entries = std::vector<FolderEntry>;

    /// The folder as it was listed, before the missing sizes and times are read.
    struct Found {
        Listing listing;
        Entries complete;   ///< files whose size and time the folder has reported
        Entries incomplete; ///< those whose size and time are still to be read
    };

    static Found Read(const FileSystem& files, const Folder& folder, const MessagePlaces& places);
    static std::vector<FileEntry> InOrderOfArrival(Found& found);
    void ReadStatuses();
    void Sort();
    void End(Listing listing);
    void Fail(const std::exception_ptr& thrown);

    const FileSystem& files_;
    WorkPool& pool_;
    const Folder folder_;
    const MessagePlaces places_;
    std::function<void(Listing)> done_;
    std::shared_ptr<Found> found_;
    std::optional<OrderedWork<std::shared_ptr<Found>>> reading_;
    std::optional<OrderedWork<std::optional<FileStatus>>> statuses_;
    std::optional<OrderedWork<std::vector<FileEntry>>> sorting_;
};

} // namespace quellbox
