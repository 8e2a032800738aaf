#include "dialogs/FolderList.h"

#include "mail/DisplayText.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace quellbox {

namespace {

QChar Separator() {
    return QDir::separator();
}

Qt::CaseSensitivity CaseOfPaths() {
    return Separator() == QLatin1Char('/') ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

QString Join(const QString& folder, const QString& name) {
    return folder.endsWith(Separator()) ? folder + name : folder + Separator() + name;
}

/// The root of an absolute path, "/" or as in "C:\"; empty for other paths.
QString RootOf(const QString& path) {
    if (Separator() == QLatin1Char('/')) {
        return path.startsWith(Separator()) ? QString(Separator()) : QString();
    }
    const bool hasDrive = path.size() > 1 && path.at(0).isLetter() && path.at(1) == QLatin1Char(':');
    const bool isAbsolute = hasDrive && (path.size() == 2 || path.at(2) == Separator());
    return isAbsolute ? path.left(2) + Separator() : QString();
}

/// The paths from the root down to `folder`; empty when that is no absolute path.
QStringList PathsTo(const QString& folder) {
    const QString path = QDir::toNativeSeparators(folder);
    const QString root = RootOf(path);
    if (root.isEmpty()) {
        return {};
    }
    QStringList paths{root};
    for (const QString& name : path.mid(root.size()).split(Separator(), Qt::SkipEmptyParts)) {
        paths += Join(paths.back(), name);
    }
    return paths;
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
    return index < above_.size() ? above_.at(index) : Join(above_.back(), below_.at(index - above_.size()));
}

QString FolderList::Label(int index) const {
    return index == 0 ? above_.front() : CleanseForDisplay(Path(index).section(Separator(), -1));
}

FolderList ListFolder(const FileSystem& files, const QString& folder) {
    const FolderList alone(folder);
    if (alone.Count() == 0) {
        throw FileError(folder, QCoreApplication::translate("quellbox", "This is no full path."));
    }
    const QString path = alone.Path(alone.Opened());
    return {path, files.FolderNames(path)};
}

FolderChoice OpenFolderChoice(const FileSystem& files, const Volumes& volumes, const QString& folder,
                              const QString& currentFolder) {
    FolderChoice choice;
    choice.volumes = volumes.Mounted();
    for (const QString& wanted : {folder, currentFolder}) {
        const bool isRoot = !wanted.isEmpty() && FolderList(wanted).Count() == 1;
        choice.volume = VolumeOf(choice.volumes, wanted);
        if (choice.volume < 0 || !(isRoot || files.FolderExists(wanted))) {
            continue;
        }
        try {
            choice.list = ListFolder(files, wanted);
            return choice;
        } catch (const FileError&) {
            // Neither is a folder that cannot be read a place to start from.
            continue;
        }
    }
    choice.volume = VolumeOf(choice.volumes, currentFolder);
    choice.list = FolderList(currentFolder);
    return choice;
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
    return root.size() > 1 && root.endsWith(Separator()) ? root.chopped(1) : root;
}

QString DriveLabel(const Volume& volume) {
    const bool hasLabel = !volume.name.isEmpty() && QDir::toNativeSeparators(volume.name) != DriveOf(volume) &&
                          volume.name != volume.root;
    return CleanseForDisplay(hasLabel ? QStringLiteral("%1 [%2]").arg(DriveOf(volume), volume.name) : DriveOf(volume));
}

bool IsShareText(const QString& folder) {
    return folder.startsWith(QLatin1String("\\\\"));
}

QString WithSeparator(const QString& folder) {
    const QChar separator = IsShareText(folder) ? QChar(u'\\') : Separator();
    return folder.endsWith(separator) ? folder : folder + separator;
}

} // namespace quellbox
