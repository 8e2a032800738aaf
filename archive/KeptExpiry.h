#pragma once

#include "messages/FileFailure.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/OrderedWork.h"

#include <QDate>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// Deletes for good what was kept of deleted messages for as long as the names of its folders say. Nobody waits for it:
/// few threads do it beside the one of this object. What this program has not put there is not touched, and no link is
/// followed.
class KeptExpiry : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    KeptExpiry(FileSystem& files, WorkPool& pool);

    /// Deletes what was kept in `archive` and is to go on `today`. Where nothing is kept that costs one listing. Does
    /// nothing while it is under way.
    void Start(const Folder& archive, QDate today);

    /// Ends before this returns. What is under way goes on; the rest goes another time.
    void GiveUp();

    bool IsRunning() const { return isRunning_; }

Q_SIGNALS:
    /// It has ended; `failures` are what could not be deleted.
    void Ended(const std::vector<FileFailure>& failures);

private:
    using Failures = std::vector<FileFailure>;

    /// What is to go.
    struct Expired {
        QStringList folders;
        QStringList files; ///< in these folders
        Failures failures;
    };

    static QStringList ExpiredFolders(const FileSystem& files, const Folder& archive, QDate today);
    static void AddFiles(const FileSystem& files, const QString& folder, Expired& expired);
    static Expired Find(const FileSystem& files, const Folder& archive, QDate today);
    static std::optional<FileFailure> RemoveFile(FileSystem& files, const QString& path);
    static Failures RemoveFolders(FileSystem& files, const QStringList& folders);
    void RemoveFiles();
    void RemoveEmptied();
    void Take(Failures failures);
    void End();

    FileSystem& files_;
    WorkPool& pool_;
    std::shared_ptr<const Expired> expired_;
    std::optional<OrderedWork<std::shared_ptr<const Expired>>> finding_;
    std::optional<OrderedWork<std::optional<FileFailure>>> removing_;
    std::optional<OrderedWork<Failures>> emptying_;
    Failures failures_;
    bool isRunning_ = false;
    bool isGivenUp_ = false;
};

} // namespace quellbox
