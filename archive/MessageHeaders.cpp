#include "archive/MessageHeaders.h"

namespace quellbox {

QString SclText(const HeaderFields& fields) {
    const QString confidence = fields.scl ? *fields.scl : fields.smsmse.value_or(QString()) + QLatin1Char('%');
    const qsizetype percent = confidence.indexOf(QLatin1Char('%'));
    return percent < 0 ? QString() : confidence.left(percent);
}

bool FillTexts(MessageTexts& texts, const HeaderFields& fields) {
    if (fields.errorCode != 0) {
        texts.subject = fields.errorText;
        return false;
    }
    texts = {fields.recipient, fields.sender, fields.subject, SclText(fields), fields.xSender};
    return true;
}

} // namespace quellbox
