#include "dialogs/FolderList.h"

#include "mail/DisplayText.h"
#include "platform/EntryNames.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace quellbox {

namespace {

/// The paths from the root down to `folder`; empty when that is no absolute path.
QStringList PathsTo(const QString& folder) {
    const QString path = QDir::toNativeSeparators(folder);
    const QString root = RootOf(path);
    if (root.isEmpty()) {
        return {};
    }
    QStringList paths{root};
    for (const QString& name : path.mid(root.size()).split(QDir::separator(), Qt::SkipEmptyParts)) {
        paths += Folder(paths.back()).PathOf(name);
    }
    return paths;
}

/// Where a drive list starts when the process works in no local folder: on a share, or in one that is gone.
QString FirstRoot(const std::vector<Volume>& volumes) {
    const auto fixed = std::find_if(volumes.begin(), volumes.end(),
                                    [](const Volume& volume) { return volume.kind == VolumeKind::Fixed; });
    if (fixed != volumes.end()) {
        return fixed->root;
    }
    return volumes.empty() ? QString() : volumes.front().root;
}

bool IsBefore(const QString& left, const QString& right) {
    const int order = left.compare(right, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : left < right;
}

} // namespace

FolderList::FolderList(const QString& folder, QStringList subFolders)
    : above_(PathsTo(folder)), below_(above_.isEmpty() ? QStringList() : std::move(subFolders)) {
    std::sort(below_.begin(), below_.end(), IsBefore);
}

QString FolderList::Path(int index) const {
    return index < above_.size() ? above_.at(index) : Folder(above_.back()).PathOf(below_.at(index - above_.size()));
}

QString FolderList::Label(int index) const {
    return index == 0 ? above_.front() : CleanseForDisplay(Path(index).section(QDir::separator(), -1));
}

FolderList ListFolder(const FileSystem& files, const QString& folder) {
    const FolderList alone(folder);
    if (alone.Count() == 0) {
        throw FileError(folder, QCoreApplication::translate("quellbox", "This is no full path."));
    }
    const QString path = alone.Path(alone.Opened());
    return {path, FolderNames(files, path)};
}

FolderList ListFirstFolder(const FileSystem& files, const std::vector<Volume>& volumes, const QString& folder,
                           const QString& currentFolder) {
    const QString start = FolderList(currentFolder).Count() > 0 ? currentFolder : FirstRoot(volumes);
    for (const QString& wanted : {folder, start}) {
        const bool isRoot = !wanted.isEmpty() && FolderList(wanted).Count() == 1;
        if (VolumeOf(volumes, wanted) < 0 || !(isRoot || files.FolderExists(wanted))) {
            continue;
        }
        try {
            return ListFolder(files, wanted);
        } catch (const FileError&) {
            // Neither is a folder that cannot be read a place to start from.
            continue;
        }
    }
    return FolderList(start);
}

int VolumeOf(const std::vector<Volume>& volumes, const QString& path) {
    const QStringList paths = PathsTo(path);
    int found = -1;
    qsizetype depth = 0;
    for (size_t index = 0; index < volumes.size(); ++index) {
        const QStringList root = PathsTo(volumes[index].root);
        if (root.size() > depth && root.size() <= paths.size() &&
            root.back().compare(paths.at(root.size() - 1), CaseOfPaths()) == 0) {
            found = static_cast<int>(index);
            depth = root.size();
        }
    }
    return found;
}

QString DriveOf(const Volume& volume) {
    const QString root = QDir::toNativeSeparators(volume.root);
    return root.size() > 1 && root.endsWith(QDir::separator()) ? root.chopped(1) : root;
}

QString DriveLabel(const Volume& volume) {
    const bool hasLabel = !volume.name.isEmpty() && QDir::toNativeSeparators(volume.name) != DriveOf(volume) &&
                          volume.name != volume.root;
    return CleanseForDisplay(hasLabel ? QStringLiteral("%1 [%2]").arg(DriveOf(volume), volume.name) : DriveOf(volume));
}

} // namespace quellbox
