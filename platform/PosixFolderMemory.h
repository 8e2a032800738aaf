#pragma once

#ifndef _WIN32

#include "platform/PosixLeftovers.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSet>

#include <optional>
#include <sys/types.h>

namespace quellbox {

/// How to rename a file without replacing another one, the best method first.
enum class RenameMethod {
    Atomic, ///< one system call, which fails when the new name exists
    ByLink, ///< a hard link, which fails when the new name exists; then the old name is removed
    Checked ///< a check that the new name does not exist, then a plain rename
};

/// What is known of the folders from which files are moved. It saves system calls whose result is known, since on a
/// share each one costs a round trip. Paths are bytes. May be used from several threads at once.
class FolderMemory {
public:
    /// So many entries of a folder that are no regular files are remembered; with more of them it counts as not listed.
    static constexpr qsizetype mostOthers = 1000;

    /// To be called when `folder` has been listed: all its entries are regular files, except for those in `others`, and
    /// lie on the file system `device`, where that is known. The method for renaming is found out anew afterwards,
    /// since another file system may have been mounted there.
    void SetListed(const QByteArray& folder, QSet<QByteArray> others, const std::optional<dev_t>& device);

    /// Whether the types of the files in a folder are known.
    bool IsListed(const QByteArray& folder) const;

    /// Whether `path` is a regular file according to the last listing of its folder. A file that is newer than the
    /// listing counts as a regular one: what arrives in an archive are messages.
    bool IsRegularFile(const QByteArray& path) const;

    /// The file system on which the folder of `path` was when it was listed last, where that is known.
    std::optional<dev_t> DeviceOf(const QByteArray& path) const;

    /// Whether a file cannot be renamed from the folder of one path into that of the other: two file systems, or two
    /// shares between which the rename would be a copy under the final name; see LieInTwoDesktopShares(). The second
    /// is found out once after each listing of the first folder.
    bool MustBeCopied(const QByteArray& from, const QByteArray& to);
    void SetMustBeCopied(const QByteArray& from, const QByteArray& to, bool must);

    /// Whether the last file that was copied into the folder of `path` was found to lie on a share as IsUsersShare()
    /// means it.
    bool IsOnUsersShare(const QByteArray& path) const;
    void SetOnUsersShare(const QByteArray& path, bool isShare);

    /// The best method that is not known to fail in the folder of `path`.
    RenameMethod MethodFor(const QByteArray& path) const;

    /// To be called when all better methods than this one have failed in the folder of `path`.
    void SetMethod(const QByteArray& path, RenameMethod method);

    /// What could not be removed from folders.
    Leftovers& Left() { return leftovers_; }

private:
    struct Folder {
        std::optional<QSet<QByteArray>> others; // empty when the folder has not been listed
        std::optional<dev_t> device;
        RenameMethod method = RenameMethod::Atomic;
        QByteArray target; // a folder for which mustBeCopied has been found out
        bool mustBeCopied = false;
        bool isOnUsersShare = false;
    };

    Folder& At(const QByteArray& folder);

    Leftovers leftovers_;
    mutable QMutex mutex_;
    QHash<QByteArray, Folder> folders_;
};

} // namespace quellbox

#endif
