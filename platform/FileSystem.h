#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// What the file system tells of a regular file without opening it.
struct FileStatus {
    qint64 size = 0;       ///< bytes
    qint64 modifiedNs = 0; ///< last modification, nanoseconds since 1970-01-01 UTC
};

/// What a folder tells of one of its files.
struct FolderEntry {
    QString name; ///< without the folder

    /// Size and time, where the folder itself tells them: on Windows, of what is no link, is not empty, and was last
    /// written minutes ago. What a folder tells is not up to date while another program has the file open, and where
    /// the file was changed by another of its names.
    std::optional<FileStatus> status;
};

/// A file opened for reading from its start; closed by the destructor.
class InputFile {
public:
    virtual ~InputFile() = default;

    /// Reads up to `capacity` bytes; 0 at the end of the file. Throws FileError.
    virtual qint64 Read(char* buffer, qint64 capacity) = 0;
};

/// The port to files and folders. Paths are texts in the form that FileEntries() returns: readable, and mapped back to
/// the exact bytes of the name (see PathBytes.h). Every method may be called from several threads at once.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool FolderExists(const QString& folder) const = 0;

    /// True when `path` names a regular file, or a symbolic link to one.
    virtual bool FileExists(const QString& path) const = 0;

    /// Everything in `folder` that may be a regular file, in no particular order; what comes without a status, and
    /// Status() does not confirm, is to be skipped. Throws FileError.
    virtual std::vector<FolderEntry> FileEntries(const QString& folder) const = 0;

    /// Names (without folder) of the regular files in `folder`, symbolic links to one included, that are neither hidden
    /// nor of the system, in no particular order. A file is looked at singly only where the folder does not tell its
    /// type. Throws FileError.
    virtual QStringList VisibleFileNames(const QString& folder) const = 0;

    /// Names (without folder) of the sub folders of `folder`, of links to folders too but not of hidden ones, in no
    /// particular order. Throws FileError.
    virtual QStringList FolderNames(const QString& folder) const = 0;

    /// Size and time of a regular file (or of the one that a symbolic link names); empty when it has vanished or is
    /// something else.
    virtual std::optional<FileStatus> Status(const QString& path) const = 0;

    /// Opens a file for reading. Throws FileError.
    virtual std::unique_ptr<InputFile> Open(const QString& path) const = 0;

    /// Moves a file and never overwrites: an existing `to` is an error. Within one file system this is one atomic
    /// rename; across file systems the file is copied under a temporary name, flushed, renamed into place, and only
    /// then is the source removed. Such a copy has the contents, the times and what the other file system knows of
    /// owner, permissions or attributes, but not what else a file may have, as named streams on Windows. Throws
    /// FileError, and the source is then still whole; or the file at `to` is, where the source cannot be removed and
    /// nobody can tell whether it is still there.
    virtual void Move(const QString& from, const QString& to) = 0;

    /// Deletes a file, but not a read-only one. Throws FileError.
    virtual void Remove(const QString& path) = 0;

    /// Deletes a regular file (or a symbolic link to one) as Remove() does, unless `keep` answers to its status that it
    /// stays; the system is asked for the status once. Returns whether the file was deleted. Throws FileError, also
    /// when the status cannot be read.
    virtual bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) = 0;

    /// Creates a file with these bytes so that nobody ever sees half of it; replaces an existing one. Throws FileError.
    virtual void WriteWhole(const QString& path, const QByteArray& bytes) = 0;
};

/// Reads a whole file. Stops early, with what it has, when `goOn` is given and says no. Throws FileError.
QByteArray ReadWhole(const FileSystem& files, const QString& path, const std::function<bool()>& goOn = {});

} // namespace quellbox
