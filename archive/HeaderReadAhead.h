#pragma once

#include "messages/MessageRow.h"
#include "platform/FolderListing.h"

#include <QThreadPool>

#include <chrono>
#include <memory>
#include <vector>

namespace quellbox {

/// A row made from a message file, and whether its headers were read.
struct ReadRow {
    MessageRow row;
    qint64 modifiedNs = 0; ///< of the file, as in FileStatus
    bool loaded = false;
};

/// Makes the rows of message files ahead of their use: a bounded number of readers works through the files in order,
/// so that the latency of a share is waited for many times at once, while the consumer takes the rows in order. How
/// many readers depends on how long the first files take.
///
/// Destruction does not wait for a reader that is stuck in a slow call; the file system must therefore outlive the
/// thread pool.
class HeaderReadAhead {
public:
    /// `folder` ends with a separator. In bulk mode no file is opened, and the subject is the file name.
    HeaderReadAhead(const FileSystem& files, const QString& folder, std::vector<FileEntry> entries, bool bulk,
                    QThreadPool& pool);
    ~HeaderReadAhead();
    HeaderReadAhead(const HeaderReadAhead&) = delete;
    HeaderReadAhead& operator=(const HeaderReadAhead&) = delete;

    /// Waits until the row of the next file is there, but no longer than `limit`.
    bool WaitForNext(std::chrono::milliseconds limit);

    /// Hands over the next row; to be called after WaitForNext() said that it is there.
    ReadRow TakeNext();

    bool AtEnd() const;

private:
    struct Shared;

    std::shared_ptr<Shared> shared_;
    size_t next_ = 0;
};

} // namespace quellbox
