#pragma once

#include "messages/FileFailure.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/OrderedWork.h"

#include <QDate>
#include <QObject>
#include <QStringList>

#include <optional>
#include <vector>

namespace quellbox {

/// What a cleansing run did.
struct CleansingResult {
    qint32 count = 0; ///< files outside the day window; those that could not be removed count too
    std::vector<FileFailure> failures;
};

/// Deletes the messages of an archive whose last modification lies outside a window of calendar days, many at once
/// beside the thread of this object. Messages are the visible files named *.EML in any case that were there at the
/// start; their folder alone is touched. A failure never stops the run.
class CleansingTask : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    CleansingTask(FileSystem& files, WorkPool& pool);

    /// Keeps what was modified on one of the `days` calendar days that end with `today`; 0 keeps nothing, and a
    /// negative number, which stands for no choice, everything. Does nothing while a run is under way.
    void Start(const Folder& archiveDir, qint16 days, QDate today);

    /// No further file is touched. The run ends when those that have begun have ended.
    void Cancel();

    /// Ends the run before this returns. What is under way goes on.
    void GiveUp();

    bool IsRunning() const { return isRunning_; }
    bool IsCancelled() const { return isRunning_ && isCancelled_; }

    /// Whether a visible file of that name is a message.
    static bool IsMessage(const QString& name);

Q_SIGNALS:
    /// So many files are looked at.
    void Counted(int files);

    /// So many of them have been dealt with.
    void Progress(int done);

    /// The 1st, 26th, 51st... file to be removed has gone.
    void Removing(const QString& name);

    void Ended(const CleansingResult& result);

private:
    /// What became of a file.
    struct Fate {
        bool wasKept = false;
        std::optional<FileFailure> failure;
    };

    struct Names {
        QStringList names;
        std::optional<FileFailure> failure;
    };

    static Names ReadNames(const FileSystem& files, const QString& folder);
    static Fate Cleanse(FileSystem& files, const QString& path, const QString& days, QDate today);
    void RemoveFiles();
    void Take(size_t item, Fate fate);
    void End();

    FileSystem& files_;
    WorkPool& pool_;
    Folder folder_;
    QString days_; // as IsRecentFile() takes it
    QDate today_;
    std::shared_ptr<QStringList> names_;
    std::optional<OrderedWork<Names>> listing_;
    std::optional<OrderedWork<Fate>> removing_;
    CleansingResult result_;
    bool isRunning_ = false;
    bool isCancelled_ = false;
};

} // namespace quellbox
