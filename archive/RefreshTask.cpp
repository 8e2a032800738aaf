#include "archive/RefreshTask.h"

#include "archive/DayWindow.h"
#include "delivery/SendingFolder.h"
#include "messages/KeptFolder.h"
#include "platform/RuntimeError.h"
#include "settings/ChosenProfile.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <limits>
#include <tuple>

namespace quellbox {

namespace {

// Each batch of rows makes the views lay themselves out, so the first comes soon and later ones ever more rarely.
constexpr int firstFlushMs = 60;
constexpr int rarestFlushMs = 1000;

// While a look for new messages may still give way, it shows none.
constexpr int firstFlushOfNewMs = 150;

/// Removes what an incremental refresh does not add: everything up to `lastAdded`, or everything when that has
/// vanished; the answer is then false. Where it was touched since it was listed, and so has moved back in the order,
/// what lies behind its former place is new as well.
template <class IsSame>
bool KeepWhatFollows(std::vector<FileEntry>& files, const QString& lastAdded, const Arrival& asListed, IsSame isSame) {
    const auto last =
        std::find_if(files.begin(), files.end(), [&](const FileEntry& file) { return isSame(file.name, lastAdded); });
    if (last == files.end()) {
        files.clear();
        return false;
    }
    const bool wasTouched = isSame(asListed.name, lastAdded) && last->status.modifiedNs > asListed.modifiedNs;
    if (!wasTouched) {
        files.erase(files.begin(), last + 1);
        return true;
    }
    std::erase_if(files, [&](const FileEntry& file) {
        const auto place = std::tie(file.status.modifiedNs, file.name);
        return isSame(file.name, lastAdded) || place < std::tie(asListed.modifiedNs, asListed.name);
    });
    return true;
}

} // namespace

RefreshTask::RefreshTask(RefreshPorts ports, AppState& state, MessageListModel& model)
    : ports_(ports), state_(state), model_(model) {
    flush_.setSingleShot(true);
    flush_.callOnTimeout([this] { Flush(); });
}

void RefreshTask::Start(bool markNew, bool bulk, std::shared_ptr<ActionRecord> record,
                        std::shared_ptr<ReleaseWay> way) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isFull_ = state_.LastAddedFile.isEmpty();
    if (!isFull_) {
        listedLast_ = state_.LastArrival;
    }
    shownLast_ = {state_.LastAddedFile, state_.LastArrival.modifiedNs};
    markNew_ = markNew;
    bulk_ = bulk;
    record_ = std::move(record);
    way_ = std::move(way);
    archive_ = state_.ArchiveDir;
    result_ = {};
    again_ = 0;
    reading_.reset();
    flush_.setInterval(isFull_ ? firstFlushMs : firstFlushOfNewMs);
    listing_.emplace(ports_.files, ports_.pool, archive_, ChosenProfile(state_).places,
                     [this](Listing listing) { TakeListing(std::move(listing)); });
    listing_->Start();
}

void RefreshTask::Cancel() {
    if (!isRunning_) {
        return;
    }
    listing_.reset();
    if (isFull_ && !reading_ && profile_ == &ChosenProfile(state_)) {
        // The list is still the one before, so what follows it is known. That of another server is made anew.
        state_.LastAddedFile = model_.TotalCount() > 0 ? listedLast_.name : QString();
        state_.LastArrival = listedLast_;
    }
    if (reading_) {
        reading_->GiveUp();
    } else {
        End(RefreshOutcome::Cancelled);
    }
}

// Rows that came into the list now would move others away from under the mouse pointer.
void RefreshTask::GiveWay() {
    if (!isRunning_) {
        return;
    }
    batch_.clear();
    if (!isFull_) {
        state_.LastAddedFile = shownLast_.name;
        state_.LastArrival = shownLast_;
    }
    Cancel();
}

