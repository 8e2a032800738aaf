#pragma once

#include "delivery/Transmitter.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"

namespace quellbox {

/// The name of a message in a replay directory: that of its file in the archive, with the ending that the server looks
/// for, a number where it is not 1, and without what a Windows share does not allow in names.
QString ReplayName(const QString& name, int number);

/// The file of a message for a replay directory (Microsoft Learn, "Pickup directory and Replay directory"): its
/// envelope in fields of their own, then the message as it is.
QByteArray ReplayText(const OutgoingMessage& message);

/// Puts messages into the replay directory of an Exchange server, which delivers them as they are. Delivered: the whole
/// file is in the directory under its name, no other file was replaced, and the server has never seen a part of it.
class ReplayTransmitter : public Transmitter {
public:
    /// `files` has to outlive this object. Without a folder every message fails.
    ReplayTransmitter(FileSystem& files, const Folder& folder);

    DeliveryOutcome Transmit(const Load& load, const GoOn& goOn) override;
    QString Target() const override;

private:
    DeliveryOutcome Put(const OutgoingMessage& message);
    DeliveryOutcome Place(const QString& unfinished, const QString& name, const QByteArray& bytes);
    DeliveryOutcome OutcomeOfFault(const QString& unfinished, const FileError& error);
    bool Holds(const QString& path, const QByteArray& bytes) const;
    bool RemoveUnfinished(const QString& path);

    FileSystem& files_;
    const Folder folder_;
};

} // namespace quellbox
