#include "tests/support/MemoryFileSystem.h"

#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"
#include "tests/support/NativePath.h"

#include <QDir>

#include <algorithm>
#include <thread>

namespace quellbox {

namespace {

/// Separators in a row count as one. On Windows both kinds are the same, as in a real file system, and what has no
/// drive lies on C.
QString Plain(QString path) {
    if (!IsShareText(path)) {
        // A test may name the drive with either.
        path = QDir::fromNativeSeparators(SlashPath(QDir::toNativeSeparators(path)));
    }
    while (path.contains(QLatin1String("//"))) {
        path.replace(QLatin1String("//"), QLatin1String("/"));
    }
    return path;
}

QString WithoutSeparator(const QString& path) {
    const QString folder = Plain(path);
    return folder.size() > 1 && folder.endsWith(QLatin1Char('/')) ? folder.chopped(1) : folder;
}

QString FolderOf(const QString& path) {
    const QString plain = Plain(path);
    return WithoutSeparator(plain.left(plain.lastIndexOf(QLatin1Char('/')) + 1));
}

} // namespace

class MemoryInputFile : public InputFile {
public:
    MemoryInputFile(const MemoryFileSystem& files, QString path, QByteArray bytes)
        : files_(files), path_(std::move(path)), bytes_(std::move(bytes)) {}

