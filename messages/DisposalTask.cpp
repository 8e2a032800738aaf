#include "messages/DisposalTask.h"

#include "platform/RuntimeError.h"

#include <QStringList>

#include <algorithm>
#include <memory>

namespace quellbox {

namespace {

constexpr int progressStep = 100;

void DisposeOfFile(FileSystem& files, qint16 action, const DisposalFolders& folders, const QString& key) {
    const QString path = folders.archive.PathOf(key);
    if (action != Action::remove) {
        files.Move(path, folders.pickup.PathOf(key));
    } else {
        files.Remove(path); // which is content with a file that has gone
    }
}

} // namespace

DisposalTask::DisposalTask(FileSystem& files, WorkPool& pool, MessageListModel& model)
    : files_(files), pool_(pool), model_(model) {}

void DisposalTask::Start(qint16 action, const DisposalFolders& folders, std::vector<int> rows) {
    if (isRunning_) {
        return;
    }
    const bool isKnown = action >= Action::unblock && action <= Action::unblockTolerated;
    rows_ = isKnown ? std::move(rows) : std::vector<int>();
    gone_.clear();
    result_ = {};
    isRunning_ = true;
    const auto keys = std::make_shared<QStringList>();
    for (const int row : rows_) {
        keys->append(model_.Row(row).Key());
    }
    work_.emplace(
        pool_, rows_.size(),
        [&files = files_, action, folders, keys](size_t item) {
            return Dispose(files, action, folders, keys->at(static_cast<qsizetype>(item)));
        },
        [this](size_t item, Failure failure) { Take(item, std::move(failure)); }, [this](SeriesEnd) { End(); });
    work_->Start();
}

void DisposalTask::Cancel() {
    if (isRunning_) {
        work_->Cancel();
    }
}

void DisposalTask::GiveUp() {
    if (isRunning_) {
        work_->TakeFinishedAndGiveUp();
    }
}

DisposalTask::Failure DisposalTask::Dispose(FileSystem& files, qint16 action, const DisposalFolders& folders,
                                            const QString& key) {
    try {
        DisposeOfFile(files, action, folders, key);
        return std::nullopt;
    } catch (const FileError& error) {
        return FileFailure(error);
    } catch (const std::exception& error) {
        return FileFailure(folders.archive.PathOf(key), QString::fromUtf8(error.what()));
    }
}

void DisposalTask::Take(size_t item, Failure failure) {
    if (failure) {
        result_.failures.push_back(std::move(*failure));
    }
    gone_.push_back(rows_[item]);
    const int rowsLeft = model_.Count() - static_cast<int>(gone_.size());
    if (rowsLeft % progressStep == 0) {
        Q_EMIT RowsLeft(rowsLeft);
    }
    Q_EMIT Progress(static_cast<int>(gone_.size()));
}

void DisposalTask::End() {
    result_.rowsGone = static_cast<int>(gone_.size());
    // The rows above the last one have gone as well, so what followed it is now that much further up.
    const int following = gone_.empty() ? -1 : gone_.back() - (result_.rowsGone - 1);
    model_.Remove(gone_);
    result_.nextRow = std::min(following, model_.Count() - 1);
    result_.nextKey = result_.nextRow < 0 ? QString() : model_.Row(result_.nextRow).Key();
    isRunning_ = false;
    const DisposalResult result = std::move(result_);
    Q_EMIT Ended(result);
}

} // namespace quellbox
