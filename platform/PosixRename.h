#pragma once

#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include <QByteArray>

#include <optional>
#include <sys/stat.h>

namespace quellbox {

/// Gives a file another name in the same file system and never overwrites: what is called `to` has the whole contents
/// or is not there. `before` is what lstat() told of the file, if the caller has asked. `memory` is asked for the
/// method that works in the folder of `from`, and told what was learned of it.
///
/// Returns 0 or an errno value; EXDEV when the folders are in two file systems. After an error the source is whole,
/// unless the answer to a rename was lost: then the file may be whole in its new place. Where the file is known from
/// `before`, that counts as success.
int RenameNoReplace(const QByteArray& from, const QByteArray& to, FolderMemory& memory,
                    const std::optional<struct stat>& before = std::nullopt);

/// RenameMethod::Atomic: one call, which many network file systems do not know. Returns 0 or an errno value.
int RenameAtomically(const QByteArray& from, const QByteArray& to);

/// RenameMethod::ByLink: two calls. Returns 0 or an errno value; the file may have both names then, where nobody can
/// tell whether the first one is gone.
int RenameByLink(const QByteArray& from, const QByteArray& to);

/// RenameMethod::Checked: two calls, and one more without `before`. Two programs that give the same name within the
/// same instant are not kept apart: the name was free when this one looked, and the later rename replaces the file of
/// the earlier one. That is bearable where no other method works. The names of messages are made up by the mail server
/// and differ, and what a server does with its pickup directory is to empty it, not to add to it. Returns 0 or an errno
/// value.
int RenameChecked(const QByteArray& from, const QByteArray& to, const std::optional<struct stat>& before);

/// Removes a file that has been moved. Returns 0 when it is gone, else an errno value.
int RemoveSource(const QByteArray& from);

/// Whether a file that could not be removed is certainly still there.
bool IsPresent(const QByteArray& path);

/// Whether a rename that was answered with an error has been done all the same, since the answer was lost: nothing is
/// called `from` any more, and `to` is the file of which lstat() told `before`.
bool HasArrived(const QByteArray& from, const QByteArray& to, const struct stat& before);

} // namespace quellbox

#endif
