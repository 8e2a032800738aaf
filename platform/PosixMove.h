#pragma once

#ifndef _WIN32

#include <QByteArray>
#include <QString>

namespace quellbox {

/// Gives a file another name in the same file system and never overwrites. Returns 0 or an errno value; after an error
/// the source is whole.
int RenameNoReplace(const QByteArray& from, const QByteArray& to);

/// The way of RenameNoReplace() on a file system that cannot rename without replacing.
int RenameByLink(const QByteArray& from, const QByteArray& to);

/// The way of RenameNoReplace() on a file system that knows no hard links either: an empty file reserves the name.
int RenameByReservation(const QByteArray& from, const QByteArray& to);

/// FileSystem::Move() across file systems: copies contents, time and permissions under a temporary name, renames the
/// copy into place and removes the source. Throws FileError, and the source is then whole in its own folder only.
void MoveByCopy(const QString& from, const QString& to);

} // namespace quellbox

#endif
