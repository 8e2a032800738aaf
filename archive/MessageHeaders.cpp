#include "archive/MessageHeaders.h"

#include <utility>

namespace quellbox {

bool FillTexts(MessageTexts& texts, HeaderFields fields) {
    if (fields.errorCode != 0) {
        texts.subject = std::move(fields.errorText);
        return false;
    }
    texts.scl = std::move(fields.rating);
    texts.to = std::move(fields.recipient);
    texts.from = std::move(fields.sender);
    texts.subject = std::move(fields.subject);
    texts.tag = std::move(fields.xSender);
    return true;
}

} // namespace quellbox
