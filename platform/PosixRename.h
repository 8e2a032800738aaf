#pragma once

#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include <QByteArray>

#include <optional>
#include <sys/stat.h>

namespace quellbox {

/// Renames a file within a file system and never overwrites: at any moment `to` either does not exist or has the whole
/// contents. `before` is the result of lstat() for the source, where the caller has it. `memory` has the method that
/// works in the folder of `from`, and is updated.
///
/// Returns 0 or an errno value; EXDEV when the folders are in two file systems. After an error the source is whole. A
/// file that has been renamed although only the server's reply was lost is recognised, which counts as success.
int RenameNoReplace(const QByteArray& from, const QByteArray& to, FolderMemory& memory,
                    const std::optional<struct stat>& before = std::nullopt);

/// RenameMethod::Atomic: one call, which many network file systems do not support. Returns 0 or an errno value.
int RenameAtomically(const QByteArray& from, const QByteArray& to);

/// RenameMethod::ByLink: two calls. Returns 0 or an errno value. After an error the file may have both names, where it
/// cannot be found out whether the old one is gone.
int RenameByLink(const QByteArray& from, const QByteArray& to);

/// RenameMethod::Checked: two calls. A race remains: when another program creates `to`
/// between the check and the rename, its file is replaced. That is acceptable where no other method works: two messages
/// have different names, which the mail server has invented, and a server only takes files out of its pickup directory
/// and adds none. Returns 0 or an errno value.
int RenameChecked(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before);

/// Whether a file that could not be removed is certainly still there.
bool IsPresent(const QByteArray& path);

/// Whether a rename that has failed took place all the same, and only the server's reply was lost: `from` does not
/// exist any more, and `to` is a regular file, with the size and time of `before` where that is given.
bool HasArrived(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before);

} // namespace quellbox

#endif
