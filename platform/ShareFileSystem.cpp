#include "platform/ShareFileSystem.h"

#include "platform/FolderPath.h"
#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/UncPath.h"

#include <QCoreApplication>
#include <QMutexLocker>

namespace quellbox {

namespace {

/// Whether a name that follows the last backslash would lead into another folder: "." and "..", or a path with slashes.
bool LeadsElsewhere(QStringView name) {
    return name == QLatin1String(".") || name == QLatin1String("..") || name.contains(QLatin1Char('/'));
}

/// No share knows such a name, and as a part of a path it would lead into another folder.
bool IsNoNameOnAShare(const QString& name) {
    return name.contains(backslash);
}

/// A folder named as a file is, so that what is looked up is the folder that it is in: it may not exist itself.
QString NamedAsAFile(const QString& folder) {
    return IsShareText(folder) && folder.endsWith(backslash) ? folder.chopped(1) : folder;
}

/// Reads a folder of a share by the place where that is mounted. Names that begin with a folder have a backslash behind
/// it, which is no separator there.
class ShareFolderReader : public FolderReader {
public:
    explicit ShareFolderReader(std::unique_ptr<FolderReader> reader) : reader_(std::move(reader)) {}

    bool IsMountPoint() const override { return reader_->IsMountPoint(); }
    std::optional<FileStatus> Status(const QString& name) const override { return reader_->Status(Local(name)); }
    std::unique_ptr<InputFile> Open(const QString& name) const override { return reader_->Open(Local(name)); }

private:
    static QString Local(QString name) { return name.replace(backslash, QLatin1Char('/')); }

    const std::unique_ptr<FolderReader> reader_;
};

} // namespace

ShareFileSystem::ShareFileSystem(std::unique_ptr<FileSystem> files, const Volumes& volumes)
    : files_(std::move(files)), volumes_(volumes) {}

// Empty when the share is not mounted, which is not remembered: the next call may find it mounted.
QString ShareFileSystem::RememberedPlace(const QString& uncFolder) const {
    quint64 generation = 0;
    {
        const QMutexLocker lock(&mutex_);
        if (const auto place = places_.constFind(uncFolder); place != places_.cend()) {
            return *place;
        }
        generation = generation_;
    }
    // The desktop's share mounts may take their time; meanwhile other threads go on, and may forget all places.
    QString place = PresentPlace(uncFolder);
    if (!place.isEmpty()) {
        const QMutexLocker lock(&mutex_);
        if (generation == generation_) {
            places_.insert(uncFolder, place);
        }
    }
    return place;
}

QString ShareFileSystem::PresentPlace(const QString& uncFolder) const {
    return volumes_.Resolve(uncFolder);
}

QString ShareFileSystem::LocalPath(const QString& path, Place place) const {
    if (!IsShareText(path)) {
        return path;
    }
    const qsizetype name = path.lastIndexOf(backslash) + 1;
    if (LeadsElsewhere(QStringView(path).mid(name))) {
        return (this->*place)(path);
    }
    const QString folder = (this->*place)(path.left(name));
    return folder.isEmpty() ? QString() : folder + path.mid(name);
}

QString ShareFileSystem::ReadablePath(const QString& path) const {
    return LocalOrThrow(path, &ShareFileSystem::RememberedPlace);
}

QString ShareFileSystem::ChangeablePath(const QString& path) const {
    return LocalOrThrow(path, &ShareFileSystem::PresentPlace);
}

QString ShareFileSystem::LocalOrThrow(const QString& path, Place place) const {
    QString local = LocalPath(path, place);
    if (local.isEmpty() && IsShareText(path)) {
        throw FileError(path, QCoreApplication::translate("quellbox", "The share is not mounted on this computer."),
                        FileProblem::NoAnswer);
    }
    return local;
}

QString ShareFileSystem::FolderOrThrow(const QString& folder) const {
    return IsShareText(folder) ? ReadablePath(Folder(folder)) : folder;
}

bool ShareFileSystem::FolderExists(const QString& folder) const {
    if (!IsShareText(folder)) {
        return files_->FolderExists(folder);
    }
    {
        const QMutexLocker lock(&mutex_);
        places_.clear();
        ++generation_;
    }
    const QString local = RememberedPlace(Folder(folder));
    return !local.isEmpty() && files_->FolderExists(local);
}

bool ShareFileSystem::IsRealFolder(const QString& folder) const {
    return files_->IsRealFolder(LocalPath(NamedAsAFile(folder), &ShareFileSystem::PresentPlace));
}

bool ShareFileSystem::FileExists(const QString& path) const {
    return files_->FileExists(LocalPath(path, &ShareFileSystem::RememberedPlace));
}

std::vector<FolderEntry> ShareFileSystem::Entries(const QString& folder) const {
    return VisitedEntries(folder);
}

void ShareFileSystem::VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const {
    if (!IsShareText(folder)) {
        files_->VisitEntries(folder, visit);
        return;
    }
    files_->VisitEntries(FolderOrThrow(folder), [&visit](FolderEntry entry) {
        if (!IsNoNameOnAShare(entry.name)) {
            visit(std::move(entry));
        }
    });
}

std::optional<FileStatus> ShareFileSystem::Status(const QString& path) const {
    return files_->Status(LocalPath(path, &ShareFileSystem::RememberedPlace));
}

std::unique_ptr<InputFile> ShareFileSystem::Open(const QString& path) const {
    return files_->Open(ReadablePath(path));
}

std::unique_ptr<FolderReader> ShareFileSystem::ReadFolder(const QString& folder) const {
    std::unique_ptr<FolderReader> reader = files_->ReadFolder(FolderOrThrow(folder));
    return IsShareText(folder) ? std::make_unique<ShareFolderReader>(std::move(reader)) : std::move(reader);
}

void ShareFileSystem::PrepareMoves(const QString& folder) const {
    const QString local = LocalPath(folder, &ShareFileSystem::RememberedPlace);
    if (!local.isEmpty()) {
        files_->PrepareMoves(local);
    }
}

void ShareFileSystem::Move(const QString& from, const QString& to) {
    files_->Move(ChangeablePath(from), ChangeablePath(to));
}

bool ShareFileSystem::MoveUnless(const QString& from, const QString& to,
                                 const std::function<bool(const FileStatus&)>& keep) {
    return files_->MoveUnless(ChangeablePath(from), ChangeablePath(to), keep);
}

bool ShareFileSystem::Remove(const QString& path) {
    return files_->Remove(ChangeablePath(path));
}

bool ShareFileSystem::RemoveEvenReadOnly(const QString& path) {
    return files_->RemoveEvenReadOnly(ChangeablePath(path));
}

bool ShareFileSystem::RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) {
    return files_->RemoveUnless(ChangeablePath(path), keep);
}

void ShareFileSystem::MakeFolder(const QString& folder) {
    files_->MakeFolder(ChangeablePath(NamedAsAFile(folder)));
}

bool ShareFileSystem::RemoveFolder(const QString& folder) {
    return files_->RemoveFolder(ChangeablePath(NamedAsAFile(folder)));
}

void ShareFileSystem::WriteWhole(const QString& path, const QByteArray& bytes) {
    files_->WriteWhole(ChangeablePath(path), bytes);
}

std::unique_ptr<FileSystem> MakeFileSystem([[maybe_unused]] const Volumes& volumes) {
#ifdef _WIN32
    return MakeLocalFileSystem();
#else
    return std::make_unique<ShareFileSystem>(MakeLocalFileSystem(), volumes);
#endif
}

} // namespace quellbox
