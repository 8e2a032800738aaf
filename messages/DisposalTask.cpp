#include "messages/DisposalTask.h"

#include "platform/MessagePlaces.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <memory>

namespace quellbox {

namespace {

constexpr int progressStep = 100;

QStringList KeysOf(const std::vector<MessageRow>& messages) {
    QStringList keys;
    keys.reserve(static_cast<qsizetype>(messages.size()));
    for (const MessageRow& message : messages) {
        keys.append(message.Key());
    }
    return keys;
}

/// In a folder of the archive another program may have given a new name to what seems to have gone.
void RefuseRenamed(const Folder& archive, const QString& key) {
    if (NameInFolder(archive, key) != key) {
        throw FileError(archive.PathOf(key),
                        QCoreApplication::translate("quellbox", "The file is gone, or another program has renamed it. "
                                                                "Refresh the list."));
    }
}

/// Moves a file to where it is kept; one that has gone is as good as deleted.
void Keep(FileSystem& files, const Folder& archive, KeptFolder& kept, const QString& key) {
    const QString path = archive.PathOf(key);
    kept.Make();
    try {
        files.Move(path, kept.PathOf(key));
    } catch (const FileError& error) {
        // Without the folder that was made in the archive nobody knows: the share may not be mounted any more.
        const bool isGone = error.Problem() == FileProblem::Missing && !files.FileExists(path);
        if (!isGone || !files.FolderExists(kept.Path())) {
            throw;
        }
        RefuseRenamed(archive, key);
    }
}

} // namespace

DisposalTask::DisposalTask(FileSystem& files, WorkPool& pool, MessageListModel& model)
    : files_(files), pool_(pool), model_(model) {}

void DisposalTask::Start(qint16 action, const DisposalFolders& folders, std::vector<int> rows,
                         std::shared_ptr<KeptFolder> kept, std::shared_ptr<ActionRecord> record) {
    if (isRunning_) {
        return;
    }
    const bool isKnown = action >= Action::unblock && action <= Action::unblockTolerated;
    if (!isKnown) {
        rows.clear();
    }
    gone_.clear();
    result_ = {};
    isRunning_ = true;
    kept_ = action == Action::remove ? kept : nullptr;
    const auto messages = std::make_shared<const std::vector<MessageRow>>(MessagesAt(rows));
    if (record) {
        record->Announce(KeysOf(*messages));
    }
    work_.emplace(
        pool_, rows.size(),
        [&files = files_, order = Order{action, folders, std::move(kept), std::move(record), messages}](size_t item) {
            return Dispose(files, order, (*order.messages)[item]);
        },
        [this](size_t item, Failure failure) { Take(item, std::move(failure)); }, [this](SeriesEnd) { End(); });
    work_->Start();
}

/// Returns copies of the rows, and keeps in mind where they are.
std::vector<MessageRow> DisposalTask::MessagesAt(const std::vector<int>& rows) {
    places_.clear();
    std::vector<MessageRow> messages;
    messages.reserve(rows.size());
    for (const int row : rows) {
        messages.push_back(model_.Row(row));
        places_.push_back(model_.PlaceOf(row));
    }
    return messages;
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

/// Returns what a mail server has answered.
QString DisposalTask::DisposeOfFile(FileSystem& files, const Order& order, const QString& key) {
    if (order.action != Action::remove) {
        return Unblock(files, order.folders, key);
    }
    if (order.kept) {
        Keep(files, order.folders.archive, *order.kept, key);
    } else if (!files.Remove(order.folders.archive.PathOf(key))) {
        RefuseRenamed(order.folders.archive, key); // else it is as good as deleted
    }
    return {};
}

DisposalTask::Failure DisposalTask::Dispose(FileSystem& files, const Order& order, const MessageRow& message) {
    QString answer;
    if (!order.record) {
        return TryToDispose(files, order, message.Key(), answer);
    }
    order.record->AwaitAnnounced();
    Failure failure = TryToDispose(files, order, message.Key(), answer);
    if (!failure || !order.kept || !order.kept->Refusal()) {
        const bool isSent = order.action != Action::remove && order.folders.way;
        order.record->Take({message, failure, 0, answer, isSent});
    }
    return failure;
}

DisposalTask::Failure DisposalTask::TryToDispose(FileSystem& files, const Order& order, const QString& key,
                                                 QString& answer) {
    try {
        answer = DisposeOfFile(files, order, key);
        return std::nullopt;
    } catch (const FileError& error) {
        return FileFailure(error);
    } catch (const std::exception& error) {
        return FileFailure(order.folders.archive.PathOf(key), QString::fromUtf8(error.what()));
    }
}

void DisposalTask::Take(size_t item, Failure failure) {
    if (failure && kept_ && kept_->Refusal()) {
        result_.refused = kept_->Refusal();
        return;
    }
    if (failure) {
        result_.failures.push_back(std::move(*failure));
    }
    gone_.push_back(places_[item]);
    const int rowsLeft = model_.TotalCount() - static_cast<int>(gone_.size());
    if (rowsLeft % progressStep == 0) {
        Q_EMIT RowsLeft(rowsLeft);
    }
    Q_EMIT Progress(static_cast<int>(gone_.size()));
}

void DisposalTask::End() {
    work_.reset(); // it holds the record of the action
    result_.rowsGone = static_cast<int>(gone_.size());
    std::transform(gone_.begin(), gone_.end(), gone_.begin(), [this](int place) { return model_.RowAtPlace(place); });
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
