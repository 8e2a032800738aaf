#include "messages/FoldCase.h"

namespace quellbox {

void FoldCase(QChar* text, const QChar* end) {
    char16_t last = 0;
    for (; text != end; ++text) {
        const char16_t code = text->unicode();
        if (code < 0x80) {
            *text = QChar(code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + 0x20) : code);
        } else if (QChar::isLowSurrogate(code) && QChar::isHighSurrogate(last)) {
            // No folding of such a pair changes its first half.
            *text = QChar(QChar::lowSurrogate(QChar::toCaseFolded(QChar::surrogateToUcs4(last, code))));
        } else {
            *text = text->toCaseFolded();
        }
        last = code;
    }
}

} // namespace quellbox
