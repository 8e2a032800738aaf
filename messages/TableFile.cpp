#include "messages/TableFile.h"

#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quellbox {

namespace {

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
    throw FileError(QDir::toNativeSeparators(path),
                    QCoreApplication::translate("quellbox", "The name has to end with .csv or .jsonl."),
                    FileProblem::Other);
}

} // namespace

void WriteTable(const QString& path, const TableColumns& columns, const NextRow& next, ExistingFile existing) {
    const TableForm form = FormOf(path);
    WholeFile file(path, existing);
    file.Write(TableBytes(form.Beginning(columns)));
    for (QStringList cells; next(cells); cells.clear()) {
        file.Write(TableBytes(form.Line(columns, cells)));
    }
    file.Commit();
}

} // namespace quellbox
