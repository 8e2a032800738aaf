#include "messages/TableFile.h"

#include "platform/FlushFile.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace quellbox {

namespace {

[[noreturn]] void ThrowTableError(const QString& path, const QString& reason, FileProblem problem) {
    throw FileError(QDir::toNativeSeparators(path), reason, problem);
}

[[noreturn]] void ThrowTableError(const QSaveFile& file) {
    ThrowTableError(file.fileName(), file.errorString(), FileProblem::Other);
}

void RequireFolder(const QString& path) {
    const QString folder = QFileInfo(path).path();
    if (!QFileInfo(folder).isDir()) {
        ThrowTableError(folder, QCoreApplication::translate("quellbox", "There is no such folder."),
                        FileProblem::Missing);
    }
}

void RequireFreeName(const QString& path, ExistingFile existing) {
    if (existing == ExistingFile::Keep && QFileInfo::exists(path)) {
        ThrowTableError(path, QCoreApplication::translate("quellbox", "There is a file of this name already."),
                        FileProblem::Exists);
    }
}

/// A form of a file: what it begins with, and a row as a line of it.
struct TableForm {
    QString (*Beginning)(const TableColumns& columns);
    QString (*Line)(const TableColumns& columns, const QStringList& cells);
};

QString CsvBeginning(const TableColumns& columns) {
    return CsvMark() + CsvHeader(columns);
}

TableForm FormOf(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("csv")) {
        return {CsvBeginning, CsvLine};
    }
    if (suffix == QLatin1String("jsonl")) {
        return {[](const TableColumns&) { return QString(); }, JsonLine};
    }
    ThrowTableError(path, QCoreApplication::translate("quellbox", "The name has to end with .csv or .jsonl."),
                    FileProblem::Other);
}

void Write(QSaveFile& file, const QString& text) {
    const QByteArray bytes = TableBytes(text);
    if (file.write(bytes) != bytes.size()) {
        ThrowTableError(file);
    }
}

} // namespace

void WriteTable(const QString& path, const TableColumns& columns, const NextRow& next, ExistingFile existing) {
    const TableForm form = FormOf(path);
    RequireFolder(path);
    RequireFreeName(path, existing);
    QSaveFile file(path); // which leaves nothing behind unless it is committed
    if (!file.open(QIODevice::WriteOnly)) {
        ThrowTableError(file);
    }
    Write(file, form.Beginning(columns));
    for (QStringList cells; next(cells); cells.clear()) {
        Write(file, form.Line(columns, cells));
    }
    // What goes wrong with the last bytes is not told by commit().
    if (!file.flush()) {
        ThrowTableError(file);
    }
    FlushToDisk(file.handle(), QDir::toNativeSeparators(path));
    RequireFreeName(path, existing); // another program may have taken it meanwhile
    if (!file.commit()) {
        ThrowTableError(file);
    }
}

} // namespace quellbox
