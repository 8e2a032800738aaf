#include "messages/TableLines.h"

#include "messages/TableText.h"

#include <QStringEncoder>

namespace quellbox {

namespace {

void AppendJsonCell(bool isNumber, const QString& cell, QString& line) {
    if (isNumber && cell.isEmpty()) {
        line += QLatin1String("null");
    } else if (isNumber && IsPlainNumber(cell)) {
        line += cell;
    } else {
        AppendJsonText(cell, line);
    }
}

} // namespace

QString CsvLine(const TableColumns& columns, const QStringList& cells) {
    QString line;
    for (size_t column = 0; column < columns.size(); ++column) {
        const QString cell = cells.value(static_cast<qsizetype>(column));
        line += column == 0 ? QLatin1String() : QLatin1String(",");
        if (columns[column].isNumber && (cell.isEmpty() || IsPlainNumber(cell))) {
            line += cell;
        } else {
            AppendCsvText(HarmlessInSpreadsheet(cell), line);
        }
    }
    return line + QLatin1String("\r\n");
}

QString CsvHeader(const TableColumns& columns) {
    QStringList headers;
    TableColumns texts = columns;
    for (TableColumn& column : texts) {
        headers += column.header;
        column.isNumber = false;
    }
    return CsvLine(texts, headers);
}

QString CsvMark() {
    return QChar(QChar::ByteOrderMark);
}

QString JsonLine(const TableColumns& columns, const QStringList& cells) {
    QString line(QLatin1Char('{'));
    for (size_t column = 0; column < columns.size(); ++column) {
        line += column == 0 ? QLatin1String() : QLatin1String(",");
        AppendJsonText(columns[column].key, line);
        line += QLatin1Char(':');
        AppendJsonCell(columns[column].isNumber, cells.value(static_cast<qsizetype>(column)), line);
    }
    return line + QLatin1String("}\n");
}

QByteArray TableBytes(const QString& line) {
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    return encoder(line);
}

} // namespace quellbox
