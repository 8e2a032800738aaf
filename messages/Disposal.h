#pragma once

#include "messages/MessageListModel.h"
#include "platform/FileSystem.h"

#include <functional>
#include <vector>

namespace quellbox {

/// What is done to the files of the selected messages. Other codes do nothing.
namespace Action {
constexpr qint16 unblock = 1;
constexpr qint16 remove = 2;
constexpr qint16 unblockTolerated = 3; ///< exactly as `unblock`
} // namespace Action

/// A call of the file system that failed.
struct FileFailure {
    QString path;
    QString reason;
};

/// The two folders, each ending with a separator.
struct DisposalFolders {
    QString archive;
    QString pickup;
};

/// What became of the rows.
struct DisposalResult {
    int rowsGone = 0;
    int nextRow = -1; ///< the row to select: the one that followed the removed ones, or the last; -1 when none is left
    std::vector<FileFailure> failures;
};

/// Deletes the files of `rows` (ascending) or moves them into the pickup folder, in list order, and then removes the
/// rows. A failure never stops it, and the row goes all the same: the list shows what the user wants, the next full
/// refresh what is still there. `showProgress` is called whenever the number of rows left is a multiple of 100.
[[nodiscard]] DisposalResult DisposeOfMessages(FileSystem& files, qint16 action, const DisposalFolders& folders,
                                               const std::vector<int>& rows, MessageListModel& model,
                                               const std::function<void(int rowsLeft)>& showProgress);

/// Writes failures that the user is not told of to the log.
void DropFailures(const std::vector<FileFailure>& failures);

} // namespace quellbox
