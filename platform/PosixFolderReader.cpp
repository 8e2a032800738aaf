#ifndef _WIN32

#include "platform/PosixFolderReader.h"

#include "platform/PathBytes.h"
#include "platform/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quellbox {

namespace {

class PosixFolderReader : public FolderReader {
public:
    explicit PosixFolderReader(QString folder)
        : folder_(std::move(folder)),
          descriptor_(::open(SystemPath(folder_).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (!descriptor_.IsOpen()) {
            ThrowFileError(folder_, errno);
        }
    }

    bool IsMountPoint() const override {
        struct stat folder {};
        struct stat parent {};
        if (::fstatat(descriptor_.Number(), "..", &parent, 0) != 0) {
            // Who may list the folder but not search it would take every file for one that has vanished.
            if (errno == EACCES) {
                ThrowFileError(folder_, EACCES);
            }
            return false;
        }
        return ::fstat(descriptor_.Number(), &folder) == 0 && folder.st_dev != parent.st_dev;
    }

    std::optional<FileStatus> Status(const QString& name) const override {
        struct stat status {};
        const QByteArray bytes = PathBytes(name);
        if (bytes.contains('\0')) {
            return std::nullopt;
        }
        if (::fstatat(descriptor_.Number(), bytes.constData(), &status, 0) != 0) {
            // Of a server that does not answer nobody knows whether it has the file.
            const int error = errno;
            if (ProblemOf(error) == FileProblem::NoAnswer) {
                ThrowFileError(folder_ + name, error);
            }
            return std::nullopt;
        }
        if (!S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        return FileStatus{status.st_size, ModifiedNs(status)};
    }

    std::unique_ptr<InputFile> Open(const QString& name) const override {
        const int number = ::openat(descriptor_.Number(), SystemPath(name).constData(), readOnlyFlags);
        if (number < 0) {
            ThrowFileError(folder_ + name, errno);
        }
        return std::make_unique<PosixInputFile>(number, folder_ + name);
    }

private:
    const QString folder_;
    const Descriptor descriptor_;
};

} // namespace

std::unique_ptr<FolderReader> OpenFolderReader(const QString& folder) {
    return std::make_unique<PosixFolderReader>(folder);
}

} // namespace quellbox

#endif
