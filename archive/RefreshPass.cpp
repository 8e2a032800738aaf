#include "archive/RefreshPass.h"

#include "archive/DayWindow.h"
#include "platform/RuntimeError.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QtConcurrentRun>

#include <algorithm>
#include <limits>
#include <tuple>

namespace quellbox {

namespace {

Q_LOGGING_CATEGORY(logRefresh, "quellbox.refresh")

constexpr qint64 eventBudgetMs = 16;
constexpr std::chrono::milliseconds longestWait{8};

// Each batch of rows makes the views lay themselves out, so the first comes soon and later ones ever more rarely.
constexpr qint64 firstFlushMs = 60;
constexpr qint64 rarestFlushMs = 1000;

/// Removes what an incremental pass does not add: everything up to `lastAdded`, or everything when that has vanished.
/// Where it was touched since it was listed, and so has moved back in the order, what lies behind its former place is
/// new as well.
void KeepWhatFollows(std::vector<FileEntry>& files, const QString& lastAdded, const Arrival& asListed) {
    const auto last = std::find_if(files.begin(), files.end(),
                                   [&lastAdded](const FileEntry& file) { return file.name == lastAdded; });
    if (last == files.end()) {
        files.clear();
        return;
    }
    const bool wasTouched = asListed.name == lastAdded && last->status.modifiedNs > asListed.modifiedNs;
    if (!wasTouched) {
        files.erase(files.begin(), last + 1);
        return;
    }
    std::erase_if(files, [&](const FileEntry& file) {
        const auto place = std::tie(file.status.modifiedNs, file.name);
        return file.name == lastAdded || place < std::tie(asListed.modifiedNs, asListed.name);
    });
}

} // namespace

struct RefreshPass::Listing {
    bool exists = false;
    QString error; // why the folder cannot be read
    std::vector<FileEntry> files;
};

RefreshPass::RefreshPass(RefreshPorts ports, AppState& state, MessageListModel& model, StatusPanels& panels,
                         RefreshCallbacks callbacks)
    : ports_(ports), state_(state), model_(model), panels_(panels), callbacks_(std::move(callbacks)),
      whitelist_(LoadWhitelist(ports.store)) {}

RefreshOutcome RefreshPass::Run(bool markNew, bool bulk) {
    sinceEvents_.start();
    panels_.SetCount({});
    const QString archive = state_.ArchiveDir;
    Listing listing = ReadListing();
    if (cancelled_) {
        return RefreshOutcome::Cancelled;
    }
    if (!listing.exists) {
        callbacks_.clearView();
        panels_.SetInfo(QCoreApplication::translate("quellbox", "Archive %1 not found").arg(archive.toUpper()));
        return RefreshOutcome::ArchiveMissing;
    }
    if (!listing.error.isEmpty()) {
        panels_.SetInfo(QCoreApplication::translate("quellbox", "Archive cannot be read: %1").arg(listing.error));
        return RefreshOutcome::Unreadable;
    }
    if (listing.files.size() >= std::numeric_limits<qint16>::max()) {
        throw OverflowError(
            QCoreApplication::translate("quellbox", "Overflow: the archive %1 holds %2 files, and at most 32,766 can "
                                                    "be listed. Move or delete some of them, then refresh.")
                .arg(archive)
                .arg(listing.files.size()));
    }
    maximum_ = static_cast<int>(listing.files.size()) + 1;
    callbacks_.enterBusy(maximum_);
    std::vector<FileEntry> files = FilesToAdd(std::move(listing.files));
    if (state_.LastAddedFile.isEmpty()) {
        model_.Clear();
    }
    HeaderReadAhead rows(ports_.files, archive, std::move(files), bulk, ports_.pool);
    AddRows(rows, markNew);
    return cancelled_ ? RefreshOutcome::Cancelled : RefreshOutcome::Completed;
}

RefreshPass::Listing RefreshPass::ReadListing() {
    // A share that does not answer must not freeze the window, so another thread waits for it.
    const auto read = [&files = ports_.files, &pool = ports_.pool, folder = state_.ArchiveDir] {
        Listing listing;
        listing.exists = files.FolderExists(folder);
        if (!listing.exists) {
            return listing;
        }
        try {
            listing.files = FilesByArrival(files, folder, pool);
        } catch (const FileError& error) {
            listing.error = error.Text();
        }
        return listing;
    };
    QFuture<Listing> future = QtConcurrent::run(&ports_.pool, read);
    while (!future.isFinished() && !cancelled_) {
        QThread::usleep(500);
        RunEventsWhenDue();
    }
    return cancelled_ ? Listing() : future.takeResult();
}

std::vector<FileEntry> RefreshPass::FilesToAdd(std::vector<FileEntry> files) const {
    if (!state_.LastAddedFile.isEmpty()) {
        KeepWhatFollows(files, state_.LastAddedFile, state_.LastArrival);
        // A listed file that was written to again comes later in the order, and is still one row.
        std::erase_if(files, [this](const FileEntry& file) { return model_.RowOfKey(file.name) >= 0; });
    }
    const QDate today = ports_.clock.Now().date();
    std::erase_if(files, [this, today](const FileEntry& file) {
        return !IsRecentFile(state_.ActiveFilterDays, file.status.modifiedNs, today);
    });
    return files;
}

void RefreshPass::AddRows(HeaderReadAhead& rows, bool markNew) {
    sinceFlush_.start();
    flushAfterMs_ = firstFlushMs;
    while (!rows.AtEnd() && !cancelled_) {
        if (rows.WaitForNext(longestWait)) {
            AddRow(rows.TakeNext(), markNew);
        }
        RunEventsWhenDue();
    }
    Flush();
}

void RefreshPass::AddRow(ReadRow read, bool markNew) {
    MessageRow& row = read.row;
    row.unread = markNew;
    state_.LastAddedFile = row.key;
    state_.LastArrival = {row.key, read.modifiedNs};
    if (read.loaded) {
        state_.strXSender = row.tag;
    }
    lastMessageWasRead_ = read.loaded;
    const int index = model_.Count() + static_cast<int>(batch_.size()) + 1;
    if (index % 10 == 0) {
        panels_.SetCount(QString::number(index));
        callbacks_.showProgress(std::min(index, maximum_));
    }
    if (state_.TolerationLevel == 2 && Tolerate(row)) {
        return;
    }
    batch_.push_back(std::move(row));
}

bool RefreshPass::Tolerate(const MessageRow& row) {
    if (!whitelist_.TolerableSender(row.tag.toLower())) {
        return false;
    }
    try {
        ports_.files.Move(state_.ArchiveDir + row.key, state_.PickupDir + row.key);
    } catch (const FileError& error) {
        qCWarning(logRefresh).noquote() << "A tolerated message stays in the archive:" << error.Text();
        return false;
    }
    return true;
}

void RefreshPass::Flush() {
    model_.Append(std::move(batch_));
    batch_.clear();
    sinceFlush_.start();
    flushAfterMs_ = std::min(flushAfterMs_ * 2, rarestFlushMs);
}

void RefreshPass::RunEventsWhenDue() {
    if (sinceEvents_.elapsed() < eventBudgetMs) {
        return;
    }
    if (sinceFlush_.isValid() && sinceFlush_.elapsed() >= flushAfterMs_) {
        Flush();
    }
    callbacks_.runEvents();
    sinceEvents_.start();
}

} // namespace quellbox
