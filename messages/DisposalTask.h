#pragma once

#include "mail/PackedFile.h"
#include "messages/ActionRecord.h"
#include "messages/FileFailure.h"
#include "messages/KeptFolder.h"
#include "messages/MessageListModel.h"
#include "messages/Unblocking.h"
#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// What is done to the files of the selected messages. Other codes do nothing.
namespace Action {
constexpr qint16 unblock = 1;
constexpr qint16 remove = 2;
constexpr qint16 unblockTolerated = 3; ///< exactly as `unblock`
} // namespace Action

/// What became of the rows.
struct DisposalResult {
    int rowsGone = 0;
    int nextRow = -1; ///< the row to select: the one that followed the removed ones, or the last; -1 when none is left
    QString nextKey;  ///< its file name, by which it is found wherever sorting puts it
    std::vector<FileFailure> failures;

    /// Why nothing could be kept of what was to be deleted. No message was touched then, and the rows stay.
    std::optional<FileFailure> refused;
};

/// Deletes the files of selected messages or unblocks them, many at once beside the thread of this
/// object, and then removes the rows. A failure never stops it, and the row goes all the same: the list shows what the
/// user wants, the next full refresh what is still there. Nothing else may remove or move rows meanwhile, or take them
/// out of sight.
///
/// What is deleted can be kept in a folder, by one call for each message, a read-only one too: that can be undone.
class DisposalTask : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    DisposalTask(FileSystem& files, WorkPool& pool, MessageListModel& model);

    /// Begins with `rows`, which are in sight and ascending. What is deleted goes into `kept` where that is given. Does
    /// nothing while rows are disposed of.
    void Start(qint16 action, const DisposalFolders& folders, std::vector<int> rows,
               std::shared_ptr<KeptFolder> kept = nullptr, std::shared_ptr<ActionRecord> record = nullptr);

    /// No further message is touched. The rows of those that have begun go when their calls have ended.
    void Cancel();

    /// Ends before this returns. What is under way goes on, but its rows stay until the next refresh; those of messages
    /// that have been dealt with go.
    void GiveUp();

    bool IsRunning() const { return isRunning_; }
    bool IsCancelled() const { return isRunning_ && work_->IsCancelled(); }

Q_SIGNALS:
    /// So many messages have been dealt with.
    void Progress(int done);

    /// The number of rows that will be left of all is a multiple of 100.
    void RowsLeft(int count);

    /// The rows have gone; other ones may be disposed of.
    void Ended(const DisposalResult& result);

private:
    using Failure = std::optional<FileFailure>;

    /// What is done to each file.
    struct Order {
        qint16 action = 0;
        DisposalFolders folders;
        std::shared_ptr<KeptFolder> kept;
        std::shared_ptr<ActionRecord> record;
        std::shared_ptr<const std::vector<MessageRow>> messages;
    };

    static QString DisposeOfFile(FileSystem& files, const Order& order, const QString& key);
    static Failure TryToDispose(FileSystem& files, const Order& order, const QString& key, QString& answer);
    static Failure Dispose(FileSystem& files, const Order& order, const MessageRow& message);
    std::vector<MessageRow> MessagesAt(const std::vector<int>& rows);
    void Take(size_t item, Failure failure);
    void End();

    FileSystem& files_;
    WorkPool& pool_;
    MessageListModel& model_;
    std::optional<OrderedWork<Failure>> work_;
    std::shared_ptr<const KeptFolder> kept_;
    std::vector<int> places_; // of the messages: a look at another one may bring that into sight among them
    std::vector<int> gone_;   // places, too
    DisposalResult result_;
    bool isRunning_ = false;
};

} // namespace quellbox
