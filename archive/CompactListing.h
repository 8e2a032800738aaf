#pragma once

#include "platform/FolderListing.h"

#include <QStringView>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// The files of an archive, any number of them, in little memory: 24 bytes a file and the names, of which a character
/// takes one byte where the whole name is Latin-1, else two. Nothing that is large is copied when it grows.
class CompactListing {
public:
    /// Adds a file; one whose status is not known gets it by SetStatus(). Throws std::length_error for a name of more
    /// than two million characters.
    void Add(QStringView name, const std::optional<FileStatus>& status);

    size_t Count() const { return entries_.size(); }

    FileEntry At(size_t file) const;
    QString NameAt(size_t file) const;
    FileStatus StatusAt(size_t file) const;

    /// Puts the files whose status is not known before the others, and returns how many there are.
    size_t PutUnknownFirst();

    /// Without a status, the file has vanished. May be called from several threads at once, for different files.
    void SetStatus(size_t file, const std::optional<FileStatus>& status);

    /// Drops the files whose status is not known, and those that `wants`, where it is given, says no to. The others are
    /// in order of arrival then: time of last modification, then name.
    void Sort(const std::function<bool(const FileEntry&)>& wants = {});

private:
    /// Where the name begins, and how many characters it has, is packed into eight bytes.
    struct Entry {
        qint64 modifiedNs = 0;
        qint64 size = 0; // unknownSize where the status is not known
        quint64 chunk : 22;
        quint64 offset : 20; // in bytes
        quint64 length : 21;
        quint64 isWide : 1;
    };
    static_assert(sizeof(Entry) == 24);

    char* Room(size_t bytes, size_t alignment, Entry& entry);
    template <class Use>
    auto WithName(const Entry& entry, Use use) const;
    FileEntry Made(const Entry& entry) const;
    bool IsBefore(const Entry& left, const Entry& right) const;

    std::vector<Entry> entries_;
    std::vector<std::unique_ptr<char[]>> chunks_; // of characters
    size_t used_ = 0;                             // bytes of the last chunk
    size_t capacity_ = 0;                         // of the last chunk, in bytes
};

} // namespace quellbox
