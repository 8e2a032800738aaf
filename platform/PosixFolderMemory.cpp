#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include "platform/PosixFile.h"

#include <QMutexLocker>

namespace quellbox {

namespace {

constexpr qsizetype mostFolders = 64;
constexpr qsizetype mostOthers = 1000;

} // namespace

void FolderMemory::SetListed(const QByteArray& folder, QSet<QByteArray> others) {
    Folder listed;
    // More than that are found where the file system does not report types; nothing can be saved there.
    if (others.size() <= mostOthers) {
        listed.others = std::move(others);
    }
    const QMutexLocker lock(&mutex_);
    At(folder.endsWith('/') ? folder : folder + '/') = std::move(listed);
}

bool FolderMemory::IsRegularFile(const QByteArray& path) const {
    const QByteArray folder = FolderOf(path);
    const QMutexLocker lock(&mutex_);
    const auto found = folders_.constFind(folder);
    return found != folders_.cend() && found->others && !found->others->contains(path.mid(folder.size()));
}

RenameMethod FolderMemory::MethodFor(const QByteArray& path) const {
    const QMutexLocker lock(&mutex_);
    return folders_.value(FolderOf(path)).method;
}

void FolderMemory::SetMethod(const QByteArray& path, RenameMethod method) {
    const QMutexLocker lock(&mutex_);
    At(FolderOf(path)).method = method;
}

// The caller holds the lock. Forgetting everything costs a few calls, and the program works in few folders.
FolderMemory::Folder& FolderMemory::At(const QByteArray& folder) {
    if (folders_.size() >= mostFolders && !folders_.contains(folder)) {
        folders_.clear();
    }
    return folders_[folder];
}

} // namespace quellbox

#endif
