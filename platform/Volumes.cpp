#include "platform/Volumes.h"

#include "platform/FolderPath.h"
#include "platform/MountedVolumes.h"
#include "platform/PathBytes.h"
#include "platform/UncPath.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

template <size_t Count>
bool IsOneOf(const QString& text, const std::array<QLatin1String, Count>& choices) {
    return std::find(choices.begin(), choices.end(), text) != choices.end();
}

} // namespace

VolumeKind KindOfVolume(const QString& fileSystemType, bool removable) {
    constexpr std::array network{
        QLatin1String("cifs"),   QLatin1String("smb3"),   QLatin1String("smbfs"), QLatin1String("nfs"),
        QLatin1String("nfs4"),   QLatin1String("9p"),     QLatin1String("ncpfs"), QLatin1String("afs"),
        QLatin1String("ceph"),   QLatin1String("davfs"),  QLatin1String("coda"),  QLatin1String("glusterfs"),
        QLatin1String("lustre"), QLatin1String("gfs2"),   QLatin1String("ocfs2"), QLatin1String("virtiofs"),
        QLatin1String("vboxsf"), QLatin1String("prl_fs"), QLatin1String("fuse")};
    constexpr std::array optical{QLatin1String("iso9660"), QLatin1String("udf")};
    constexpr std::array memory{QLatin1String("tmpfs"), QLatin1String("ramfs")};
    // What a program provides may lie anywhere, and is as slow as that program.
    if (IsOneOf(fileSystemType, network) || fileSystemType.startsWith(QLatin1String("fuse."))) {
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

namespace {

QString MountTable() {
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    return table.open(QIODevice::ReadOnly) ? PathText(table.readAll()) : QString();
}

} // namespace

std::vector<Volume> Volumes::Mounted() const {
    return MountedVolumes(MountTable(), SystemQuestions());
}

QString Volumes::Resolve(const QString& path) const {
    if (!IsShareText(path)) {
        return path;
    }
    if (!IsUncPath(path)) {
        return {};
    }
    QString found = FindInMountTable(path, MountTable());
    if (!found.isEmpty()) {
        return found;
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
