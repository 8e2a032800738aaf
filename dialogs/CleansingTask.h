#pragma once

#include "messages/ActionRecord.h"
#include "messages/FileFailure.h"
#include "messages/KeptFolder.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/MessagePlaces.h"
#include "platform/OrderedWork.h"

#include <QDate>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// What a cleansing run did.
struct CleansingResult {
    qint32 count = 0; ///< files outside the day window; those that could not be removed count too
    std::vector<FileFailure> failures;

    /// Why nothing could be kept of what was to be deleted. No message was touched then, and the count is 0.
    std::optional<FileFailure> refused;
};

/// Deletes the messages of an archive whose last modification lies outside a window of calendar days, many at once
/// beside the thread of this object. Messages are the visible files named *.EML in any case, or as the places say, that
/// were there at the start; nothing but their folders is touched. A failure never stops the run.
///
/// What is deleted can be kept in a folder, which is made when the first message is to go there.
class CleansingTask : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    CleansingTask(FileSystem& files, WorkPool& pool);

    /// Keeps what was modified on one of the `days` calendar days that end with `today`; 0 keeps nothing, and a
    /// negative number, which stands for no choice, everything. What is deleted goes into `kept` where that is given.
    /// Does nothing while a run is under way.
    ///
    /// What is done is written into `record` where that is given; `known` tells what is known of a message.
    void Start(const Folder& archiveDir, qint16 days, QDate today, std::shared_ptr<KeptFolder> kept = nullptr,
               std::shared_ptr<ActionRecord> record = nullptr,
               std::function<MessageRow(const QString& name)> known = {}, const MessagePlaces& places = {});

    /// No further file is touched. The run ends when those that have begun have ended.
    void Cancel();

    /// Ends the run before this returns. What is under way goes on.
    void GiveUp();

    bool IsRunning() const { return isRunning_; }
    bool IsCancelled() const { return isRunning_ && isCancelled_; }

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
        bool isRefused = false; ///< the folder to keep it in cannot be made, as the failure says
        std::optional<FileFailure> failure;
    };

    /// What is done to each file.
    struct Order {
        Folder folder;
        QString days; // as IsRecentFile() takes it
        QDate today;
        std::shared_ptr<KeptFolder> kept;
        std::shared_ptr<ActionRecord> record;

        bool IsKept(const FileStatus& status) const;
    };

    struct Names {
        QStringList names;
        std::optional<FileFailure> failure;
    };

    static Names ReadNames(const FileSystem& files, const Folder& archive, const MessagePlaces& places);
    static bool Remove(FileSystem& files, const QString& path, const Order& order);
    static bool Keep(FileSystem& files, const QString& name, const Order& order);
    static Fate Cleanse(FileSystem& files, const QString& name, const Order& order);
    static Fate CleanseOnRecord(FileSystem& files, const MessageRow& message, const Order& order);
    std::shared_ptr<const std::vector<MessageRow>> Messages() const;
    void RemoveFiles();
    void Take(size_t item, Fate fate);
    void End();

    FileSystem& files_;
    WorkPool& pool_;
    Order order_;
    std::function<MessageRow(const QString& name)> known_;
    std::shared_ptr<QStringList> names_;
    std::optional<OrderedWork<Names>> listing_;
    std::optional<OrderedWork<Fate>> removing_;
    CleansingResult result_;
    bool isRunning_ = false;
    bool isCancelled_ = false;
};

} // namespace quellbox
