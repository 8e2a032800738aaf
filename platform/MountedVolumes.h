#pragma once

#ifndef _WIN32

#include "platform/Volumes.h"

#include <functional>

namespace quellbox {

/// What the mount table does not say. Each may be called on another thread, and after the caller has gone.
struct MountQuestions {
    std::function<bool(const QString& root)> isFolder;      ///< false for a file that something is mounted on
    std::function<QString(const QString& device)> label;    ///< empty when it has none
    std::function<bool(const QString& device)> isRemovable; ///< of the medium
    QString user;                                           ///< the number of the user who asks, as in "1000"
};

/// What MountedVolumes() asks this system. `label` and `isRemovable` look at the devices only, never at a volume.
MountQuestions SystemQuestions();

/// The volumes in sight in the text of /proc/self/mountinfo that can hold folders of the user, in order of the roots.
/// Never asks about a network volume, or about what is mounted below one: a server that is down would not answer. Those
/// are listed as they are, and so is a volume that does not answer soon. The root is always one of them, and so is the
/// user's own folder with the shares of the desktop, although it lies where the system mounts for itself.
std::vector<Volume> MountedVolumes(const QString& mountTable, const MountQuestions& ask);

} // namespace quellbox

#endif