    qint64 Read(char* buffer, qint64 capacity) override {
        std::function<void(const QString&)> hook;
        {
            const std::lock_guard lock(files_.mutex_);
            hook = files_.readHook_;
        }
        if (hook) {
            hook(path_);
        }
        files_.EnterOrThrow(path_);
        const qint64 count = std::min<qint64>(capacity, bytes_.size() - position_);
        std::copy_n(bytes_.constData() + position_, count, buffer);
        position_ += count;
        return count;
    }

private:
    const MemoryFileSystem& files_;
    QString path_;
    QByteArray bytes_;
    qint64 position_ = 0;
};

void MemoryFileSystem::AddFolder(const QString& folder) {
    const std::lock_guard lock(mutex_);
    folders_.insert(WithoutSeparator(folder));
}

void MemoryFileSystem::LoseFolder(const QString& folder) {
    const std::lock_guard lock(mutex_);
    folders_.erase(WithoutSeparator(folder));
}

void MemoryFileSystem::Add(const QString& path, const QByteArray& bytes, qint64 modifiedNs) {
    const std::lock_guard lock(mutex_);
    folders_.insert(FolderOf(path));
    files_[Plain(path)] = File{bytes, modifiedNs, false};
}

void MemoryFileSystem::SetReadOnly(const QString& path) {
    const std::lock_guard lock(mutex_);
    files_.at(Plain(path)).readOnly = true;
}

void MemoryFileSystem::FailCall(int n) {
    const std::lock_guard lock(mutex_);
    failIn_ = n;
}

void MemoryFileSystem::FailPath(const QString& path, const QString& reason) {
    const std::lock_guard lock(mutex_);
    failures_[WithoutSeparator(path)] = reason;
}

void MemoryFileSystem::SetLatency(std::chrono::microseconds latency) {
    const std::lock_guard lock(mutex_);
    latency_ = latency;
}

void MemoryFileSystem::SetReadHook(std::function<void(const QString&)> hook) {
    const std::lock_guard lock(mutex_);
    readHook_ = std::move(hook);
}

void MemoryFileSystem::SetChangeHook(std::function<void(const QString&)> hook) {
    const std::lock_guard lock(mutex_);
    changeHook_ = std::move(hook);
}

void MemoryFileSystem::LetFoldersTellStatus(std::function<bool(const QString&)> tells) {
    const std::lock_guard lock(mutex_);
    foldersTell_ = std::move(tells);
}

int MemoryFileSystem::OpenCount() const {
    const std::lock_guard lock(mutex_);
    return opens_;
}

int MemoryFileSystem::CallCount() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

QByteArray MemoryFileSystem::Bytes(const QString& path) const {
    const std::lock_guard lock(mutex_);
    return files_.at(Plain(path)).bytes;
}

QStringList MemoryFileSystem::Paths() const {
    const std::lock_guard lock(mutex_);
    QStringList paths;
    for (const auto& [path, file] : files_) {
        paths += path;
    }
    return paths;
}

bool MemoryFileSystem::FolderExists(const QString& folder) const {
    const bool works = Enter(folder).isEmpty();
    const std::lock_guard lock(mutex_);
    return works && folders_.contains(WithoutSeparator(folder));
}

bool MemoryFileSystem::IsRealFolder(const QString& folder) const {
    return FolderExists(folder);
}

bool MemoryFileSystem::FileExists(const QString& path) const {
    const bool works = Enter(path).isEmpty();
    const std::lock_guard lock(mutex_);
    return works && files_.contains(Plain(path));
}

// What every path in the folder begins with. The caller holds the lock.
QString MemoryFileSystem::PrefixOrThrow(const QString& folder) const {
    const QString wanted = WithoutSeparator(folder);
    if (!folders_.contains(wanted)) {
        throw FileError(folder, QStringLiteral("No such file or directory"), FileProblem::Missing);
    }
    return wanted.endsWith(QLatin1Char('/')) ? wanted : wanted + QLatin1Char('/');
}

// It costs what a listing costs.
void MemoryFileSystem::PrepareMoves(const QString& folder) const {
    try {
        Entries(folder);
    } catch (const FileError&) {
        return; // as agreed
    }
}

std::vector<FolderEntry> MemoryFileSystem::Entries(const QString& folder) const {
    EnterOrThrow(folder);
    const std::lock_guard lock(mutex_);
    const QString prefix = PrefixOrThrow(folder);
    std::vector<FolderEntry> entries;
    const auto add = [&](const QString& path, EntryKind kind) -> FolderEntry* {
        const QString name = path.startsWith(prefix) ? path.mid(prefix.size()) : QString();
        if (name.isEmpty() || name.contains(QLatin1Char('/'))) {
            return nullptr;
        }
        return &entries.emplace_back(FolderEntry{name, kind, name.startsWith(QLatin1Char('.')), std::nullopt});
    };
    for (const QString& path : folders_) {
        add(path, EntryKind::Folder);
    }
    for (auto file = files_.lower_bound(prefix); file != files_.end() && file->first.startsWith(prefix); ++file) {
        FolderEntry* entry = add(file->first, EntryKind::File);
        if (entry != nullptr && foldersTell_ && foldersTell_(entry->name)) {
            entry->status = FileStatus{file->second.bytes.size(), file->second.modifiedNs};
        }
    }
    return entries;
}

std::optional<FileStatus> MemoryFileSystem::Status(const QString& path) const {
    const bool works = Enter(path).isEmpty();
    const std::lock_guard lock(mutex_);
    const auto file = files_.find(Plain(path));
    if (!works || file == files_.end()) {
        return std::nullopt;
    }
    return FileStatus{file->second.bytes.size(), file->second.modifiedNs};
}

std::unique_ptr<InputFile> MemoryFileSystem::Open(const QString& path) const {
    {
        const std::lock_guard lock(mutex_);
        ++opens_;
    }
    EnterOrThrow(path);
    const std::lock_guard lock(mutex_);
    return std::make_unique<MemoryInputFile>(*this, path, Find(path)->second.bytes);
}

void MemoryFileSystem::Move(const QString& from, const QString& to) {
    EnterChange(from);
    const std::lock_guard lock(mutex_);
    MoveFile(from, to);
}

bool MemoryFileSystem::MoveUnless(const QString& from, const QString& to,
                                  const std::function<bool(const FileStatus&)>& keep) {
    EnterChange(from);
    FileStatus status;
    {
        const std::lock_guard lock(mutex_);
        const File& file = Find(from)->second;
        status = {file.bytes.size(), file.modifiedNs};
    }
    if (keep(status)) {
        return false;
    }
    const std::lock_guard lock(mutex_);
    MoveFile(from, to);
    return true;
}

// The caller holds the lock.
void MemoryFileSystem::MoveFile(const QString& from, const QString& to) {
    const File file = Find(from)->second;
    RequireFolderOf(to);
    if (const auto failure = failures_.find(WithoutSeparator(to)); failure != failures_.end()) {
        throw FileError(to, failure->second);
    }
    if (files_.contains(Plain(to))) {
        throw FileError(to, QStringLiteral("File exists"), FileProblem::Exists);
    }
    files_.erase(Plain(from));
    files_[Plain(to)] = file;
}

bool MemoryFileSystem::Remove(const QString& path) {
    return RemoveFile(path, false);
}

bool MemoryFileSystem::RemoveEvenReadOnly(const QString& path) {
    return RemoveFile(path, true);
}

bool MemoryFileSystem::RemoveFile(const QString& path, bool evenReadOnly) {
    EnterChange(path);
    const std::lock_guard lock(mutex_);
    const auto file = files_.find(Plain(path));
    if (file == files_.end()) {
        return false;
    }
    if (file->second.readOnly && !evenReadOnly) {
        throw FileError(path, QStringLiteral("The file is read-only."), FileProblem::NoRight);
    }
    files_.erase(file);
    return true;
}

bool MemoryFileSystem::RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) {
    EnterChange(path);
    FileStatus status;
    bool readOnly = false;
    {
        const std::lock_guard lock(mutex_);
        const File& file = Find(path)->second;
        status = {file.bytes.size(), file.modifiedNs};
        readOnly = file.readOnly;
    }
    if (keep(status)) {
        return false;
    }
    if (readOnly) {
        throw FileError(path, QStringLiteral("The file is read-only."), FileProblem::NoRight);
    }
    const std::lock_guard lock(mutex_);
    files_.erase(Plain(path));
    return true;
}

