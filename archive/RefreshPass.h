#pragma once

#include "archive/HeaderReadAhead.h"
#include "messages/MessageListModel.h"
#include "messages/StatusPanels.h"
#include "platform/Clock.h"
#include "platform/SettingsStore.h"
#include "settings/AppState.h"
#include "whitelist/WhitelistMatcher.h"

#include <QElapsedTimer>

#include <functional>

namespace quellbox {

/// What a pass needs of the outside.
struct RefreshPorts {
    FileSystem& files;
    const SettingsStore& store;
    const Clock& clock;
    QThreadPool& pool;
};

/// What a pass asks of the window while it runs.
struct RefreshCallbacks {
    std::function<void()> clearView;             ///< the archive is missing: empty the list and the contents panes
    std::function<void(int maximum)> enterBusy;  ///< the number of files is known
    std::function<void(int value)> showProgress; ///< rows so far, at most the maximum
    std::function<void()> runEvents;             ///< let pending events run
};

/// How a pass ended.
enum class RefreshOutcome { Completed, ArchiveMissing, Unreadable, Cancelled };

/// One pass over the archive directory that appends a row for every file that is to be listed, and moves the messages
/// of tolerated senders into the pickup directory. It runs on the interface thread and lets events run between files.
class RefreshPass {
public:
    RefreshPass(RefreshPorts ports, AppState& state, MessageListModel& model, StatusPanels& panels,
                RefreshCallbacks callbacks);

    /// An empty `LastAddedFile` makes a full pass, which empties the list first. `markNew` adds rows as unread; in bulk
    /// mode no message is opened. Throws OverflowError for more files than a 16-bit count holds.
    RefreshOutcome Run(bool markNew, bool bulk);

    /// Ends the pass at the next file; rows added so far stay.
    void Cancel() { cancelled_ = true; }

    /// True when the last message of the pass was read.
    bool LastMessageWasRead() const { return lastMessageWasRead_; }

private:
    struct Listing;

    Listing ReadListing();
    std::vector<FileEntry> FilesToAdd(std::vector<FileEntry> files) const;
    void AddRows(HeaderReadAhead& rows, bool markNew);
    void AddRow(ReadRow read, bool markNew);
    bool Tolerate(const MessageRow& row);
    void Flush();
    void RunEventsWhenDue();

    RefreshPorts ports_;
    AppState& state_;
    MessageListModel& model_;
    StatusPanels& panels_;
    RefreshCallbacks callbacks_;
    WhitelistMatcher whitelist_;
    std::vector<MessageRow> batch_;
    QElapsedTimer sinceEvents_;
    QElapsedTimer sinceFlush_;
    qint64 flushAfterMs_ = 0;
    int maximum_ = 0;
    bool cancelled_ = false;
    bool lastMessageWasRead_ = false;
};

} // namespace quellbox
