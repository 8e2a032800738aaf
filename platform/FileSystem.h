#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// What the file system reports of a regular file without opening it.
struct FileStatus {
    qint64 size = 0;       ///< bytes
    qint64 modifiedNs = 0; ///< last modification, nanoseconds since 1970-01-01 UTC

    bool operator==(const FileStatus&) const = default;
};

/// The type of a folder's entry, as the folder reports it.
enum class EntryKind {
    File,   ///< a regular file
    Folder, ///< on Windows also a link to one
    Other,  ///< nothing that this program deals with, as a pipe or a device
    Unknown ///< a link, or the folder does not report it: only Status() or FolderExists() knows
};

/// What a folder reports of one of its entries.
struct FolderEntry {
    QString name; ///< without the folder
    EntryKind kind = EntryKind::Unknown;

    /// Not shown to users: the name begins with a dot; on Windows the entry has the attribute Hidden, or is a file with
    /// the attribute System.
    bool hidden = false;

    /// Size and time, where the folder itself reports them: on Windows, of what is no link, is not empty, and was last
    /// written minutes ago. What a folder reports is not up to date while another program has the file open, or where
    /// the file was changed under another of its names.
    std::optional<FileStatus> status;
};

/// A file opened for reading from its start; closed by the destructor.
class InputFile {
public:
    virtual ~InputFile() = default;

    /// Reads up to `capacity` bytes; 0 at the end of the file. Throws FileError.
    virtual qint64 Read(char* buffer, qint64 capacity) = 0;
};

/// A folder that was opened to read many of its files. It stays the folder that it was then, wherever its path leads by
/// now, and the system need not find it again for every file. Every method may be called from several threads at once.
class FolderReader {
public:
    virtual ~FolderReader() = default;

    /// Whether something was mounted at the folder when it was opened. False where the system cannot tell. Throws
    /// FileError where the user has no right to look for files in the folder.
    virtual bool IsMountPoint() const { return false; }

    /// As FileSystem::Status(), for a name in the folder. Throws FileError where the server does not answer.
    virtual std::optional<FileStatus> Status(const QString& name) const = 0;

    /// Opens a file for reading that Status() has confirmed, which is not checked again. Should there be something else
    /// by now, opening and reading it still does not block, but there may be no end to it. Throws FileError.
    virtual std::unique_ptr<InputFile> Open(const QString& name) const = 0;
};

/// The port to files and folders. Paths are texts in the form that Entries() returns: readable, and mapped back to
/// the exact bytes of the name (see PathBytes.h). Every method may be called from several threads at once.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool FolderExists(const QString& folder) const = 0;

    /// True for a folder itself, and false for a link to one. Costs one call.
    virtual bool IsRealFolder(const QString& folder) const = 0;

    /// True when `path` names a regular file, or a symbolic link to one.
    virtual bool FileExists(const QString& path) const = 0;

    /// Everything in `folder` but "." and "..", in no particular order. No call is made for a single entry. Throws
    /// FileError.
    virtual std::vector<FolderEntry> Entries(const QString& folder) const = 0;

    /// Calls `visit` for each of these entries, so that those of a large folder need not be in memory all at once.
    /// Throws FileError, maybe after some calls, and what `visit` throws, which ends it.
    virtual void VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const;

    /// Size and time of a regular file (or of the one that a symbolic link names); empty when it has vanished or is
    /// something else.
    virtual std::optional<FileStatus> Status(const QString& path) const = 0;

    /// Opens a file for reading. Throws FileError.
    virtual std::unique_ptr<InputFile> Open(const QString& path) const = 0;

    /// Opens a folder, which ends with a separator, to read many of its files. This object has to outlive the reader.
    /// Without an adaptor's own way, the reader finds every file by its path. Throws FileError.
    virtual std::unique_ptr<FolderReader> ReadFolder(const QString& folder) const;

    /// Moves a file and never overwrites: an existing `to` is an error. Whatever is called `to` has the whole contents,
    /// at any moment. Within one file system this is one atomic rename, where the file system has one; across file
    /// systems the file is copied under a temporary name, flushed, closed, renamed into place, and only then is the
    /// source removed; what a fault leaves behind of such a name is removed with a later copy. Such a copy has the
    /// contents, the times and what the other file system knows of owner, permissions or attributes, but not what else
    /// a file may have, as named streams on Windows. Throws FileError, and the source is then still whole; or the file
    /// at `to` is, where a share does not answer and it cannot be found out whether the source is still there.
    virtual void Move(const QString& from, const QString& to) = 0;

    /// To be called before many files of `folder` are moved: a file system that would ask the server for the type of
    /// each of them learns all types at once, unless it knows them. Does nothing when the folder cannot be read; the
    /// moves will tell.
    virtual void PrepareMoves(const QString& /*folder*/) const {}

    /// Moves a regular file (or the contents of the one that a symbolic link names) as Move() does, unless `keep`
    /// returns true for its status, which is read once. Returns whether the file was moved. Throws FileError, also when
    /// the status cannot be read, and what `keep` throws.
    virtual bool MoveUnless(const QString& from, const QString& to,
                            const std::function<bool(const FileStatus&)>& keep) = 0;

    /// Deletes the file at `path`, if FileExists() would say that there is one, but not a read-only one. Returns
    /// whether there was one. Throws FileError, also when its folder is missing or not the one that was listed: its
    /// share may not be mounted any more, or anew.
    virtual bool Remove(const QString& path) = 0;

    /// The same for a file that may be read-only.
    virtual bool RemoveEvenReadOnly(const QString& path) = 0;

    /// Deletes a regular file (or a symbolic link to one) as Remove() does, unless `keep` returns true for its status,
    /// which is read once. Returns whether the file was deleted. Throws FileError, also when the status cannot be read.
    virtual bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) = 0;

    /// Makes a folder that users are not shown: on Windows it gets the attribute Hidden, elsewhere its name has to
    /// begin with a dot. Whoever may use the folder that it is in may use it as well. One that is there already will
    /// do, but no link to one. Throws FileError.
    virtual void MakeFolder(const QString& folder) = 0;

    /// Removes an empty folder. Returns false when it is not empty or does not exist. Throws FileError, also for a
    /// link.
    virtual bool RemoveFolder(const QString& folder) = 0;

    /// Creates a file with these bytes in one step, so that no program ever reads a part of them; replaces an existing
    /// file. Throws FileError.
    virtual void WriteWhole(const QString& path, const QByteArray& bytes) = 0;

protected:
    /// Entries() of an adaptor that has a VisitEntries() of its own.
    std::vector<FolderEntry> VisitedEntries(const QString& folder) const;
};

/// Reads a file to its end. Stops early, with what it has, when `goOn` is given and says no. Throws FileError.
QByteArray ReadWhole(InputFile& file, const std::function<bool()>& goOn = {});

/// Opens a file and reads it. Stops early, with what it has, when `goOn` is given and says no. Throws FileError.
QByteArray ReadWhole(const FileSystem& files, const QString& path, const std::function<bool()>& goOn = {});

} // namespace quellbox
