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

/// Lets a message of the archive go to those to whom it was written. Returns what a mail server has answered; a folder
/// answers nothing. Throws FileError.
QString Unblock(FileSystem& files, const DisposalFolders& folders, const QString& name);

} // namespace quellbox
