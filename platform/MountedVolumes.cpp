#ifndef _WIN32

#include "platform/MountedVolumes.h"

#include "platform/AskInTurn.h"
#include "platform/MountTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

#include <unistd.h>

namespace quellbox {

namespace {

constexpr std::chrono::milliseconds patience{250};

/// The last part of the path of a device, whatever name it is called by.
QString DeviceName(const QString& device) {
    return QFileInfo(device).canonicalFilePath().section(QLatin1Char('/'), -1);
}

/// What the kernel says of the disk that `device` is, or is a part of.
bool IsRemovable(const QString& device) {
    const QString name = DeviceName(device);
    if (name.isEmpty()) {
        return false;
    }
    const QString disk = QFileInfo(QLatin1String("/sys/class/block/") + name).canonicalFilePath();
    for (const QString& folder : {disk, QFileInfo(disk).path()}) {
        QFile flag(folder + QLatin1String("/removable"));
        if (flag.open(QIODevice::ReadOnly)) {
            return flag.readAll().trimmed() == "1";
        }
    }
    return false;
}

/// A label as the system writes it into the name of a link: characters that do not fit there are "\x" and two digits.
QString PlainLabel(const QByteArray& name) {
    QByteArray plain;
    for (qsizetype index = 0; index < name.size(); ++index) {
        bool hexadecimal = false;
        const int value = name.mid(index, 2) == "\\x" ? name.mid(index + 2, 2).toInt(&hexadecimal, 16) : 0;
        plain += hexadecimal ? static_cast<char>(value) : name.at(index);
        index += hexadecimal ? 3 : 0;
    }
    return QString::fromUtf8(plain);
}

QString LabelOf(const QString& device) {
    const QString name = DeviceName(device);
    const QDir labels(QStringLiteral("/dev/disk/by-label"));
    for (const QString& label : labels.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        if (!name.isEmpty() && DeviceName(labels.filePath(label)) == name) {
            return PlainLabel(QFile::encodeName(label));
        }
    }
    return {};
}

bool IsNetwork(const Mount& mount) {
    return KindOfVolume(mount.type, false) == VolumeKind::Network;
}

/// A dead share keeps also those waiting who only pass through its folders.
bool MayBeAsked(const Mount& mount, const std::vector<Mount>& mounts) {
    return !IsNetwork(mount) && std::none_of(mounts.begin(), mounts.end(), [&mount](const Mount& other) {
        return IsNetwork(other) && other.point != QLatin1String("/") && IsAtOrAbove(other.point, mount.point);
    });
}

/// A read-only disk in memory only covers what lies beneath it.
bool IsCover(const Mount& mount) {
    return mount.isReadOnly && mount.type == QLatin1String("tmpfs");
}

/// The shares of the desktop lie where the system mounts for itself, and only their own user may look at them, not even
/// root. Whether some have been opened does not matter: their folder shows the next one as well.
bool IsOfUser(const Mount& mount, const QString& user) {
    if (IsOfDesktop(mount)) {
        return mount.user.isEmpty() || mount.user == user;
    }
    return IsUserVolume(mount.point, mount.type);
}

std::vector<Mount> MountsOfUser(const std::vector<Mount>& mounts, const QString& user) {
    std::vector<Mount> found;
    for (size_t index = 0; index < mounts.size(); ++index) {
        const Mount& mount = mounts[index];
        if (IsOfUser(mount, user) && !IsCover(mount) && !IsCovered(mounts, index)) {
            found.push_back(mount);
        }
    }
    return found;
}

/// Leaves out what is known to be no folder.
void KeepFolders(std::vector<Mount>& mounts, const std::vector<Mount>& all,
                 const std::function<bool(const QString&)>& isFolder) {
    std::vector<QString> asked;
    std::vector<std::function<bool()>> questions;
    for (const Mount& mount : mounts) {
        if (MayBeAsked(mount, all)) {
            asked.push_back(mount.point);
            questions.emplace_back([isFolder, point = mount.point] { return isFolder(point); });
        }
    }
    const auto answers = AskInTurn<bool>(std::move(questions), patience);
    for (size_t index = 0; index < asked.size(); ++index) {
        if (!answers[index].value_or(true)) {
            std::erase_if(mounts, [&](const Mount& mount) { return mount.point == asked[index]; });
        }
    }
}

QString NameOfDesktop() {
    return QCoreApplication::translate("quellbox", "Shares opened in the file manager");
}

Volume AsVolume(const Mount& mount, const MountQuestions& ask) {
    if (IsOfDesktop(mount)) {
        return {NameOfDesktop(), mount.point, VolumeKind::Network};
    }
    // The source of other mounts is no path, or one on a server.
    const bool isDevice = mount.source.startsWith(QLatin1String("/dev/"));
    const QString label = isDevice ? ask.label(mount.source) : QString();
    return {label.isEmpty() ? mount.point : label, mount.point,
            KindOfVolume(mount.type, isDevice && ask.isRemovable(mount.source))};
}

} // namespace

MountQuestions SystemQuestions() {
    return {[](const QString& root) { return QFileInfo(root).isDir(); }, LabelOf, IsRemovable,
            QString::number(::geteuid())};
}

std::vector<Volume> MountedVolumes(const QString& mountTable, const MountQuestions& ask) {
    const std::vector<Mount> all = ParseMountTable(mountTable);
    std::vector<Mount> mounts = MountsOfUser(all, ask.user);
    KeepFolders(mounts, all, ask.isFolder);
    std::vector<Volume> volumes;
    std::transform(mounts.begin(), mounts.end(), std::back_inserter(volumes),
                   [&ask](const Mount& mount) { return AsVolume(mount, ask); });
    // A root that the system does not describe, as in some containers, still holds every folder.
    volumes.push_back({QStringLiteral("/"), QStringLiteral("/"), VolumeKind::Fixed});
    std::stable_sort(volumes.begin(), volumes.end(),
                     [](const Volume& left, const Volume& right) { return left.root < right.root; });
    const auto last = std::unique(volumes.begin(), volumes.end(),
                                  [](const Volume& left, const Volume& right) { return left.root == right.root; });
    volumes.erase(last, volumes.end());
    return volumes;
}

} // namespace quellbox

#endif
