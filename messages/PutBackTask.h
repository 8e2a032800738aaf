#pragma once

#include "messages/ActionRecord.h"
#include "messages/FileFailure.h"
#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// A file that is to go back to where it was.
struct PutBack {
    QString from;
    QString to;
    MessageRow message{}; ///< what is known of it, for the record
    qint64 entry = 0;     ///< as HandledMessage has it
};

/// What became of it. Neither done nor failed is what was cancelled or given up before.
struct PutBackFate {
    bool isDone = false;
    std::optional<FileFailure> failure; ///< Missing: it is no longer there; Exists: its name is taken
};

struct PutBackResult {
    std::vector<PutBackFate> fates; ///< one for each file, in their order
};

/// Moves files back to where they were, many at once beside the thread of this object, and never overwrites. A failure
/// never stops it.
class PutBackTask : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    PutBackTask(FileSystem& files, WorkPool& pool);

    /// Begins with `items`. Afterwards the folders in `emptied` are removed, in their order and as far as they are
    /// empty then; what goes wrong with them is written to the log. Does nothing while files are put back.
    /// What is done is written into `record` where that is given.
    void Start(std::vector<PutBack> items, QStringList emptied = {}, std::shared_ptr<ActionRecord> record = nullptr);

    /// No further file is touched. It ends when the calls that have begun have ended; no folder is removed.
    void Cancel();

    /// Ends before this returns. What is under way goes on.
    void GiveUp();

    bool IsRunning() const { return isRunning_; }
    bool IsCancelled() const { return isRunning_ && isCancelled_; }

Q_SIGNALS:
    /// So many files have been dealt with.
    void Progress(int done);

    void Ended(const PutBackResult& result);

private:
    using Items = std::vector<PutBack>;

    static PutBackFate Move(FileSystem& files, const PutBack& item, ActionRecord* record);
    static PutBackFate TryToMove(FileSystem& files, const PutBack& item);
    static void RemoveFolders(FileSystem& files, const QStringList& folders);
    void MoveFiles();
    void Take(size_t item, PutBackFate fate);
    void EndMoving();
    void End();

    FileSystem& files_;
    WorkPool& pool_;
    std::shared_ptr<const Items> items_;
    QStringList emptied_;
    std::shared_ptr<ActionRecord> record_;
    std::optional<OrderedWork<bool>> preparing_;
    std::optional<OrderedWork<PutBackFate>> moving_;
    std::optional<OrderedWork<bool>> removing_;
    PutBackResult result_;
    int done_ = 0;
    bool isRunning_ = false;
    bool isCancelled_ = false;
};

} // namespace quellbox
