#include "messages/SortKeys.h"

namespace quellbox {

namespace {

void AppendFolded(std::u16string& folded, QStringView text) {
    char16_t last = 0;
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if (code < 0x80) {
            folded += code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + 0x20) : code;
        } else if (QChar::isLowSurrogate(code) && QChar::isHighSurrogate(last)) {
            // No folding of such a pair changes its first half.
            folded += QChar::lowSurrogate(QChar::toCaseFolded(QChar::surrogateToUcs4(last, code)));
        } else {
            folded += unit.toCaseFolded().unicode();
        }
        last = code;
    }
}

} // namespace

SortKeys::SortKeys(const std::vector<std::unique_ptr<MessageRow>>& rows, size_t column) {
    size_t length = 0;
    for (const std::unique_ptr<MessageRow>& row : rows) {
        length += static_cast<size_t>(row->cells[column].size());
    }
    folded_.reserve(length);
    begins_.reserve(rows.size() + 1);
    begins_.push_back(0);
    for (const std::unique_ptr<MessageRow>& row : rows) {
        AppendFolded(folded_, row->cells[column]);
        begins_.push_back(folded_.size());
    }
}

} // namespace quellbox
