#pragma once

#include "delivery/ReleaseWay.h"
#include "mail/PackedFile.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QString>

#include <memory>

namespace quellbox {

/// The folder of the messages, and where they go when they are unblocked.
struct DisposalFolders {
    Folder archive;
    Folder pickup;
    std::shared_ptr<ReleaseWay> way{}; ///< takes the place of the pickup folder where it is given
    Packing packing = Packing::Never;  ///< packed messages do not go into the pickup folder
};

/// What a message is called in the pickup folder, which in the archive is called `name`: the same, unless that begins
/// with a folder of the archive. Mail servers take up what ends with ".eml" only, and the names in such folders do not.
QString PickupName(const Folder& archive, const QString& name);

/// Lets a message of the archive go to those to whom it was written. Returns what a mail server has answered; a folder
/// answers nothing. Throws FileError.
QString Unblock(FileSystem& files, const DisposalFolders& folders, const QString& name);

} // namespace quellbox
