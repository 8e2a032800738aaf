#pragma once

#include "messages/FileFailure.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QDateTime>
#include <QMutex>

#include <memory>
#include <optional>

namespace quellbox {

struct AppState;

/// What the name of a folder with deleted messages says of it.
struct KeptFolderName {
    QDateTime made; ///< when the messages were deleted, in UTC
    int days = 0;   ///< for how long they are kept from then on

    bool operator==(const KeptFolderName&) const = default;
};

/// Empty for a name that this program does not give.
std::optional<KeptFolderName> ParseKeptFolderName(const QString& name);

/// The name of the folder in an archive that KeptFoldersOf() tells.
QString KeptFoldersName();

/// The folder in an archive that has one folder for each action which deleted messages.
Folder KeptFoldersOf(const Folder& archive);

/// The path of a message in a folder with deleted ones; in its archive it is called `name`, perhaps in a folder of it.
QString KeptPath(const Folder& kept, const QString& name);

/// Where the messages that one action deletes are kept, so that they can be put back: a folder of its own in the
/// archive, by whose name everybody knows how long they are to stay. May be used from several threads at once.
class KeptFolder {
public:
    static constexpr int mostDays = 9999;

    /// For an action of this moment, whose messages are kept for `days` days, at least one. Makes no call; `files` has
    /// to outlive this object.
    KeptFolder(FileSystem& files, const Folder& archive, int days, const QDateTime& now);

    /// Makes sure that there is the folder. The first call makes it, and those that come meanwhile wait for that.
    /// Throws FileError when it cannot be made, or is none of its own but a link; every later call then throws the
    /// same.
    void Make();

    /// Why Make() could not make it.
    std::optional<FileFailure> Refusal() const;

    /// Whether Make() has made it.
    bool IsMade() const;

    const Folder& Path() const { return folder_; }

    /// Of a message that is called `name` in the archive, perhaps in a folder of it.
    QString PathOf(const QString& name) const { return KeptPath(folder_, name); }

    /// The name of the folder within KeptFoldersOf() the archive.
    const QString& Name() const { return name_; }

private:
    enum class State { New, Made, Refused };

    FileSystem& files_;
    const Folder above_;
    const QString name_;
    const Folder folder_;
    mutable QMutex mutex_;
    State state_ = State::New;
    std::optional<FileError> error_;
};

/// Where the messages of the archive in the settings that are deleted now are to be kept; null where the user wants
/// none to be kept. `files` has to outlive it.
std::shared_ptr<KeptFolder> FolderToKeepIn(FileSystem& files, const AppState& state, const QDateTime& now);

/// What the user reads when messages could not be deleted, because there is no folder to keep them in.
QString TextOfRefusal(const Folder& archive, const FileFailure& refusal);

} // namespace quellbox