void RefreshTask::TakeListing(Listing listing) {
    if (RefuseListing(listing)) {
        return;
    }
    result_.mayHoldKept = listing.dotFolders.contains(KeptFoldersName());
    result_.mayHoldSent = listing.dotFolders.contains(SendingFolderName());
    const int maximum = static_cast<int>(listing.files.size()) + 1;
    std::vector<FileEntry> files = FilesToRead(std::move(listing.files));
    if (isFull_) {
        model_.Clear();
        profile_ = &ChosenProfile(state_);
        model_.SetRatesByNumber(profile_->RatesByNumber());
        failed_.clear();
        listedLast_ = {};
    }
    if (isFull_ || !files.empty()) {
        Q_EMIT Counted(maximum);
    }
    ReadFiles(std::move(files), std::move(listing.reader));
}

/// Ends the refresh when there is nothing to list; the answer is then true.
bool RefreshTask::RefuseListing(const Listing& listing) {
    if (const std::optional<ListingRefusal> refusal = check_.Refusal(archive_, listing)) {
        End(refusal->isMissing ? RefreshOutcome::ArchiveMissing : RefreshOutcome::Unreadable, refusal->reason);
        return true;
    }
    if (listing.files.size() >= std::numeric_limits<qint16>::max()) {
        End(RefreshOutcome::TooMany,
            QCoreApplication::translate("quellbox", "Overflow: the archive %1 holds %2 files, and at most 32,766 can "
                                                    "be listed. Move or delete some of them, then refresh.")
                .arg(archive_.Text())
                .arg(listing.files.size()));
        return true;
    }
    return false;
}

