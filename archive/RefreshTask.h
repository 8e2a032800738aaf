#pragma once

#include "archive/ListingRefusal.h"
#include "archive/MessageReading.h"
#include "messages/ActionRecord.h"
#include "messages/FileFailure.h"
#include "messages/MessageListModel.h"
#include "messages/Unblocking.h"
#include "platform/Clock.h"
#include "platform/OrderedWork.h"
#include "platform/SettingsStore.h"
#include "settings/AppState.h"
#include "whitelist/WhitelistMatcher.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>

namespace quellbox {

/// What a refresh needs of the outside.
struct RefreshPorts {
    FileSystem& files;
    const SettingsStore& store;
    const Clock& clock;
    WorkPool& pool;
};

/// How a refresh ended.
enum class RefreshOutcome {
    Completed,
    ArchiveMissing, ///< there is no such folder
    Unreadable,     ///< the folder cannot be listed
    TooMany,        ///< more files than a 16-bit count holds
    Cancelled       ///< the rows added so far stay
};

struct RefreshResult {
    RefreshOutcome outcome = RefreshOutcome::Completed;
    QString reason;                  ///< what to tell the user; empty when completed or cancelled
    bool lastMessageWasRead = false; ///< the last message that was opened has header fields
    bool cannotFollow = false;       ///< nothing could be added, because the file that was listed last has gone
    bool mayHoldKept = false; ///< the archive seems to have a folder with deleted messages; no call was made for that
    bool mayHoldSent = false; ///< the same with one of messages that are being sent
    std::vector<FileFailure> failures; ///< tolerated messages that could not be moved, and stay in the list
};

/// A refresh: appends a row for every file of the archive that is to be listed, and moves the messages of tolerated
/// senders into the pickup directory. The files are read beside the thread of this object, which adds the rows in
/// order of arrival.
///
/// A refresh that adds to the list also reads again what could not be read before.
class RefreshTask : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    RefreshTask(RefreshPorts ports, AppState& state, MessageListModel& model);

    /// An empty `LastAddedFile` makes it a full refresh, which empties the list first; another one adds what follows
    /// that file. `markNew` adds rows as unread; in bulk mode no message is opened. Does nothing while a refresh runs.
    /// What becomes of the messages of tolerated senders is written into `record` where that is given.
    /// They go on the way that is given, or else into the pickup directory.
    void Start(bool markNew, bool bulk, std::shared_ptr<ActionRecord> record = nullptr,
               std::shared_ptr<ReleaseWay> way = nullptr);

    /// Ends the refresh before this returns. Messages that are being moved just now do move.
    void Cancel();

    /// The same, but without the rows that are not in the list yet, which the next refresh finds again.
    void GiveWay();

    bool IsRunning() const { return isRunning_; }

    /// True while a refresh runs that adds to the list, and does not make it anew.
    bool IsIncremental() const { return isRunning_ && !isFull_; }

Q_SIGNALS:
    /// The files are counted, and some are to be read; `maximum` is one more than there are.
    void Counted(int maximum);

    /// So many rows there are, those that come into the list with the next batch included; every tenth is told.
    void Progress(int rows);

    /// The refresh has ended; another one may be started.
    void Ended(const RefreshResult& result);

private:
    /// What became of a file.
    struct Read {
        ReadRow row;
        bool wasMoved = false;
        std::optional<FileFailure> failure;
    };

    /// A row whose message could not be read.
    struct Failed {
        FileStatus status;
        bool canHeal = false;
    };

    void TakeListing(Listing listing);
    bool RefuseListing(const Listing& listing);
    std::vector<FileEntry> FilesToRead(std::vector<FileEntry> files);
    std::vector<FileEntry> FilesToReadAgain(const std::vector<FileEntry>& files);
    void ReadFiles(std::vector<FileEntry> files, std::shared_ptr<const FolderReader> folder);
    static void Release(FileSystem& files, const DisposalFolders& folders, ActionRecord* record, Read& read);
    static QString TryToRelease(FileSystem& files, const DisposalFolders& folders, Read& read);
    void EndReading(SeriesEnd how);
    void TakeRow(size_t item, Read read);
    void AddRow(Read read);
    void ReplaceRow(Read read);
    void NoteFailed(const ReadRow& row);
    void Flush();
    void End(RefreshOutcome outcome, const QString& reason = {});

    RefreshPorts ports_;
    AppState& state_;
    MessageListModel& model_;
    std::optional<FolderListing> listing_;
    std::optional<OrderedWork<Read>> reading_;
    std::shared_ptr<ActionRecord> record_;
    std::shared_ptr<ReleaseWay> way_;
    std::map<QString, Failed> failed_; // by file name
    ListingCheck check_;
    Folder archive_; // as it was when the refresh began
    RefreshResult result_;
    std::vector<MessageRow> batch_; // not yet in the list
    QTimer flush_;
    size_t nextToTake_ = 0;
    Arrival shownLast_;                      // the file up to which the list shows what has been read
    Arrival listedLast_;                     // of the present list, also after a full refresh was asked for
    const ServerProfile* profile_ = nullptr; // the same
    size_t again_ = 0;                       // so many of the files that are read have a row already
    bool markNew_ = false;
    bool bulk_ = false;
    bool isRunning_ = false;
    bool isFull_ = false;
};

} // namespace quellbox
