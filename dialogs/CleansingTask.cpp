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

bool CleansingTask::IsMessage(const QString& name) {
    return name.endsWith(QLatin1String(".EML"), Qt::CaseInsensitive);
}

// A run that goes on past midnight keeps what it was to keep when it began.
void CleansingTask::Start(const Folder& archiveDir, qint16 days, QDate today) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isCancelled_ = false;
    folder_ = archiveDir;
    days_ = QString::number(days);
    today_ = today;
    names_ = std::make_shared<QStringList>();
    result_ = {};
    removing_.reset();
    listing_.emplace(
        pool_, days < 0 ? 0 : 1, [&files = files_, folder = folder_](size_t) { return ReadNames(files, folder); },
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

CleansingTask::Names CleansingTask::ReadNames(const FileSystem& files, const QString& folder) {
    Names found;
    try {
        found.names = VisibleFileNames(files, folder);
        found.names.removeIf([](const QString& name) { return !IsMessage(name); });
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
    removing_.emplace(
        pool_, static_cast<size_t>(names_->size()),
        [&files = files_, folder = folder_, names = names_, days = days_, today = today_](size_t item) {
            return Cleanse(files, folder.PathOf(names->at(static_cast<qsizetype>(item))), days, today);
        },
        [this](size_t item, Fate fate) { Take(item, std::move(fate)); }, [this](SeriesEnd) { End(); });
    removing_->Start();
}

CleansingTask::Fate CleansingTask::Cleanse(FileSystem& files, const QString& path, const QString& days, QDate today) {
    Fate fate;
    const auto isKept = [&](const FileStatus& status) { return IsRecentFile(days, status.modifiedNs, today); };
    try {
        if (days != QLatin1String("0")) {
            fate.wasKept = !files.RemoveUnless(path, isKept);
        } else if (!files.Remove(path)) {
            throw FileError(path, QCoreApplication::translate("quellbox", "The file is gone."), FileProblem::Missing);
        }
    } catch (const FileError& error) {
        fate.failure = FileFailure(error);
    } catch (const std::exception& error) {
        fate.failure = FileFailure(path, QString::fromUtf8(error.what()));
    }
    return fate;
}

void CleansingTask::Take(size_t item, Fate fate) {
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
    const CleansingResult result = std::move(result_);
    Q_EMIT Ended(result);
}

} // namespace quellbox
