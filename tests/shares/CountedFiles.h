#pragma once

#include "platform/FileSystem.h"

#include <condition_variable>
#include <mutex>

namespace quellbox {

/// Files that count the messages that are dealt with, and hold back all but some of them until GoOn(). So it is certain
/// how many have been dealt with by then, that a few are in the middle of it, and that the others have not begun.
class CountedFiles : public FileSystem {
public:
    /// Lets this many end, and besides those `inside` at most begin. `files` has to outlive this object.
    CountedFiles(FileSystem& files, int most, int inside) : files_(files), most_(most), mostBegun_(most + inside) {}

    /// Whether as many have ended as may.
    bool IsReady() const {
        const std::lock_guard lock(mutex_);
        return ended_ >= most_;
    }

    void GoOn() {
        const std::lock_guard lock(mutex_);
        goesOn_ = true;
        changed_.notify_all();
    }

    bool FolderExists(const QString& folder) const override { return files_.FolderExists(folder); }
    bool IsRealFolder(const QString& folder) const override { return files_.IsRealFolder(folder); }
    bool FileExists(const QString& path) const override { return files_.FileExists(path); }
    std::vector<FolderEntry> Entries(const QString& folder) const override { return files_.Entries(folder); }
    std::optional<FileStatus> Status(const QString& path) const override { return files_.Status(path); }
    std::unique_ptr<InputFile> Open(const QString& path) const override { return files_.Open(path); }
    std::unique_ptr<FolderReader> ReadFolder(const QString& folder) const override { return files_.ReadFolder(folder); }
    void MakeFolder(const QString& folder) override { files_.MakeFolder(folder); }
    bool RemoveFolder(const QString& folder) override { return files_.RemoveFolder(folder); }
    void WriteWhole(const QString& path, const QByteArray& bytes) override { files_.WriteWhole(path, bytes); }

    void Move(const QString& from, const QString& to) override {
        const Turn turn(*this);
        files_.Move(from, to);
    }

    bool MoveUnless(const QString& from, const QString& to,
                    const std::function<bool(const FileStatus&)>& keep) override {
        const Turn turn(*this);
        return files_.MoveUnless(from, to, keep);
    }

    bool Remove(const QString& path) override {
        const Turn turn(*this);
        return files_.Remove(path);
    }

    bool RemoveEvenReadOnly(const QString& path) override {
        const Turn turn(*this);
        return files_.RemoveEvenReadOnly(path);
    }

    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        const Turn turn(*this);
        return files_.RemoveUnless(path, keep);
    }

private:
    class Turn {
    public:
        explicit Turn(CountedFiles& files) : files_(files) {
            std::unique_lock lock(files_.mutex_);
            files_.changed_.wait(lock, [this] { return files_.goesOn_ || files_.begun_ < files_.mostBegun_; });
            ++files_.begun_;
        }
        ~Turn() {
            const std::lock_guard lock(files_.mutex_);
            ++files_.ended_;
        }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        CountedFiles& files_;
    };

    FileSystem& files_;
    const int most_;
    const int mostBegun_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int begun_ = 0;
    int ended_ = 0;
    bool goesOn_ = false;
};

} // namespace quellbox
