#include "messages/Disposal.h"

#include "platform/RuntimeError.h"

#include <QLoggingCategory>

#include <algorithm>

namespace quellbox {

namespace {

Q_LOGGING_CATEGORY(logActions, "quellbox.actions")

constexpr int progressStep = 100;

void DisposeOfFile(FileSystem& files, qint16 action, const DisposalFolders& folders, const QString& key) {
    const QString path = folders.archive + key;
    if (action != Action::remove) {
        files.Move(path, folders.pickup + key);
    } else if (files.FileExists(path)) {
        files.Remove(path);
    }
}

} // namespace

DisposalResult DisposeOfMessages(FileSystem& files, qint16 action, const DisposalFolders& folders,
                                 const std::vector<int>& rows, MessageListModel& model,
                                 const std::function<void(int rowsLeft)>& showProgress) {
    DisposalResult result;
    if (action < Action::unblock || action > Action::unblockTolerated || rows.empty()) {
        return result;
    }
    for (const int row : rows) {
        const QString key = model.Row(row).key;
        try {
            DisposeOfFile(files, action, folders, key);
        } catch (const FileError& error) {
            result.failures.push_back({error.Path(), error.Reason()});
        } catch (const std::exception& error) {
            result.failures.push_back({folders.archive + key, QString::fromUtf8(error.what())});
        }
        ++result.rowsGone;
        const int rowsLeft = model.Count() - result.rowsGone;
        if (rowsLeft % progressStep == 0) {
            showProgress(rowsLeft);
        }
    }
    // The rows above the last one have gone as well, so what followed it is now that much further up.
    const int following = rows.back() - (result.rowsGone - 1);
    model.Remove(rows);
    result.nextRow = std::min(following, model.Count() - 1);
    return result;
}

void DropFailures(const std::vector<FileFailure>& failures) {
    for (const FileFailure& failure : failures) {
        qCWarning(logActions).noquote() << failure.path << failure.reason;
    }
}

} // namespace quellbox
