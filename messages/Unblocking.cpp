#include "messages/Unblocking.h"

#include "platform/MessagePlaces.h"

namespace quellbox {

QString PickupName(const Folder& archive, const QString& name) {
    QString inFolder = NameInFolder(archive, name);
    if (inFolder.size() == name.size()) {
        return name;
    }
    return inFolder.replace(QLatin1Char(':'), QLatin1Char('_')) + QStringLiteral(".eml"); // no colons on Windows
}

QString Unblock(FileSystem& files, const DisposalFolders& folders, const QString& name) {
    if (folders.way) {
        return folders.way->Release(name);
    }
    if (folders.packing == Packing::Possible) {
        RequireNotPacked(files, folders.archive.PathOf(name));
    }
    files.Move(folders.archive.PathOf(name), folders.pickup.PathOf(PickupName(folders.archive, name)));
    return {};
}

} // namespace quellbox
