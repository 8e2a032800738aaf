#include "platform/FileSystem.h"

namespace quellbox {

namespace {

class PathFolderReader : public FolderReader {
public:
    PathFolderReader(const FileSystem& files, QString folder) : files_(files), folder_(std::move(folder)) {}

    std::optional<FileStatus> Status(const QString& name) const override { return files_.Status(folder_ + name); }
    std::unique_ptr<InputFile> Open(const QString& name) const override { return files_.Open(folder_ + name); }

private:
    const FileSystem& files_;
    const QString folder_;
};

} // namespace

void FileSystem::VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const {
    for (FolderEntry& entry : Entries(folder)) {
        visit(std::move(entry));
    }
}

std::vector<FolderEntry> FileSystem::VisitedEntries(const QString& folder) const {
    std::vector<FolderEntry> entries;
    VisitEntries(folder, [&entries](FolderEntry entry) { entries.push_back(std::move(entry)); });
    return entries;
}

std::unique_ptr<FolderReader> FileSystem::ReadFolder(const QString& folder) const {
    return std::make_unique<PathFolderReader>(*this, folder);
}

QByteArray ReadWhole(InputFile& file, const std::function<bool()>& goOn) {
    constexpr qsizetype step = 64 * 1024;
    QByteArray bytes;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + step);
        const qint64 count = file.Read(bytes.data() + before, step);
        bytes.resize(before + count);
        if (count == 0 || (goOn && !goOn())) {
            return bytes;
        }
    }
}

QByteArray ReadWhole(const FileSystem& files, const QString& path, const std::function<bool()>& goOn) {
    return ReadWhole(*files.Open(path), goOn);
}

} // namespace quellbox
