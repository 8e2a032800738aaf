#include "messages/PutBackTask.h"

#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"

#include <QHash>

#include <utility>

namespace quellbox {

namespace {

// Up to so many files of a folder are moved without a listing, which costs some calls itself.
constexpr int fewFiles = 4;

/// The folder of a path with its separator.
QString FolderOf(const QString& path) {
    return path.left(path.lastIndexOf(SeparatorOf(path)) + 1);
}

QStringList KeysOf(const std::vector<PutBack>& items) {
    QStringList keys;
    for (const PutBack& item : items) {
        keys.append(item.message.Key());
    }
    return keys;
}

/// The folders that more than a few of the files are in.
QStringList FoldersOfMany(const std::vector<PutBack>& items) {
    QHash<QString, int> counts;
    for (const PutBack& item : items) {
        ++counts[FolderOf(item.from)];
    }
    QStringList folders;
    for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry) {
        if (entry.value() > fewFiles) {
            folders.append(entry.key());
        }
    }
    return folders;
}

} // namespace

PutBackTask::PutBackTask(FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

void PutBackTask::Start(std::vector<PutBack> items, QStringList emptied, std::shared_ptr<ActionRecord> record) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isCancelled_ = false;
    done_ = 0;
    result_ = {std::vector<PutBackFate>(items.size())};
    items_ = std::make_shared<const Items>(std::move(items));
    emptied_ = std::move(emptied);
    record_ = std::move(record);
    if (record_) {
        record_->Announce(KeysOf(*items_));
    }
    moving_.reset();
    removing_.reset();
    const QStringList folders = FoldersOfMany(*items_);
    if (folders.isEmpty()) {
        MoveFiles();
        return;
    }
    preparing_.emplace(
        pool_, 1,
        [&files = files_, folders](size_t) {
            for (const QString& folder : folders) {
                files.PrepareMoves(folder);
            }
            return true;
        },
        [](size_t, bool) {}, [this](SeriesEnd) { MoveFiles(); }, oneAtATime);
    preparing_->Start();
}

void PutBackTask::MoveFiles() {
    if (isCancelled_) {
        End();
        return;
    }
    moving_.emplace(
        pool_, items_->size(),
        [&files = files_, items = items_, record = record_](size_t item) {
            return Move(files, (*items)[item], record.get());
        },
        [this](size_t item, PutBackFate fate) { Take(item, std::move(fate)); }, [this](SeriesEnd) { EndMoving(); });
    moving_->Start();
}

PutBackFate PutBackTask::Move(FileSystem& files, const PutBack& item, ActionRecord* record) {
    if (record == nullptr) {
        return TryToMove(files, item);
    }
    record->AwaitAnnounced();
    PutBackFate fate = TryToMove(files, item);
    record->Take({item.message, fate.failure, item.entry});
    return fate;
}

PutBackFate PutBackTask::TryToMove(FileSystem& files, const PutBack& item) {
    try {
        files.Move(item.from, item.to);
        return {true, std::nullopt};
    } catch (const FileError& error) {
        return {false, FileFailure(error)};
    } catch (const std::exception& error) {
        return {false, FileFailure(item.from, QString::fromUtf8(error.what()))};
    }
}

void PutBackTask::Take(size_t item, PutBackFate fate) {
    result_.fates[item] = std::move(fate);
    Q_EMIT Progress(++done_);
}

void PutBackTask::EndMoving() {
    if (isCancelled_ || emptied_.isEmpty()) {
        End();
        return;
    }
    removing_.emplace(
        pool_, 1,
        [&files = files_, folders = emptied_](size_t) {
            RemoveFolders(files, folders);
            return true;
        },
        [](size_t, bool) {}, [this](SeriesEnd) { End(); }, oneAtATime);
    removing_->Start();
}

void PutBackTask::RemoveFolders(FileSystem& files, const QStringList& folders) {
    std::vector<FileFailure> failures;
    for (const QString& folder : folders) {
        try {
            files.RemoveFolder(folder);
        } catch (const FileError& error) {
            failures.emplace_back(error);
        }
    }
    LogFailures(failures);
}

void PutBackTask::Cancel() {
    if (!isRunning_) {
        return;
    }
    isCancelled_ = true;
    if (removing_) {
        removing_->GiveUp();
    } else if (moving_) {
        moving_->Cancel();
    } else {
        preparing_->GiveUp(); // it changes nothing
    }
}

void PutBackTask::GiveUp() {
    if (!isRunning_) {
        return;
    }
    isCancelled_ = true;
    if (removing_) {
        removing_->GiveUp();
    } else if (moving_) {
        moving_->TakeFinishedAndGiveUp();
    } else {
        preparing_->GiveUp();
    }
}

void PutBackTask::End() {
    isRunning_ = false;
    moving_.reset(); // which holds the record as well
    record_.reset();
    const PutBackResult result = std::move(result_);
    Q_EMIT Ended(result);
}

} // namespace quellbox