void MemoryFileSystem::MakeFolder(const QString& folder) {
    EnterChange(folder);
    const std::lock_guard lock(mutex_);
    const QString path = WithoutSeparator(folder);
    RequireFolderOf(path);
    if (files_.contains(path)) {
        throw FileError(folder, QStringLiteral("File exists"), FileProblem::Exists);
    }
    folders_.insert(path);
}

bool MemoryFileSystem::RemoveFolder(const QString& folder) {
    EnterChange(folder);
    const std::lock_guard lock(mutex_);
    const QString path = WithoutSeparator(folder);
    const auto isInIt = [prefix = path + QLatin1Char('/')](const QString& other) { return other.startsWith(prefix); };
    const bool isEmpty =
        std::none_of(folders_.begin(), folders_.end(), isInIt) &&
        std::none_of(files_.begin(), files_.end(), [&](const auto& file) { return isInIt(file.first); });
    return isEmpty && folders_.erase(path) > 0;
}

void MemoryFileSystem::WriteWhole(const QString& path, const QByteArray& bytes) {
    EnterOrThrow(path);
    const std::lock_guard lock(mutex_);
    RequireFolderOf(path);
    files_[Plain(path)].bytes = bytes;
}

QString MemoryFileSystem::Enter(const QString& path) const {
    std::unique_lock lock(mutex_);
    ++calls_;
    const auto failure = failures_.find(WithoutSeparator(path));
    QString reason = failure != failures_.end() ? failure->second : QString();
    if (failIn_ > 0 && --failIn_ == 0) {
        reason = QStringLiteral("Input/output error");
    }
    const std::chrono::microseconds latency = latency_;
    lock.unlock();
    if (latency.count() > 0) {
        std::this_thread::sleep_for(latency);
    }
    return reason;
}

void MemoryFileSystem::EnterOrThrow(const QString& path) const {
    if (const QString reason = Enter(path); !reason.isEmpty()) {
        throw FileError(path, reason);
    }
}

// As EnterOrThrow(), for what moves or removes a file.
void MemoryFileSystem::EnterChange(const QString& path) const {
    std::unique_lock lock(mutex_);
    const std::function<void(const QString&)> hook = changeHook_;
    lock.unlock();
    if (hook) {
        hook(path);
    }
    EnterOrThrow(path);
}

void MemoryFileSystem::RequireFolderOf(const QString& path) const {
    if (!folders_.contains(FolderOf(path))) {
        throw FileError(path, QStringLiteral("No such file or directory"), FileProblem::Missing);
    }
}

std::map<QString, MemoryFileSystem::File>::const_iterator MemoryFileSystem::Find(const QString& path) const {
    const auto file = files_.find(Plain(path));
    if (file == files_.end()) {
        throw FileError(path, QStringLiteral("No such file or directory"), FileProblem::Missing);
    }
    return file;
}

} // namespace quellbox
