#include "messages/WholeFile.h"

#include "platform/FlushFile.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quellbox {

namespace {

[[noreturn]] void ThrowFileError(const QString& path, const QString& reason, FileProblem problem) {
    throw FileError(QDir::toNativeSeparators(path), reason, problem);
}

[[noreturn]] void ThrowFileError(const QSaveFile& file) {
    ThrowFileError(file.fileName(), file.errorString(), FileProblem::Other);
}

void RequireFolder(const QString& path) {
    const QString folder = QFileInfo(path).path();
    if (!QFileInfo(folder).isDir()) {
        ThrowFileError(folder, QCoreApplication::translate("quellbox", "There is no such folder."),
                       FileProblem::Missing);
    }
}

} // namespace

WholeFile::WholeFile(const QString& path, ExistingFile existing) : existing_(existing), file_(path) {
    RequireFolder(path);
    RequireFreeName();
    if (!file_.open(QIODevice::WriteOnly)) {
        ThrowFileError(file_);
    }
}

void WholeFile::RequireFreeName() const {
    if (existing_ == ExistingFile::Keep && QFileInfo::exists(file_.fileName())) {
        ThrowFileError(file_.fileName(),
                       QCoreApplication::translate("quellbox", "There is a file of this name already."),
                       FileProblem::Exists);
    }
}

void WholeFile::Write(const QByteArray& bytes) {
    if (file_.write(bytes) != bytes.size()) {
        ThrowFileError(file_);
    }
}

void WholeFile::Commit() {
    // What goes wrong with the last bytes is not told by commit().
    if (!file_.flush()) {
        ThrowFileError(file_);
    }
    FlushToDisk(file_.handle(), QDir::toNativeSeparators(file_.fileName()));
    RequireFreeName(); // another program may have taken it meanwhile
    if (!file_.commit()) {
        ThrowFileError(file_);
    }
}

} // namespace quellbox
