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

SortKeys::SortKeys(const std::vector<MessageRow>& rows, int column) {
    if (column == ColumnDate) {
        TakeNumbers(rows, &MessageRow::Time);
    } else if (column == ColumnSize || column == ColumnBytes) {
        TakeNumbers(rows, &MessageRow::Size);
    } else {
        TakeTexts(rows, column);
    }
}

void SortKeys::TakeNumbers(const std::vector<MessageRow>& rows, qint64 (MessageRow::*number)() const) {
    numbers_.reserve(rows.size());
    for (const MessageRow& row : rows) {
        numbers_.push_back((row.*number)());
    }
}

void SortKeys::TakeTexts(const std::vector<MessageRow>& rows, int column) {
    QString text;
    begins_.reserve(rows.size() + 1);
    begins_.push_back(0);
    for (const MessageRow& row : rows) {
        text.resize(0);
        row.AppendCell(column, text);
        AppendFolded(folded_, text);
        begins_.push_back(folded_.size());
    }
}

} // namespace quellbox
