#pragma once

#include "platform/FileSystem.h"
#include "platform/Volumes.h"

#include <QHash>
#include <QMutex>

namespace quellbox {

/// Files and folders for a system that knows no UNC paths: a path that begins with two backslashes is resolved to the
/// place where its share is mounted, every other one goes through as it is. What stands behind the last backslash is
/// the name of the file. When a share is not mounted, calls throw FileError with the UNC path or answer that there is
/// nothing. Errors of the system name the local path.
///
/// For what only reads, the place of a folder is asked for once and then remembered. FolderExists() forgets all of
/// them, so that a share mounted elsewhere is found by whoever looks for its folder first. What moves, writes or
/// removes files asks anew each time: where a share was mounted, a folder of this computer may lie in sight by now.
class ShareFileSystem : public FileSystem {
public:
    /// `volumes` has to outlive this object.
    ShareFileSystem(std::unique_ptr<FileSystem> files, const Volumes& volumes);

    bool FolderExists(const QString& folder) const override;
    bool FileExists(const QString& path) const override;
    std::vector<FolderEntry> FileEntries(const QString& folder) const override;
    QStringList VisibleFileNames(const QString& folder) const override;
    QStringList FolderNames(const QString& folder) const override;
    std::optional<FileStatus> Status(const QString& path) const override;
    std::unique_ptr<InputFile> Open(const QString& path) const override;
    void Move(const QString& from, const QString& to) override;
    void Remove(const QString& path) override;
    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override;
    void WriteWhole(const QString& path, const QByteArray& bytes) override;

private:
    using Listing = QStringList (FileSystem::*)(const QString&) const;

    QStringList Names(Listing listing, const QString& folder) const;
    using Place = QString (ShareFileSystem::*)(const QString&) const;

    QString RememberedPlace(const QString& uncFolder) const;
    QString PresentPlace(const QString& uncFolder) const;
    QString LocalPath(const QString& path, Place place) const;
    QString LocalOrThrow(const QString& path, Place place) const;
    QString ReadablePath(const QString& path) const;
    QString ChangeablePath(const QString& path) const;
    QString FolderOrThrow(const QString& folder) const;

    std::unique_ptr<FileSystem> files_;
    const Volumes& volumes_;
    mutable QMutex mutex_;
    mutable QHash<QString, QString> places_; // local folder by UNC folder, both with a separator at their end
    mutable quint64 generation_ = 0;         // how often places_ has been emptied
};

/// The files and folders of the computer, in which a UNC path works on every system. `volumes` has to outlive them.
std::unique_ptr<FileSystem> MakeFileSystem(const Volumes& volumes);

} // namespace quellbox
