#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace quellbox {

/// How the names of some files begin and end, in upper or lower case.
struct NamePattern {
    QString beginning;
    QString ending;
};

/// Where in an archive the messages are, and what their files are called.
struct MessagePlaces {
    /// Folders of the archive that hold them; without any, it is the archive itself. The name of a message then begins
    /// with its folder, as in "new/1.a".
    QStringList folders = {};

    /// No cleansing touches what is called otherwise.
    std::vector<NamePattern> names = {{{}, QStringLiteral(".EML")}};

    /// What is called otherwise is listed as well.
    bool listsOthers = true;
};

/// Whether a file of that name, which may begin with a folder, is one that a cleansing may delete.
bool IsMessageName(const MessagePlaces& places, const QString& name);

/// What is in those folders; see FileSystem::Entries(). A folder that is missing counts as empty, as long as there is
/// another one. Throws FileError.
std::vector<FolderEntry> EntriesOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places);

/// Calls `visit` for each of these entries; see FileSystem::VisitEntries(). Throws FileError, and what `visit` throws.
void VisitEntriesOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places,
                    const std::function<void(FolderEntry)>& visit);

/// Whether all folders are there that the messages are in.
bool HasFoldersOf(const FileSystem& files, const Folder& archive, const MessagePlaces& places);

/// A name without the folders of `archive` with which it begins.
QString NameInFolder(const Folder& archive, const QString& name);

/// Whether two names are those of one message, which another program may have renamed meanwhile: within folders of an
/// archive what follows a colon in the name of a message says what was done with it, and its folder who has seen it
/// (qmail's maildir(5)).
bool IsSameMessage(const Folder& archive, const MessagePlaces& places, const QString& left, const QString& right);

} // namespace quellbox
