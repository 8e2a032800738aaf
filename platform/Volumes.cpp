#include "platform/Volumes.h"

#include "platform/FolderPath.h"
#include "platform/PathBytes.h"
#include "platform/UncPath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

template <size_t Count>
bool IsOneOf(const QString& text, const std::array<QLatin1String, Count>& choices) {
    return std::find(choices.begin(), choices.end(), text) != choices.end();
}

#ifndef _WIN32

/// What the kernel says of the disk that `device` is, or is a part of.
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
    // A read-only disk in memory only covers what lies beneath it.
    const bool isCover = volume.isReadOnly() && volume.fileSystemType() == "tmpfs";
    return volume.isReady() && !isCover && QFileInfo(volume.rootPath()).isDir() &&
           IsUserVolume(volume.rootPath(), QString::fromLatin1(volume.fileSystemType()));
}

#endif

} // namespace

VolumeKind KindOfVolume(const QString& fileSystemType, bool removable) {
    constexpr std::array network{QLatin1String("cifs"),           QLatin1String("smb3"),
                                 QLatin1String("smbfs"),          QLatin1String("nfs"),
                                 QLatin1String("nfs4"),           QLatin1String("9p"),
                                 QLatin1String("ncpfs"),          QLatin1String("afs"),
                                 QLatin1String("ceph"),           QLatin1String("fuse.sshfs"),
                                 QLatin1String("fuse.davfs"),     QLatin1String("davfs"),
                                 QLatin1String("fuse.gvfsd-fuse")};
    constexpr std::array optical{QLatin1String("iso9660"), QLatin1String("udf")};
    constexpr std::array memory{QLatin1String("tmpfs"), QLatin1String("ramfs")};
    if (IsOneOf(fileSystemType, network)) {
        return VolumeKind::Network;
    }
    if (IsOneOf(fileSystemType, optical)) {
        return VolumeKind::Optical;
    }
    if (IsOneOf(fileSystemType, memory)) {
        return VolumeKind::Ram;
    }
    return removable ? VolumeKind::Removable : VolumeKind::Fixed;
}

bool IsUserVolume(const QString& root, const QString& fileSystemType) {
    constexpr std::array<QLatin1String, 5> systemFolders{QLatin1String("/proc"), QLatin1String("/sys"),
                                                         QLatin1String("/dev"), QLatin1String("/run"),
                                                         QLatin1String("/snap")};
    constexpr std::array pseudo{QLatin1String("autofs"),     QLatin1String("binfmt_misc"), QLatin1String("bpf"),
                                QLatin1String("cgroup"),     QLatin1String("cgroup2"),     QLatin1String("configfs"),
                                QLatin1String("debugfs"),    QLatin1String("devpts"),      QLatin1String("devtmpfs"),
                                QLatin1String("efivarfs"),   QLatin1String("fuse.lxcfs"),  QLatin1String("fuse.portal"),
                                QLatin1String("fusectl"),    QLatin1String("hugetlbfs"),   QLatin1String("mqueue"),
                                QLatin1String("nsfs"),       QLatin1String("proc"),        QLatin1String("pstore"),
                                QLatin1String("rpc_pipefs"), QLatin1String("securityfs"),  QLatin1String("selinuxfs"),
                                QLatin1String("sysfs"),      QLatin1String("tracefs")};
    const QString top = QLatin1Char('/') + root.section(QLatin1Char('/'), 1, 1);
    const bool isSystem = IsOneOf(top, systemFolders) && !root.startsWith(QLatin1String("/run/media/"));
    return !isSystem && !IsOneOf(fileSystemType, pseudo);
}

#ifndef _WIN32

std::vector<Volume> Volumes::Mounted() const {
    std::vector<Volume> volumes;
    for (const QStorageInfo& found : QStorageInfo::mountedVolumes()) {
        if (HoldsFolders(found)) {
            volumes.push_back({found.displayName(), found.rootPath(), KindOf(found)});
        }
    }
    // A root that the system does not describe, as in some containers, still holds every folder.
    volumes.push_back({QStringLiteral("/"), QStringLiteral("/"), VolumeKind::Fixed});
    // Of several mounts at one place only the topmost is in sight.
    std::stable_sort(volumes.begin(), volumes.end(),
                     [](const Volume& left, const Volume& right) { return left.root < right.root; });
    const auto last = std::unique(volumes.begin(), volumes.end(),
                                  [](const Volume& left, const Volume& right) { return left.root == right.root; });
    volumes.erase(last, volumes.end());
    return volumes;
}

QString Volumes::Resolve(const QString& path) const {
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

#endif

} // namespace quellbox
