#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"

#include <QDateTime>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace quellbox {

/// A message that is being sent is in a hidden folder of its archive, so that no other program sends it as well, and so
/// that it is known after a crash of which messages nobody knows whether they were delivered. One rename puts it there,
/// and one brings it back.
QString SendingFolderName();
Folder SendingFolderOf(const Folder& archive);

/// The name under which a message is in the folder: when it came there, and what it was called.
struct SendingName {
    QDateTime since;
    QString folder; ///< of the archive, where the message was in one
    QString name;   ///< there

    /// What the message was called in this archive, with its folder.
    QString In(const Folder& archive) const;
};

/// Empty for a name that no message has there.
std::optional<SendingName> ParseSendingName(const QString& name);

/// What a message is called that may have been delivered: the mark stands before the ending, so that it is still listed
/// and whoever looks sees it.
QString UncertainName(const QString& name);

/// Whether the name has that mark. Such a message is sent again only by those who look at it.
bool IsUncertainName(const QString& name);

/// Takes messages out of an archive while they are sent, and brings them back. May be used by several threads at once.
class SendingFolder {
public:
    /// `files` has to outlive this object.
    SendingFolder(FileSystem& files, const Folder& archive);

    /// Takes a message out of the archive, and returns the path of its file. Throws FileError, and the message is in
    /// the archive then.
    QString Take(const QString& name, const QDateTime& now);

    /// Brings a message back whose file Take() has returned, under another name where its own is taken meanwhile.
    /// Throws FileError, and it stays in the folder then.
    QString Return(const QString& path, const QString& name);

    /// The same for one that may have been delivered, which gets the mark. Returns its name.
    QString ReturnMarked(const QString& path, const QString& name);

private:
    void Make();
    void Forget();

    FileSystem& files_;
    const Folder archive_;
    const Folder folder_;
    QMutex mutex_;
    bool isMade_ = false;
};

/// Brings back what programs have left there that were ended in the middle: messages that came there before `before`.
/// They may have been delivered, and get the mark. The folder goes when nothing is left in it. Throws FileError when
/// the folder cannot be read.
struct LeftBehind {
    QStringList returned;          ///< names that they have in the archive
    std::vector<FileError> errors; ///< of those that could not be brought back now
};
LeftBehind ReturnLeftBehind(FileSystem& files, const Folder& archive, const QDateTime& before);

} // namespace quellbox
