#ifndef _WIN32

#include "platform/FolderPath.h"
#include "platform/PathBytes.h"
#include "platform/UncPath.h"
#include "platform/Volumes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace quellbox {

namespace {

/// Whether the kernel reports the disk that `device` is, or is a part of, as removable.
bool IsRemovable(const QByteArray& device) {
    const QString name = QFileInfo(QFile::decodeName(device)).canonicalFilePath().section(QLatin1Char('/'), -1);
    if (name.isEmpty()) {
        return false;
    }
    const QString block = QLatin1String("/sys/class/block/") + name;
    const QString disk = QFileInfo(block).canonicalFilePath();
    for (const QString& folder : {disk, QFileInfo(disk).path()}) {
        QFile flag(folder + QLatin1String("/removable"));
        if (flag.open(QIODevice::ReadOnly)) {
            return flag.readAll().trimmed() == "1";
        }
    }
    return false;
}

VolumeKind KindOf(const QStorageInfo& volume) {
    return KindOfVolume(QString::fromLatin1(volume.fileSystemType()), IsRemovable(volume.device()));
}

bool HoldsFolders(const QStorageInfo& volume) {
    // A read-only disk in memory is there to hide the folder beneath it.
    const bool isCover = volume.isReadOnly() && volume.fileSystemType() == "tmpfs";
    return volume.isReady() && !isCover && QFileInfo(volume.rootPath()).isDir() &&
           IsUserVolume(volume.rootPath(), QString::fromLatin1(volume.fileSystemType()));
}

class PosixVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override {
        std::vector<Volume> volumes;
        for (const QStorageInfo& found : QStorageInfo::mountedVolumes()) {
            if (HoldsFolders(found)) {
                volumes.push_back({found.displayName(), found.rootPath(), KindOf(found)});
            }
        }
        // Some containers do not list the root, which exists all the same.
        volumes.push_back({QStringLiteral("/"), QStringLiteral("/"), VolumeKind::Fixed});
        // Of several mounts at one place only the topmost is visible.
        std::stable_sort(volumes.begin(), volumes.end(),
                         [](const Volume& left, const Volume& right) { return left.root < right.root; });
        const auto last = std::unique(volumes.begin(), volumes.end(),
                                      [](const Volume& left, const Volume& right) { return left.root == right.root; });
        volumes.erase(last, volumes.end());
        return volumes;
    }

    QString Resolve(const QString& path) const override {
        if (!IsShareText(path)) {
            return path;
        }
        if (!IsUncPath(path)) {
            return {};
        }
        QFile table(QStringLiteral("/proc/self/mountinfo"));
        if (table.open(QIODevice::ReadOnly)) {
            QString found = FindInMountTable(path, PathText(table.readAll()));
            if (!found.isEmpty()) {
                return found;
            }
        }
        const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
        if (runtimeFolder.isEmpty()) {
            return {};
        }
        const QString mounts = runtimeFolder + QLatin1String("/gvfs");
        return FindInShareMounts(path, mounts, QDir(mounts).entryList(QDir::Dirs | QDir::NoDotAndDotDot));
    }
};

} // namespace

std::unique_ptr<Volumes> MakeVolumes() {
    return std::make_unique<PosixVolumes>();
}

} // namespace quellbox

#endif
