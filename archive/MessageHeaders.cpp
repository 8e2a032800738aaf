#include "archive/MessageHeaders.h"

#include <utility>

namespace quellbox {

QString SclText(const HeaderFields& fields) {
    const QString confidence = fields.scl ? *fields.scl : fields.smsmse.value_or(QString());
    const qsizetype percent = confidence.indexOf(QLatin1Char('%'));
    if (percent >= 0) {
        return confidence.left(percent);
    }
    // The second header counts as if it ended with the sign.
    return fields.scl ? QString() : confidence;
}

bool FillTexts(MessageTexts& texts, HeaderFields fields) {
    if (fields.errorCode != 0) {
        texts.subject = std::move(fields.errorText);
        return false;
    }
    texts.scl = SclText(fields);
    texts.to = std::move(fields.recipient);
    texts.from = std::move(fields.sender);
    texts.subject = std::move(fields.subject);
    texts.tag = std::move(fields.xSender);
    return true;
}

} // namespace quellbox
