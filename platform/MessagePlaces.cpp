#include "platform/MessagePlaces.h"

#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

Folder FolderIn(const Folder& archive, const QString& name) {
    return archive.PathOf(name + SeparatorOf(archive));
}

void VisitFolder(const FileSystem& files, const Folder& archive, const QString& folder,
                 const std::function<void(FolderEntry)>& visit) {
    const QString prefix = folder + SeparatorOf(archive);
    files.VisitEntries(FolderIn(archive, folder), [&](FolderEntry entry) {
        entry.name.prepend(prefix);
        visit(std::move(entry));
    });
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
    std::vector<FolderEntry> entries;
    VisitEntriesOf(files, archive, places, [&entries](FolderEntry entry) { entries.push_back(std::move(entry)); });
    return entries;
}

void VisitEntriesOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places,
                    const std::function<void(FolderEntry)>& visit) {
    if (places.folders.isEmpty()) {
        files.VisitEntries(archive, visit);
        return;
    }
    int missing = 0;
    for (const QString& folder : places.folders) {
        try {
            VisitFolder(files, archive, folder, visit);
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
