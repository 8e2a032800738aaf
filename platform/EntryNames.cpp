#include "platform/EntryNames.h"

#include "platform/FolderPath.h"

#include <algorithm>

namespace quellbox {

namespace {

using Check = bool (FileSystem::*)(const QString& path) const;

/// The names of the entries of a kind that are not hidden. Those of unknown kind are checked with `isOfKind`.
QStringList VisibleNames(const FileSystem& files, const QString& folder, std::vector<FolderEntry> entries,
                         EntryKind kind, Check isOfKind) {
    QStringList names;
    for (FolderEntry& entry : entries) {
        if (entry.hidden) {
            continue;
        }
        if (entry.kind == EntryKind::Unknown ? (files.*isOfKind)(Folder(folder).PathOf(entry.name))
                                             : entry.kind == kind) {
            names += std::move(entry.name);
        }
    }
    return names;
}

} // namespace

QStringList VisibleFileNames(const FileSystem& files, const QString& folder) {
    return VisibleFileNames(files, folder, MessagePlaces());
}

QStringList VisibleFileNames(const FileSystem& files, const Folder& archive, const MessagePlaces& places) {
    return VisibleNames(files, archive, EntriesOf(files, archive, places), EntryKind::File, &FileSystem::FileExists);
}

QStringList CleansingNames(const FileSystem& files, const Folder& archive, const MessagePlaces& places) {
    QStringList names = VisibleFileNames(files, archive, places);
    names.removeIf([&places](const QString& name) { return !IsMessageName(places, name); });
    return names;
}

bool IsFileName(const QString& text) {
    if (text.isEmpty() || text == QLatin1String(".") || text == QLatin1String("..")) {
        return false;
    }
    // What begins with a drive, or names a stream of a file, has a colon.
#ifdef _WIN32
    constexpr QStringView refused(u"/\\:");
#else
    constexpr QStringView refused(u"/");
#endif
    return std::none_of(text.begin(), text.end(),
                        [refused](QChar character) { return character.isNull() || refused.contains(character); });
}

QStringList FolderNames(const FileSystem& files, const QString& folder) {
    return VisibleNames(files, folder, files.Entries(folder), EntryKind::Folder, &FileSystem::FolderExists);
}

} // namespace quellbox
