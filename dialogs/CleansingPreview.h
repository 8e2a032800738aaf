#pragma once

#include "dialogs/CleansingSum.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/MessagePlaces.h"
#include "platform/OrderedWork.h"

#include <QObject>

#include <memory>
#include <optional>

namespace quellbox {

/// Finds out what a cleansing of an archive has to choose from: size and time of the messages that CleansingTask would
/// look at. Beside the thread of this object; one listing, and one call for a message of which the folder itself does
/// not report that. Destruction gives it up without waiting.
class CleansingPreview : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive the pool.
    CleansingPreview(const FileSystem& files, WorkPool& pool);

    /// Does nothing when it was started before.
    void Start(const Folder& archiveDir, const MessagePlaces& places = {});

    bool HasEnded() const { return hasEnded_; }

    /// Why the archive cannot be read; empty when it can.
    const QString& Error() const { return error_; }

    /// A file that vanished meanwhile is left out.
    const DayTotals& Messages() const { return messages_; }

Q_SIGNALS:
    void Ended();

private:
    struct Found;
    struct Message {
        QDate day;
        qint64 bytes = 0;
    };

    static Message MessageOf(const FileStatus& status);
    static std::shared_ptr<Found> Read(const FileSystem& files, const Folder& archive, const MessagePlaces& places);
    void ReadStatuses();
    void Add(const Message& message);
    void End(const QString& error);

    const FileSystem& files_;
    WorkPool& pool_;
    std::shared_ptr<Found> found_;
    std::optional<OrderedWork<std::shared_ptr<Found>>> listing_;
    std::optional<OrderedWork<std::optional<Message>>> statuses_;
    DayTotals messages_;
    QString error_;
    bool hasEnded_ = false;
};

} // namespace quellbox
