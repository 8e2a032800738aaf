#pragma once

#ifndef _WIN32

#include <QByteArray>

#include <functional>
#include <map>
#include <vector>

namespace quellbox {

/// A call of the system that is given a path or the number of an open file.
struct SystemCall {
    QByteArray name;   ///< as in "rename"
    QByteArray path;   ///< also that of an open file
    QByteArray target; ///< the second path, where there is one
};

/// What becomes of a call.
struct Answer {
    int error = 0;            ///< 0 when the call is made as always
    bool takesEffect = false; ///< the call is made, and only its answer is lost
};

/// While this object lives, the calls of the system that concern files below a folder go through it: open, openat,
/// close, link, unlink, rename, renameat2, fsync, stat, lstat and fstat. Calls that its functions make do not. For
/// tests that make their calls from one thread.
class SystemCalls {
public:
    /// `folder` ends with a separator.
    explicit SystemCalls(QByteArray folder);
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    /// Asked before every call.
    std::function<Answer(const SystemCall&)> answer;

    /// Told of every call once it has been made, or has failed.
    std::function<void(const SystemCall&)> after;

    /// How many calls there were since this was asked last.
    int TakeCount();

    /// Whether a file that is no folder is open under this path.
    bool IsOpen(const QByteArray& path) const;

    // What follows is for the functions that stand before those of the system.

    static SystemCalls* Current();
    bool Concerns(const QByteArray& path) const { return path.startsWith(folder_); }
    QByteArray PathOf(int number) const;
    void SetOpened(int number, const QByteArray& path, bool isFolder);
    void SetClosed(int number);
    void SetRenamed(const QByteArray& from, const QByteArray& to);
    int Make(const SystemCall& call, const std::function<int()>& real);

private:
    struct OpenFile {
        QByteArray path;
        bool isFolder = false;
    };

    QByteArray folder_;
    std::map<int, OpenFile> open_;
    int count_ = 0;
};

} // namespace quellbox

#endif
