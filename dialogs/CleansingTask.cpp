#include "dialogs/CleansingTask.h"

#include "archive/DayWindow.h"
#include "platform/EntryNames.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

constexpr qint32 progressStep = 25;

} // namespace

CleansingTask::CleansingTask(FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

// A run that goes on past midnight keeps what it was to keep when it began.
void CleansingTask::Start(const Folder& archiveDir, qint16 days, QDate today, std::shared_ptr<KeptFolder> kept,
                          std::shared_ptr<ActionRecord> record, std::function<MessageRow(const QString& name)> known,
                          const MessagePlaces& places) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isCancelled_ = false;
    order_ = {archiveDir, QString::number(days), today, std::move(kept), std::move(record)};
    known_ = std::move(known);
    names_ = std::make_shared<QStringList>();
    result_ = {};
    removing_.reset();
    listing_.emplace(
        pool_, days < 0 ? 0 : 1,
        [&files = files_, archive = order_.folder, places](size_t) { return ReadNames(files, archive, places); },
        [this](size_t, Names names) {
            *names_ = std::move(names.names);
            if (names.failure) {
                result_.failures.push_back(std::move(*names.failure));
            }
        },
        [this](SeriesEnd) { RemoveFiles(); }, oneAtATime);
    listing_->Start();
}

void CleansingTask::Cancel() {
    if (!isRunning_) {
        return;
    }
    isCancelled_ = true;
    if (removing_) {
        removing_->Cancel();
    } else {
        listing_->GiveUp(); // it changes nothing
    }
}

void CleansingTask::GiveUp() {
    if (!isRunning_) {
        return;
    }
    isCancelled_ = true;
    removing_ ? removing_->TakeFinishedAndGiveUp() : listing_->GiveUp();
}

CleansingTask::Names CleansingTask::ReadNames(const FileSystem& files, const Folder& archive,
                                              const MessagePlaces& places) {
    Names found;
    try {
        found.names = CleansingNames(files, archive, places);
    } catch (const FileError& error) {
        found.failure = FileFailure(error);
    }
    return found;
}

void CleansingTask::RemoveFiles() {
    Q_EMIT Counted(static_cast<int>(names_->size()));
    if (isCancelled_) {
        End();
        return;
    }
    if (order_.record) {
        order_.record->Announce(*names_);
    }
    removing_.emplace(
        pool_, static_cast<size_t>(names_->size()),
        [&files = files_, names = names_, messages = Messages(), order = order_](size_t item) {
            return order.record ? CleanseOnRecord(files, (*messages)[item], order)
                                : Cleanse(files, names->at(static_cast<qsizetype>(item)), order);
        },
        [this](size_t item, Fate fate) { Take(item, std::move(fate)); }, [this](SeriesEnd) { End(); });
    removing_->Start();
}

/// What is known of the messages, for the record; null without one.
std::shared_ptr<const std::vector<MessageRow>> CleansingTask::Messages() const {
    if (!order_.record) {
        return nullptr;
    }
    auto messages = std::make_shared<std::vector<MessageRow>>();
    messages->reserve(static_cast<size_t>(names_->size()));
    for (const QString& name : *names_) {
        messages->push_back(known_ ? known_(name) : MessageRow(name, -1, 0, {}));
    }
    return messages;
}

CleansingTask::Fate CleansingTask::CleanseOnRecord(FileSystem& files, const MessageRow& message, const Order& order) {
    order.record->AwaitAnnounced();
    Fate fate = Cleanse(files, message.Key(), order);
    if (!fate.wasKept && !fate.isRefused) {
        order.record->Take({message, fate.failure});
    }
    return fate;
}

bool CleansingTask::Order::IsKept(const FileStatus& status) const {
    return days != QLatin1String("0") && IsRecentFile(days, status.modifiedNs, today);
}

/// False when the file lies in the day window. Throws FileError.
bool CleansingTask::Remove(FileSystem& files, const QString& path, const Order& order) {
    if (order.days != QLatin1String("0")) {
        return files.RemoveUnless(path, [&order](const FileStatus& status) { return order.IsKept(status); });
    }
    if (!files.Remove(path)) {
        throw FileError(path, QCoreApplication::translate("quellbox", "The file is gone."), FileProblem::Missing);
    }
    return true;
}

/// The same, but the file goes into the folder for what was deleted.
bool CleansingTask::Keep(FileSystem& files, const QString& name, const Order& order) {
    const QString path = order.folder.PathOf(name);
    if (order.days == QLatin1String("0")) {
        order.kept->Make();
        files.Move(path, order.kept->PathOf(name));
        return true;
    }
    return files.MoveUnless(path, order.kept->PathOf(name), [&order](const FileStatus& status) {
        const bool stays = order.IsKept(status);
        if (!stays) {
            order.kept->Make();
        }
        return stays;
    });
}

CleansingTask::Fate CleansingTask::Cleanse(FileSystem& files, const QString& name, const Order& order) {
    Fate fate;
    const QString path = order.folder.PathOf(name);
    try {
        fate.wasKept = order.kept ? !Keep(files, name, order) : !Remove(files, path, order);
    } catch (const FileError& error) {
        fate.failure = FileFailure(error);
    } catch (const std::exception& error) {
        fate.failure = FileFailure(path, QString::fromUtf8(error.what()));
    }
    if (const auto refusal = fate.failure && order.kept ? order.kept->Refusal() : std::nullopt) {
        fate.failure = refusal;
        fate.isRefused = true;
    }
    return fate;
}

void CleansingTask::Take(size_t item, Fate fate) {
    if (fate.isRefused) {
        result_.refused = std::move(fate.failure);
        return;
    }
    if (!fate.wasKept) {
        if (result_.count % progressStep == 0) {
            Q_EMIT Removing(names_->at(static_cast<qsizetype>(item)));
        }
        ++result_.count;
    }
    if (fate.failure) {
        result_.failures.push_back(std::move(*fate.failure));
    }
    Q_EMIT Progress(static_cast<int>(item) + 1);
}

void CleansingTask::End() {
    isRunning_ = false;
    removing_.reset(); // which holds the record of the run
    order_.record.reset();
    const CleansingResult result = std::move(result_);
    Q_EMIT Ended(result);
}

} // namespace quellbox
