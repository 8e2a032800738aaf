#include "messages/Unblocking.h"

namespace quellbox {

QString Unblock(FileSystem& files, const DisposalFolders& folders, const QString& name) {
    if (folders.way) {
        return folders.way->Release(name);
    }
    if (folders.packing == Packing::Possible) {
        RequireNotPacked(files, folders.archive.PathOf(name));
    }
    files.Move(folders.archive.PathOf(name), folders.pickup.PathOf(name));
    return {};
}

} // namespace quellbox
