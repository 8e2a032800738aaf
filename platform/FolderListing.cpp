#include "platform/FolderListing.h"

#include "platform/ReaderCount.h"

#include <QMutex>
#include <QMutexLocker>
#include <QThread>
#include <QThreadPool>
#include <QWaitCondition>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>

namespace quellbox {

namespace {

using Clock = std::chrono::steady_clock;

constexpr qsizetype probeCount = 8;

/// The looks at all files of which the folder tells no status, shared by the threads that take them. A thread of the
/// pool that starts after everything is claimed touches nothing but this object, so nobody has to wait for it.
class StatusPass {
public:
    StatusPass(const FileSystem& files, const QString& folder)
        : files_(files), folder_(folder), entries_(files.FileEntries(folder)),
          looks_(
              std::partition(entries_.begin(), entries_.end(), [](const FolderEntry& entry) { return !entry.status; }) -
              entries_.begin()) {}

    qsizetype Unclaimed() const { return looks_ - next_.load(); }

    /// Looks at the first files and returns how long the middle one took.
    std::chrono::nanoseconds Probe() {
        std::vector<std::chrono::nanoseconds> durations;
        const qsizetype end = std::min(probeCount, looks_);
        for (qsizetype index = 0; index < end; ++index) {
            const Clock::time_point start = Clock::now();
            Look(index);
            durations.push_back(Clock::now() - start);
        }
        next_ = end;
        done_ = end;
        std::sort(durations.begin(), durations.end());
        return durations.empty() ? std::chrono::nanoseconds(0) : durations[durations.size() / 2];
    }

    /// Claims `step` files at a time and looks at them, until all are claimed.
    void Work(qsizetype step) {
        for (;;) {
            const qsizetype begin = next_.fetch_add(step);
            if (begin >= looks_) {
                return;
            }
            const qsizetype end = std::min(begin + step, looks_);
            try {
                for (qsizetype index = begin; index < end; ++index) {
                    Look(index);
                }
            } catch (...) {
                const QMutexLocker lock(&mutex_);
                failure_ = std::current_exception();
            }
            const QMutexLocker lock(&mutex_);
            done_ += end - begin;
            if (done_ == looks_) {
                finished_.wakeAll();
            }
        }
    }

    /// Waits for the looks that other threads have claimed.
    void Finish() {
        const QMutexLocker lock(&mutex_);
        while (done_ < looks_) {
            finished_.wait(&mutex_);
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

    std::vector<FileEntry> InOrderOfArrival() {
        std::vector<FileEntry> entries;
        entries.reserve(entries_.size());
        for (FolderEntry& entry : entries_) {
            if (entry.status) {
                entries.push_back({std::move(entry.name), *entry.status});
            }
        }
        std::sort(entries.begin(), entries.end(), [](const FileEntry& left, const FileEntry& right) {
            return left.status.modifiedNs != right.status.modifiedNs ? left.status.modifiedNs < right.status.modifiedNs
                                                                     : left.name < right.name;
        });
        return entries;
    }

private:
    void Look(qsizetype index) {
        FolderEntry& entry = entries_[static_cast<size_t>(index)];
        entry.status = files_.Status(folder_ + entry.name);
    }

    const FileSystem& files_;
    const QString folder_;
    std::vector<FolderEntry> entries_;
    const qsizetype looks_; // so many entries, the first ones, come without a status
    std::atomic<qsizetype> next_ = 0;
    QMutex mutex_;
    QWaitCondition finished_;
    qsizetype done_ = 0;
    std::exception_ptr failure_;
};

} // namespace

std::vector<FileEntry> FilesByArrival(const FileSystem& files, const QString& folder, QThreadPool& pool) {
    const auto pass = std::make_shared<StatusPass>(files, folder);
    if (pass->Unclaimed() == 0) {
        return pass->InOrderOfArrival();
    }
    const int cores = QThread::idealThreadCount();
    const int wanted = ReaderCount(pass->Probe(), cores);
    // Quick looks are claimed by the handful, slow ones singly, so that the last threads end together.
    const qsizetype step = wanted > std::max(2, cores) ? 1 : 64;
    const qsizetype helpers = std::min<qsizetype>(wanted, (pass->Unclaimed() + step - 1) / step) - 1;
    if (pool.maxThreadCount() < wanted) {
        pool.setMaxThreadCount(wanted);
    }
    for (qsizetype helper = 0; helper < helpers; ++helper) {
        pool.start([pass, step] { pass->Work(step); });
    }
    pass->Work(step);
    pass->Finish();
    return pass->InOrderOfArrival();
}

} // namespace quellbox
