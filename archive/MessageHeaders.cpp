#include "archive/MessageHeaders.h"

namespace quellbox {

QString SclText(const HeaderFields& fields) {
    const QString confidence = fields.scl ? *fields.scl : fields.smsmse.value_or(QString()) + QLatin1Char('%');
    const qsizetype percent = confidence.indexOf(QLatin1Char('%'));
    return percent < 0 ? QString() : confidence.left(percent);
}

bool FillRow(MessageRow& row, const HeaderFields& fields) {
    if (fields.errorCode != 0) {
        row.cells[ColumnSubject] = fields.errorText;
        return false;
    }
    row.tag = fields.xSender;
    row.cells[ColumnTo] = fields.recipient;
    row.cells[ColumnFrom] = fields.sender;
    row.cells[ColumnSubject] = fields.subject;
    row.cells[ColumnScl] = SclText(fields);
    return true;
}

} // namespace quellbox
