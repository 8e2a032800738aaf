#pragma once

#include "archive/CompactListing.h"
#include "archive/ListingRefusal.h"
#include "archive/MessageReading.h"
#include "platform/OrderedWork.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace quellbox {

/// What of an archive is to be listed.
struct ScanRequest {
    Folder archive;
    const ServerProfile* profile = nullptr; ///< of the messages; has to outlive the pool's work

    /// Files that it says no to are neither listed nor opened; without it, all are wanted. It is called beside the
    /// thread of the scan, for one file at a time, maybe also when the scan has been cancelled.
    std::function<bool(const FileEntry&)> wants = {};

    bool reads = true; ///< the rows of the files are wanted, not only their names, sizes and times
};

/// How a scan ended.
enum class ScanOutcome {
    Completed,
    ArchiveMissing, ///< there is no such folder
    Unreadable,     ///< the folder cannot be listed
    Cancelled
};

struct ScanResult {
    ScanOutcome outcome = ScanOutcome::Completed;
    QString reason; ///< what to tell the user; empty when completed or cancelled
};

/// Lists an archive of any number of messages and reads their rows, which it hands over in order of arrival on the
/// thread of this object. Listing and reading go on beside that thread. When rows are taken slowly, no more than those
/// of two segments of the archive are held.
class ArchiveScan : public QObject {
    Q_OBJECT

public:
    /// Gets a row. May cancel the scan or destroy it.
    using Take = std::function<void(ReadRow row)>;

    /// So many files are read before the next ones are.
    static constexpr size_t segment = 4096;

    /// What is lent has to outlive this object, and the files the pool's work.
    ArchiveScan(const FileSystem& files, WorkPool& pool);
    ~ArchiveScan() override;
    Q_DISABLE_COPY_MOVE(ArchiveScan)

    /// Gives `take` a row for each file that is wanted, unless the request is for none. A file that vanishes behind the
    /// listing, or is no message, gets a row that says so. Does nothing while a scan runs.
    void Start(ScanRequest request, Take take = {});

    /// Ends the scan before this returns. Calls that are under way are not waited for.
    void Cancel();

    bool IsRunning() const { return isRunning_; }

    /// The files of the latest scan, in order of arrival; null until they have been listed. Who needs them longer than
    /// until the next scan may keep them.
    std::shared_ptr<const CompactListing> Files() const { return listed_; }

Q_SIGNALS:
    /// So many files are listed, and rows will follow.
    void Listed(qint64 files);

    /// The scan has ended; another one may be started.
    void Ended(const ScanResult& result);

private:
    struct Found;
    using Reading = OrderedWork<ReadRow>;
    using Next = void (ArchiveScan::*)();

    static void List(const FileSystem& files, const ScanRequest& request, Found& found);
    void Run(size_t count, std::function<void(size_t)> call, Next next, const WorkOptions& options);
    void TakeNames();
    void ReadStatuses();
    void Sort();
    void ReadRows();
    std::unique_ptr<Reading> NextSegment();
    void ReadAhead();
    void EndSegment(SeriesEnd how);
    void Fail();
    void End(ScanOutcome outcome, const QString& reason = {});

    const FileSystem& files_;
    WorkPool& pool_;
    ListingCheck check_;
    std::shared_ptr<const ScanRequest> request_;
    std::shared_ptr<const Take> take_;
    std::shared_ptr<Found> found_;
    std::shared_ptr<const CompactListing> listed_;
    std::optional<OrderedWork<bool>> step_; // of the listing
    std::unique_ptr<Reading> reading_;      // the segment whose rows are handed over
    std::unique_ptr<Reading> ahead_;        // the one behind it
    size_t begun_ = 0;                      // so many files are in segments that have begun
    bool isRunning_ = false;
};

} // namespace quellbox
