#ifndef _WIN32

#include "platform/PosixLeftovers.h"

#include "platform/PosixFile.h"
#include "platform/TemporaryName.h"

#include <QMutexLocker>

#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

constexpr time_t day = 24 * 60 * 60;

/// Whether a temporary file is that of a program that does not run any more, by the time of its last modification.
bool IsOld(const QByteArray& path) {
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_mtim.tv_sec < ::time(nullptr) - day;
}

} // namespace

QByteArray Leftovers::NewName() {
    return TemporaryName().toLatin1();
}

void Leftovers::Add(const QByteArray& path) {
    const QByteArray folder = FolderOf(path);
    const QMutexLocker lock(&mutex_);
    names_[folder].insert(path.mid(folder.size()));
}

void Leftovers::RemoveIn(const QByteArray& folder) {
    bool isFirst = false;
    QSet<QByteArray> noted;
    {
        const QMutexLocker lock(&mutex_);
        isFirst = !names_.contains(folder);
        noted = std::exchange(names_[folder], {});
    }
    if (!isFirst && noted.isEmpty()) {
        return;
    }
    // By the listing, since what is remembered of single names may be wrong after answers were lost.
    DIR* const stream = ::opendir(folder.isEmpty() ? "." : folder.constData());
    if (stream == nullptr) {
        const QMutexLocker lock(&mutex_);
        names_[folder].unite(noted);
        return;
    }
    while (const dirent* entry = ::readdir(stream)) {
        const QByteArray name(entry->d_name);
        const bool isOurs = name.startsWith(temporaryPrefix) && name.endsWith(temporarySuffix);
        const bool isLeft = noted.contains(name) || (isFirst && isOurs && IsOld(folder + name));
        if (isLeft && ::unlink((folder + name).constData()) != 0 && errno != ENOENT) {
            Add(folder + name);
        }
    }
    ::closedir(stream);
}

} // namespace quellbox

#endif
