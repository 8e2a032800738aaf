#pragma once

#ifndef _WIN32

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSet>

#include <optional>

namespace quellbox {

/// How a file gets another name that must not be in use, the best first.
enum class RenameMethod {
    Atomic, ///< one call of the system, which refuses a name in use
    ByLink, ///< a second name for the file, which a name in use prevents; then the first name is removed
    Checked ///< a look whether the name is free, then a rename
};

/// What has been learned of folders from which files are moved, so that no call is made whose answer is known: on a
/// share each one costs a round trip. Paths are bytes; the folder of one is what stands before its last separator. May
/// be used from several threads at once.
class FolderMemory {
public:
    /// `folder` has been listed: whatever is in it is a regular file, except for the names in `others`. What was known
    /// of renaming there is forgotten, since another file system may be mounted there by now.
    void SetListed(const QByteArray& folder, QSet<QByteArray> others);

    /// Whether the last listing of its folder says that `path` is a regular file. A name that has come since then
    /// counts as one too: what comes into an archive are messages.
    bool IsRegularFile(const QByteArray& path) const;

    /// The best method that may work in the folder of `path`.
    RenameMethod MethodFor(const QByteArray& path) const;

    /// Only this method and those after it work in the folder of `path`.
    void SetMethod(const QByteArray& path, RenameMethod method);

private:
    struct Folder {
        std::optional<QSet<QByteArray>> others; // empty when the folder has not been listed
        RenameMethod method = RenameMethod::Atomic;
    };

    Folder& At(const QByteArray& folder);

    mutable QMutex mutex_;
    QHash<QByteArray, Folder> folders_;
};

} // namespace quellbox

#endif