// What is to be read again comes first.
std::vector<FileEntry> RefreshTask::FilesToRead(std::vector<FileEntry> files) {
    std::vector<FileEntry> toRead;
    if (!isFull_) {
        toRead = FilesToReadAgain(files);
        again_ = toRead.size();
        result_.cannotFollow = !KeepWhatFollows(
            files, state_.LastAddedFile, state_.LastArrival, [this](const QString& left, const QString& right) {
                return IsSameMessage(archive_, ChosenProfile(state_).places, left, right);
            });
        // A listed file that was written to again comes later in the order, and is still one row.
        std::erase_if(files, [this](const FileEntry& file) { return model_.Find(file.name) != nullptr; });
    }
    const QDate today = ports_.clock.Now().date();
    std::erase_if(files, [this, today](const FileEntry& file) {
        return !IsRecentFile(state_.ActiveFilterDays, file.status.modifiedNs, today);
    });
    toRead.insert(toRead.end(), std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
    return toRead;
}

// A message that was met half-written or locked is whole by now, it may be. One that simply is no message stays one
// until its file changes.
std::vector<FileEntry> RefreshTask::FilesToReadAgain(const std::vector<FileEntry>& files) {
    std::erase_if(failed_, [this](const auto& entry) { return model_.Find(entry.first) == nullptr; });
    std::vector<FileEntry> found;
    if (failed_.empty()) {
        return found;
    }
    std::copy_if(files.begin(), files.end(), std::back_inserter(found), [this](const FileEntry& file) {
        const auto failed = failed_.find(file.name);
        return failed != failed_.end() && (failed->second.canHeal || failed->second.status != file.status);
    });
    return found;
}

void RefreshTask::ReadFiles(std::vector<FileEntry> files, std::shared_ptr<const FolderReader> folder) {
    const size_t count = files.size();
    const auto entries = std::make_shared<const std::vector<FileEntry>>(std::move(files));
    const auto tolerated =
        state_.TolerationLevel == 2 ? std::make_shared<const WhitelistMatcher>(LoadWhitelist(ports_.store)) : nullptr;
    reading_.emplace(
        ports_.pool, count,
        [&fileSystem = ports_.files, folder = std::move(folder),
         folders = DisposalFolders{archive_, state_.PickupDir, way_}, bulk = bulk_, profile = &ChosenProfile(state_),
         entries, tolerated, record = record_](size_t item) {
            Read read{ReadMessageRow(*folder, (*entries)[item], bulk, *profile), false, std::nullopt};
            const bool maySend = !IsUncertainName((*entries)[item].name);
            if (tolerated && maySend && tolerated->TolerableSender(read.row.row.Tag().toLower())) {
                Release(fileSystem, folders, record.get(), read);
            }
            return read;
        },
        [this](size_t item, Read read) { TakeRow(item, std::move(read)); }, [this](SeriesEnd how) { EndReading(how); });
    nextToTake_ = 0;
    reading_->Start();
}

void RefreshTask::EndReading(SeriesEnd how) {
    if (how == SeriesEnd::Failed) {
        End(RefreshOutcome::Unreadable, UnreadableArchive(TextOf(reading_->Failure())));
        return;
    }
    End(how == SeriesEnd::Completed ? RefreshOutcome::Completed : RefreshOutcome::Cancelled);
}

// The message of a tolerated sender goes at once, by the thread that has read it: on a share many such moves have to be
// under way at the same time.
void RefreshTask::Release(FileSystem& files, const DisposalFolders& folders, ActionRecord* record, Read& read) {
    if (record == nullptr) {
        TryToRelease(files, folders, read);
        return;
    }
    record->Announce({read.row.row.Key()});
    record->AwaitAnnounced();
    const QString answer = TryToRelease(files, folders, read);
    record->Take({read.row.row, read.failure, 0, answer, folders.way != nullptr});
}

/// Returns what a mail server has answered.
QString RefreshTask::TryToRelease(FileSystem& files, const DisposalFolders& folders, Read& read) {
    try {
        const QString name = read.row.row.Key();
        if (!folders.way && read.row.isPacked) {
            throw MessageIsPacked(folders.archive.PathOf(name));
        }
        QString answer = Unblock(files, folders, name);
        read.wasMoved = true;
        return answer;
    } catch (const FileError& error) {
        read.failure = FileFailure(error);
        read.wasMoved = error.Problem() == FileProblem::Uncertain; // to another name
        return {};
    }
}

void RefreshTask::TakeRow(size_t item, Read read) {
    if (item != nextToTake_) {
        return; // behind a file that could not be read: the next refresh has to begin with that one
    }
    ++nextToTake_;
    if (read.failure) {
        result_.failures.push_back(*read.failure);
    }
    if (read.row.loaded) {
        state_.strXSender = read.row.row.Tag();
    }
    if (item < again_) {
        ReplaceRow(std::move(read));
    } else {
        AddRow(std::move(read));
    }
}

void RefreshTask::AddRow(Read read) {
    MessageRow& row = read.row.row;
    row.SetUnread(markNew_);
    state_.LastAddedFile = row.Key();
    state_.LastArrival = {state_.LastAddedFile, read.row.status.modifiedNs};
    listedLast_ = state_.LastArrival;
    result_.lastMessageWasRead = read.row.loaded;
    NoteFailed(read.row);
    const int rows = model_.TotalCount() + static_cast<int>(batch_.size()) + 1;
    if (rows % 10 == 0) {
        Q_EMIT Progress(rows);
    }
    if (read.wasMoved) {
        return;
    }
    batch_.push_back(std::move(row));
    if (!flush_.isActive()) {
        flush_.start();
    }
}

void RefreshTask::ReplaceRow(Read read) {
    MessageRow& row = read.row.row;
    const QString key = row.Key();
    const MessageRow* known = model_.Find(key);
    failed_.erase(key);
    NoteFailed(read.row);
    if (known == nullptr) {
        return;
    }
    if (read.wasMoved) {
        model_.RemoveKey(key);
        return;
    }
    row.SetUnread(known->IsUnread());
    model_.Replace(std::move(row));
}

void RefreshTask::NoteFailed(const ReadRow& row) {
    if (!row.loaded && !bulk_) {
        failed_[row.row.Key()] = {row.status, row.canHeal};
    }
}

void RefreshTask::Flush() {
    model_.Append(std::move(batch_));
    batch_.clear();
    shownLast_ = state_.LastArrival;
    flush_.setInterval(std::min(2 * flush_.interval(), rarestFlushMs));
}

void RefreshTask::End(RefreshOutcome outcome, const QString& reason) {
    flush_.stop();
    Flush();
    isRunning_ = false;
    reading_.reset(); // which holds the record as well
    record_.reset();
    way_.reset();
    result_.outcome = outcome;
    result_.reason = reason;
    const RefreshResult result = std::move(result_);
    Q_EMIT Ended(result);
}

} // namespace quellbox
