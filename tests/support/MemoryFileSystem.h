#pragma once

#include "platform/FileSystem.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <set>

namespace quellbox {

/// Files and folders in memory, which fail where a test says. The folder of a path is what stands before its last '/';
/// folders may be named with or without a separator at their end. Separators in a row count as one. May be used from
/// several threads.
class MemoryFileSystem : public FileSystem {
public:
    void AddFolder(const QString& folder);

    /// Lets a folder vanish, but nothing in it.
    void LoseFolder(const QString& folder);

    /// Adds or replaces a file, and its folder when that is missing.
    void Add(const QString& path, const QByteArray& bytes, qint64 modifiedNs = 0);

    void SetReadOnly(const QString& path);

    /// Lets the n-th call from now fail, n counted from 1 over all methods of the port and Read(). What cannot throw
    /// answers that there is nothing.
    void FailCall(int n);

    /// Lets every call that names `path` fail from now on.
    void FailPath(const QString& path, const QString& reason);

    /// Every call takes so long; calls of several threads wait at the same time.
    void SetLatency(std::chrono::microseconds latency);

    /// `hook` is called with the path before every Read(), outside of all locks.
    void SetReadHook(std::function<void(const QString&)> hook);

    /// `hook` is called with the path before every call that moves or removes a file or makes or removes a folder,
    /// outside of all locks.
    void SetChangeHook(std::function<void(const QString&)> hook);

    /// Folders tell the status of those of their files whose names `tells` says yes to, and of no other ones.
    void LetFoldersTellStatus(std::function<bool(const QString&)> tells);

    /// How often Open() was called.
    int OpenCount() const;

    /// How many calls there were of all methods of the port and of Read().
    int CallCount() const;

    /// The bytes of an existing file.
    QByteArray Bytes(const QString& path) const;

    /// All files, in order of their paths.
    QStringList Paths() const;

    bool FolderExists(const QString& folder) const override;
    bool IsRealFolder(const QString& folder) const override;
    bool FileExists(const QString& path) const override;
    std::vector<FolderEntry> Entries(const QString& folder) const override;
    void PrepareMoves(const QString& folder) const override;
    std::optional<FileStatus> Status(const QString& path) const override;
    std::unique_ptr<InputFile> Open(const QString& path) const override;
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
    friend class MemoryInputFile;

    struct File {
        QByteArray bytes;
        qint64 modifiedNs = 0;
        bool readOnly = false;
    };

    /// Counts a call and waits its latency. Returns why it has to fail; empty when it has not.
    QString Enter(const QString& path) const;
    void EnterOrThrow(const QString& path) const;
    void EnterChange(const QString& path) const;
    QString PrefixOrThrow(const QString& folder) const;
    void RequireFolderOf(const QString& path) const;
    std::map<QString, File>::const_iterator Find(const QString& path) const;
    void MoveFile(const QString& from, const QString& to);
    bool RemoveFile(const QString& path, bool evenReadOnly);

    mutable std::mutex mutex_;
    std::map<QString, File> files_;
    std::set<QString> folders_;
    std::map<QString, QString> failures_;
    std::chrono::microseconds latency_{0};
    std::function<void(const QString&)> readHook_;
    std::function<void(const QString&)> changeHook_;
    std::function<bool(const QString&)> foldersTell_;
    mutable int failIn_ = 0;
    mutable int calls_ = 0;
    mutable int opens_ = 0;
};

} // namespace quellbox
