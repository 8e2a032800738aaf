#pragma once

#include "platform/FileSystem.h"
#include "platform/Volumes.h"

#include <QHash>
#include <QMutex>

namespace quellbox {

/// Files and folders for a system that knows no UNC paths: a path that begins with two backslashes is resolved to the
/// place where its share is mounted, every other one goes through as it is. What follows the last backslash is the
/// name of the file. When a share is not mounted, calls throw FileError with the UNC path or return that nothing
/// exists. Errors of the system have the local path.
///
/// Calls that only read resolve a folder once and then remember its place. FolderExists() forgets all places, so that a
/// share that is now mounted elsewhere is found when its folder is first checked. Calls that move, write or remove
/// files resolve anew each time: where a share was mounted before, there may now be a folder of this computer.
class ShareFileSystem : public FileSystem {
public:
    /// `volumes` has to outlive this object.
    ShareFileSystem(std::unique_ptr<FileSystem> files, const Volumes& volumes);

    bool FolderExists(const QString& folder) const override;
    bool IsRealFolder(const QString& folder) const override;
    bool FileExists(const QString& path) const override;
    std::vector<FolderEntry> Entries(const QString& folder) const override;
    void VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const override;
    std::optional<FileStatus> Status(const QString& path) const override;
    std::unique_ptr<InputFile> Open(const QString& path) const override;
    std::unique_ptr<FolderReader> ReadFolder(const QString& folder) const override;
    void PrepareMoves(const QString& folder) const override;
    void Move(const QString& from, const QString& to) override;
    bool MoveUnless(const QString& from, const QString& to,
                    const std::function<bool(const FileStatus&)>& keep) override;
    bool Remove(const QString& path) override;
    bool RemoveEvenReadOnly(const QString& path) override;
    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override;
    void MakeFolder(const QString& folder) override;
    bool RemoveFolder(const QString& folder) override;
    void WriteWhole(const QString& path, const QByteArray& bytes) override;

private:
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
