#include "archive/KeptExpiry.h"

#include "messages/KeptFolder.h"
#include "platform/RuntimeError.h"

#include <iterator>
#include <utility>

namespace quellbox {

namespace {

// What the user waits for has the other threads.
constexpr WorkOptions fewAtATime{WorkPool::Kind::Series, 2};
constexpr WorkOptions behindOthers{WorkPool::Kind::Series, 1};

bool IsExpired(const FolderEntry& entry, QDate today) {
    if (entry.kind != EntryKind::Folder && entry.kind != EntryKind::Unknown) {
        return false;
    }
    const std::optional<KeptFolderName> name = ParseKeptFolderName(entry.name);
    return name && name->made.toLocalTime().date().daysTo(today) > name->days;
}

} // namespace

KeptExpiry::KeptExpiry(FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

void KeptExpiry::Start(const Folder& archive, QDate today) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isGivenUp_ = false;
    failures_.clear();
    expired_ = nullptr;
    removing_.reset();
    emptying_.reset();
    finding_.emplace(
        pool_, 1,
        [&files = files_, archive, today](size_t) {
            return std::make_shared<const Expired>(Find(files, archive, today));
        },
        [this](size_t, std::shared_ptr<const Expired> expired) { expired_ = std::move(expired); },
        [this](SeriesEnd) { RemoveFiles(); }, behindOthers);
    finding_->Start();
}

/// The folders of actions that are to go. Throws FileError.
QStringList KeptExpiry::ExpiredFolders(const FileSystem& files, const Folder& archive, QDate today) {
    const Folder above = KeptFoldersOf(archive);
    QStringList folders;
    for (const FolderEntry& entry : files.Entries(above)) {
        if (IsExpired(entry, today)) {
            folders.append(above.PathOf(entry.name + SeparatorOf(above)));
        }
    }
    // A link could lead to the files of somebody else.
    return folders.isEmpty() || files.IsRealFolder(above) ? folders : QStringList();
}

/// Adds a folder and its files, unless it is a link. Throws FileError.
void KeptExpiry::AddFiles(const FileSystem& files, const QString& folder, Expired& expired) {
    if (!files.IsRealFolder(folder)) {
        return;
    }
    for (const FolderEntry& entry : files.Entries(folder)) {
        if (entry.kind == EntryKind::File || entry.kind == EntryKind::Unknown) {
            expired.files.append(folder + entry.name);
        }
    }
    expired.folders.append(folder);
}

KeptExpiry::Expired KeptExpiry::Find(const FileSystem& files, const Folder& archive, QDate today) {
    Expired expired;
    const auto note = [&expired](const FileError& error) {
        if (error.Problem() != FileProblem::Missing) { // nothing is kept there, or another program was faster
            expired.failures.emplace_back(error);
        }
    };
    try {
        for (const QString& folder : ExpiredFolders(files, archive, today)) {
            try {
                AddFiles(files, folder, expired);
            } catch (const FileError& error) {
                note(error);
            }
        }
    } catch (const FileError& error) {
        note(error);
    }
    return expired;
}

void KeptExpiry::RemoveFiles() {
    if (isGivenUp_ || !expired_) {
        End();
        return;
    }
    Take(expired_->failures);
    removing_.emplace(
        pool_, static_cast<size_t>(expired_->files.size()),
        [&files = files_, expired = expired_](size_t item) {
            return RemoveFile(files, expired->files.at(static_cast<qsizetype>(item)));
        },
        [this](size_t, const std::optional<FileFailure>& failure) {
            if (failure) {
                failures_.push_back(*failure);
            }
        },
        [this](SeriesEnd) { RemoveEmptied(); }, fewAtATime);
    removing_->Start();
}

std::optional<FileFailure> KeptExpiry::RemoveFile(FileSystem& files, const QString& path) {
    try {
        files.RemoveEvenReadOnly(path); // what has gone by itself is as good
        return std::nullopt;
    } catch (const FileError& error) {
        return FileFailure(error);
    }
}

void KeptExpiry::RemoveEmptied() {
    if (isGivenUp_) {
        End();
        return;
    }
    emptying_.emplace(
        pool_, expired_->folders.isEmpty() ? 0 : 1,
        [&files = files_, expired = expired_](size_t) { return RemoveFolders(files, expired->folders); },
        [this](size_t, Failures failures) { Take(std::move(failures)); }, [this](SeriesEnd) { End(); }, behindOthers);
    emptying_->Start();
}

KeptExpiry::Failures KeptExpiry::RemoveFolders(FileSystem& files, const QStringList& folders) {
    Failures failures;
    for (const QString& folder : folders) {
        try {
            files.RemoveFolder(folder);
        } catch (const FileError& error) {
            failures.emplace_back(error);
        }
    }
    return failures;
}

void KeptExpiry::Take(Failures failures) {
    failures_.insert(failures_.end(), std::make_move_iterator(failures.begin()),
                     std::make_move_iterator(failures.end()));
}

void KeptExpiry::GiveUp() {
    if (!isRunning_) {
        return;
    }
    isGivenUp_ = true;
    if (emptying_) {
        emptying_->GiveUp();
    } else if (removing_) {
        removing_->GiveUp();
    } else {
        finding_->GiveUp();
    }
}

void KeptExpiry::End() {
    isRunning_ = false;
    const Failures failures = std::move(failures_);
    Q_EMIT Ended(failures);
}

} // namespace quellbox
