#include "archive/ArchiveScan.h"

#include "platform/RuntimeError.h"

#include <algorithm>
#include <atomic>
#include <exception>

namespace quellbox {

namespace {

/// Ends a listing that nobody waits for any more.
struct NobodyWaits : std::exception {};

/// Files are looked at by the handful, but where there are few of them all threads still get some.
size_t LooksAtOnce(size_t files, int mostThreads) {
    constexpr size_t most = 8;
    return std::clamp(files / (16 * static_cast<size_t>(mostThreads)), size_t{1}, most);
}

} // namespace

/// What the work beside the thread shares with it.
struct ArchiveScan::Found {
    FolderState folder;
    CompactListing files;
    size_t unknown = 0; // so many files come first whose status the folder has not reported
    std::atomic<bool> isUnwanted{false};
};

ArchiveScan::ArchiveScan(const FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

ArchiveScan::~ArchiveScan() {
    if (found_) {
        found_->isUnwanted = true;
    }
}

void ArchiveScan::Start(ScanRequest request, Take take) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    request_ = std::make_shared<const ScanRequest>(std::move(request));
    take_ = std::make_shared<const Take>(std::move(take));
    listed_ = nullptr;
    found_ = std::make_shared<Found>();
    Run(
        1, [&files = files_, request = request_, found = found_](size_t) { List(files, *request, *found); },
        &ArchiveScan::TakeNames, oneAtATime);
}

void ArchiveScan::Cancel() {
    if (!isRunning_) {
        return;
    }
    found_->isUnwanted = true;
    End(ScanOutcome::Cancelled);
}

/// A step of the listing: `call` for each item beside this thread, and then `next` on it.
void ArchiveScan::Run(size_t count, std::function<void(size_t)> call, Next next, const WorkOptions& options) {
    step_.emplace(
        pool_, count,
        [call = std::move(call)](size_t item) {
            call(item);
            return true;
        },
        [](size_t, bool) {}, [this, next](SeriesEnd how) { how == SeriesEnd::Completed ? (this->*next)() : Fail(); },
        options);
    step_->Start();
}

void ArchiveScan::List(const FileSystem& files, const ScanRequest& request, Found& found) {
    const MessagePlaces& places = request.profile->places;
    found.folder.Open(files, request.archive, [&] {
        VisitEntriesOf(files, request.archive, places, [&](const FolderEntry& entry) {
            if (found.isUnwanted) {
                throw NobodyWaits();
            }
            const bool mayBeFile = entry.kind == EntryKind::File || entry.kind == EntryKind::Unknown;
            if (mayBeFile && (places.listsOthers || IsMessageName(places, entry.name))) {
                found.files.Add(entry.name, entry.status);
            }
        });
        found.unknown = found.files.PutUnknownFirst();
    });
}

void ArchiveScan::TakeNames() {
    if (const std::optional<ListingRefusal> refusal = check_.Refusal(request_->archive, found_->folder)) {
        End(refusal->isMissing ? ScanOutcome::ArchiveMissing : ScanOutcome::Unreadable, refusal->reason);
    } else if (found_->unknown > 0) {
        ReadStatuses();
    } else {
        Sort();
    }
}

void ArchiveScan::ReadStatuses() {
    const size_t atOnce = LooksAtOnce(found_->unknown, pool_.Most(WorkPool::Kind::Series));
    Run((found_->unknown + atOnce - 1) / atOnce,
        [found = found_, atOnce](size_t item) {
            const size_t end = std::min((item + 1) * atOnce, found->unknown);
            for (size_t file = item * atOnce; file < end && !found->isUnwanted; ++file) {
                found->files.SetStatus(file, found->folder.reader->Status(found->files.NameAt(file)));
            }
        },
        &ArchiveScan::Sort, {});
}

void ArchiveScan::Sort() {
    Run(
        1, [request = request_, found = found_](size_t) { found->files.Sort(request->wants); }, &ArchiveScan::ReadRows,
        oneAtATime);
}

void ArchiveScan::ReadRows() {
    listed_ = std::shared_ptr<const CompactListing>(found_, &found_->files);
    begun_ = request_->reads ? 0 : listed_->Count();
    reading_ = NextSegment();
    reading_->Start();
    ReadAhead();
    Q_EMIT Listed(static_cast<qint64>(listed_->Count()));
}

/// The reading of the files that follow, which may be none.
std::unique_ptr<ArchiveScan::Reading> ArchiveScan::NextSegment() {
    const size_t begin = begun_;
    begun_ = std::min(begin + segment, listed_->Count());
    return std::make_unique<Reading>(
        pool_, begun_ - begin,
        [found = found_, profile = request_->profile, begin](size_t item) {
            return ReadMessageRow(*found->folder.reader, found->files.At(begin + item), false, *profile);
        },
        [take = take_](size_t, ReadRow row) { (*take)(std::move(row)); }, [this](SeriesEnd how) { EndSegment(how); });
}

// The threads have something to do while the last rows of a segment are handed over.
void ArchiveScan::ReadAhead() {
    if (begun_ < listed_->Count()) {
        ahead_ = NextSegment();
        ahead_->StartHeldBack();
    }
}

void ArchiveScan::EndSegment(SeriesEnd how) {
    if (how == SeriesEnd::Failed) {
        End(ScanOutcome::Unreadable, UnreadableArchive(TextOf(reading_->Failure())));
        return;
    }
    if (!ahead_) {
        End(ScanOutcome::Completed);
        return;
    }
    reading_ = std::move(ahead_);
    reading_->HandOver();
    ReadAhead();
}

/// What a step has thrown ends the scan.
void ArchiveScan::Fail() {
    found_->folder.SetFailure(step_->Failure());
    const std::optional<ListingRefusal> refusal = check_.Refusal(request_->archive, found_->folder);
    End(ScanOutcome::Unreadable, refusal ? refusal->reason : UnreadableArchive({}));
}

void ArchiveScan::End(ScanOutcome outcome, const QString& reason) {
    isRunning_ = false;
    step_.reset();
    reading_.reset();
    ahead_.reset();
    take_ = nullptr;
    const ScanResult result{outcome, reason};
    Q_EMIT Ended(result);
}

} // namespace quellbox
