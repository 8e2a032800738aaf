#ifndef _WIN32

#include "platform/PosixFolderMemory.h"

#include "platform/MountTable.h"
#include "platform/PathBytes.h"
#include "platform/PosixFile.h"

#include <QMutexLocker>

#include <cstdlib>
#include <memory>

namespace quellbox {

namespace {

constexpr qsizetype mostFolders = 64;

struct MemoryFreer {
    void operator()(char* memory) const { std::free(memory); }
};

/// The path of a folder without links; empty when there is none.
QString RealPath(const QByteArray& folder) {
    const std::unique_ptr<char, MemoryFreer> real(::realpath(folder.isEmpty() ? "." : folder.constData(), nullptr));
    return real ? PathText(real.get()) : QString();
}

QByteArray WithSeparator(const QByteArray& folder) {
    return folder.endsWith('/') ? folder : folder + '/';
}

bool LieInTwoShares(const QByteArray& from, const QByteArray& to) {
    const QString table = MountTableText();
    // Nearly always the question needs no calls that a server has to answer.
    if (from == to || !table.contains(QLatin1String(" fuse.gvfsd-fuse "))) {
        return false;
    }
    const QString source = RealPath(from);
    const QString target = RealPath(to);
    // Where one does not answer, a copy of our own is the safe way.
    return source.isEmpty() || target.isEmpty() || LieInTwoDesktopShares(ParseMountTable(table), source, target);
}

} // namespace

void FolderMemory::SetListed(const QByteArray& folder, QSet<QByteArray> others, const std::optional<dev_t>& device) {
    Folder listed;
    listed.device = device;
    // More than that are found where the file system does not report types; nothing can be saved there.
    if (others.size() <= mostOthers) {
        listed.others = std::move(others);
    }
    const QMutexLocker lock(&mutex_);
    At(WithSeparator(folder)) = std::move(listed);
}

bool FolderMemory::IsListed(const QByteArray& folder) const {
    const QMutexLocker lock(&mutex_);
    return folders_.value(WithSeparator(folder)).others.has_value();
}

bool FolderMemory::IsRegularFile(const QByteArray& path) const {
    const QByteArray folder = FolderOf(path);
    const QMutexLocker lock(&mutex_);
    const auto found = folders_.constFind(folder);
    return found != folders_.cend() && found->others && !found->others->contains(path.mid(folder.size()));
}

std::optional<dev_t> FolderMemory::DeviceOf(const QByteArray& path) const {
    const QMutexLocker lock(&mutex_);
    return folders_.value(FolderOf(path)).device;
}

bool FolderMemory::MustBeCopied(const QByteArray& from, const QByteArray& to) {
    const QByteArray source = FolderOf(from);
    const QByteArray target = FolderOf(to);
    {
        const QMutexLocker lock(&mutex_);
        const auto found = folders_.constFind(source);
        if (found != folders_.cend() && !found->target.isEmpty() && found->target == target) {
            return found->mustBeCopied;
        }
    }
    const bool must = LieInTwoShares(source, target);
    SetMustBeCopied(from, to, must);
    return must;
}

void FolderMemory::SetMustBeCopied(const QByteArray& from, const QByteArray& to, bool must) {
    const QMutexLocker lock(&mutex_);
    Folder& folder = At(FolderOf(from));
    folder.target = FolderOf(to);
    folder.mustBeCopied = must;
}

bool FolderMemory::IsOnUsersShare(const QByteArray& path) const {
    const QMutexLocker lock(&mutex_);
    return folders_.value(FolderOf(path)).isOnUsersShare;
}

void FolderMemory::SetOnUsersShare(const QByteArray& path, bool isShare) {
    const QMutexLocker lock(&mutex_);
    At(FolderOf(path)).isOnUsersShare = isShare;
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
