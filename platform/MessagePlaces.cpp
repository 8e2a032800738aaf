#include "platform/MessagePlaces.h"

#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace quellbox {

namespace {

Folder FolderIn(const Folder& archive, const QString& name) {
    return archive.PathOf(name + SeparatorOf(archive));
}

void AddEntries(const FileSystem& files, const Folder& archive, const QString& folder,
                std::vector<FolderEntry>& entries) {
    std::vector<FolderEntry> found = files.Entries(FolderIn(archive, folder));
    for (FolderEntry& entry : found) {
        entry.name.prepend(folder + SeparatorOf(archive));
    }
    entries.insert(entries.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
}

/// What stays the same when a message is marked as read, or by a flag.
QStringView LastingName(QStringView name) {
    const qsizetype colon = name.lastIndexOf(u':');
    return colon < 0 ? name : name.first(colon);
}

} // namespace

bool IsMessageName(const MessagePlaces& places, const QString& name) {
    return std::any_of(places.names.begin(), places.names.end(), [&name](const NamePattern& pattern) {
        return name.startsWith(pattern.beginning, Qt::CaseInsensitive) &&
               name.endsWith(pattern.ending, Qt::CaseInsensitive);
    });
}

std::vector<FolderEntry> EntriesOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places) {
    if (places.folders.isEmpty()) {
        return files.Entries(archive);
    }
    std::vector<FolderEntry> entries;
    int missing = 0;
    for (const QString& folder : places.folders) {
        try {
            AddEntries(files, archive, folder, entries);
        } catch (const FileError& error) {
            if (error.Problem() != FileProblem::Missing) {
                throw;
            }
            ++missing;
        }
    }
    if (missing == places.folders.size()) {
        throw FileError(archive,
                        QCoreApplication::translate("quellbox", "It has none of the folders in which the chosen server "
                                                                "keeps messages: %1")
                            .arg(places.folders.join(QStringLiteral(", "))),
                        FileProblem::Missing);
    }
    return entries;
}

bool HasFoldersOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places) {
    return std::all_of(places.folders.begin(), places.folders.end(),
                       [&](const QString& folder) { return files.FolderExists(FolderIn(archive, folder)); });
}

QString NameInFolder(const Folder& archive, const QString& name) {
    return name.mid(name.lastIndexOf(SeparatorOf(archive)) + 1);
}

bool IsSameMessage(const Folder& archive, const MessagePlaces& places, const QString& left, const QString& right) {
    if (places.folders.isEmpty()) {
        return left == right;
    }
    const QString leftName = NameInFolder(archive, left);
    const QString rightName = NameInFolder(archive, right);
    return LastingName(leftName) == LastingName(rightName);
}

} // namespace quellbox
