#include "archive/HeaderReadAhead.h"

#include "archive/LocalTime.h"
#include "archive/MessageHeaders.h"
#include "mail/DisplayText.h"
#include "platform/ReaderCount.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <algorithm>
#include <atomic>

namespace quellbox {

namespace {

// So many files tell whether they lie on a local disk, cached or not, or behind a network.
constexpr int filesMeasured = 8;

ReadRow MakeRow(const FileSystem& files, const QString& folder, const FileEntry& entry, bool bulk) {
    ReadRow result;
    MessageRow& row = result.row;
    result.modifiedNs = entry.status.modifiedNs;
    row.key = entry.name;
    row.cells[ColumnDate] = ListDate(entry.status.modifiedNs);
    row.cells[ColumnSize] = QString::number(entry.status.size);
    row.cells[ColumnBytes] = row.cells[ColumnSize].rightJustified(8, QLatin1Char('0'));
    if (bulk) {
        row.cells[ColumnSubject] = CleanseForDisplay(entry.name);
        return result;
    }
    try {
        result.loaded = FillRow(row, ReadHeaderFields(files, folder + entry.name));
    } catch (const std::exception& error) {
        // Nothing may leave a reader's thread, not even a lack of memory.
        row.cells[ColumnSubject] = QString::fromUtf8(error.what());
    }
    return result;
}

} // namespace

struct HeaderReadAhead::Shared {
    Shared(const FileSystem& fileSystem, QString path, std::vector<FileEntry> listed, bool withoutOpening,
           QThreadPool& threads)
        : files(fileSystem), folder(std::move(path)), entries(std::move(listed)), bulk(withoutOpening), pool(threads) {}

    const FileSystem& files;
    const QString folder;
    const std::vector<FileEntry> entries;
    const bool bulk;
    QThreadPool& pool;

    // A row exists only from its making to its use; the consumer is seldom far behind.
    std::vector<std::unique_ptr<ReadRow>> rows{entries.size()};
    std::vector<std::atomic<bool>> ready = std::vector<std::atomic<bool>>(entries.size());
    std::atomic<size_t> unclaimed{0};
    std::atomic<bool> cancelled{false};
    std::atomic<int> measured{0};
    std::atomic<qint64> measuredNs{0};

    std::atomic<bool> consumerWaits{false};
    QMutex mutex;
    QWaitCondition rowIsReady;

    static void AddReaders(const std::shared_ptr<Shared>& self, int count) {
        for (int reader = 0; reader < count; ++reader) {
            self->pool.start([self] { ReadOn(self); });
        }
    }

    static void ReadOn(const std::shared_ptr<Shared>& self) {
        while (!self->cancelled) {
            const size_t file = self->unclaimed++;
            if (file >= self->entries.size()) {
                return;
            }
            const auto start = std::chrono::steady_clock::now();
            self->rows[file] =
                std::make_unique<ReadRow>(MakeRow(self->files, self->folder, self->entries[file], self->bulk));
            self->Announce(file);
            Measure(self, std::chrono::steady_clock::now() - start);
        }
    }

    void Announce(size_t file) {
        ready[file].store(true);
        if (consumerWaits.load()) {
            const QMutexLocker lock(&mutex);
            rowIsReady.wakeAll();
        }
    }

    // The reader that completes the measurement adds the readers that the file system's answer times call for.
    static void Measure(const std::shared_ptr<Shared>& self, std::chrono::nanoseconds taken) {
        if (self->measured.load(std::memory_order_relaxed) >= filesMeasured) {
            return;
        }
        self->measuredNs += taken.count();
        if (++self->measured == filesMeasured) {
            const int cores = QThread::idealThreadCount();
            const auto perFile = std::chrono::nanoseconds(self->measuredNs.load() / filesMeasured);
            AddReaders(self, ReaderCount(perFile, cores) - FirstReaders(cores));
        }
    }

    static int FirstReaders(int cores) { return ReaderCount(std::chrono::nanoseconds(0), cores); }
};

HeaderReadAhead::HeaderReadAhead(const FileSystem& files, const QString& folder, std::vector<FileEntry> entries,
                                 bool bulk, QThreadPool& pool)
    : shared_(std::make_shared<Shared>(files, folder, std::move(entries), bulk, pool)) {
    Shared::AddReaders(shared_, Shared::FirstReaders(QThread::idealThreadCount()));
}

HeaderReadAhead::~HeaderReadAhead() {
    shared_->cancelled = true;
}

bool HeaderReadAhead::WaitForNext(std::chrono::milliseconds limit) {
    if (shared_->ready[next_].load()) {
        return true;
    }
    QMutexLocker lock(&shared_->mutex);
    shared_->consumerWaits = true;
    const QDeadlineTimer deadline(limit);
    while (!shared_->ready[next_].load() && shared_->rowIsReady.wait(&shared_->mutex, deadline)) {
    }
    shared_->consumerWaits = false;
    return shared_->ready[next_].load();
}

ReadRow HeaderReadAhead::TakeNext() {
    const std::unique_ptr<ReadRow> row = std::move(shared_->rows[next_++]);
    return std::move(*row);
}

bool HeaderReadAhead::AtEnd() const {
    return next_ >= shared_->entries.size();
}

} // namespace quellbox
