#include "messages/MessageRow.h"

#include "messages/FormatTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>

namespace quellbox {

namespace {

enum PackedText { TextKey, TextTo, TextFrom, TextSubject, TextScl, TextTag, TextCount };

bool IsLatin1(QStringView text) {
    const auto join = [](char16_t seen, QChar unit) { return static_cast<char16_t>(seen | unit.unicode()); };
    return std::accumulate(text.begin(), text.end(), char16_t{0}, join) <= 0xFF;
}

/// Appends a number in decimal, with zeros in front of it up to so many digits.
void AppendNumber(qint64 number, int digits, QString& to) {
    std::array<char, std::numeric_limits<qint64>::digits10 + 2> buffer{};
    const char* end = std::to_chars(buffer.begin(), buffer.end(), number).ptr;
    const qsizetype length = end - buffer.data();
    to.resize(to.size() + std::max<qsizetype>(0, digits - length), QLatin1Char('0'));
    to.append(QLatin1String(buffer.data(), length));
}

} // namespace

/// The characters of the texts follow it in memory, one text after the other: Latin-1 where that is enough for all of
/// them, which saves half, else UTF-16. Either is exact for any text, as a file name must be.
struct MessageRow::Block {
    qint64 size = 0;
    qint64 time = 0;
    std::array<quint32, TextCount> ends{}; // of the texts, in characters from the start of the first one
    bool isWide = false;
    bool isUnread = false;

    size_t Bytes() const { return sizeof(Block) + ends.back() * (isWide ? sizeof(char16_t) : 1); }
    char* Narrow() { return reinterpret_cast<char*>(this + 1); }
    char16_t* Wide() { return reinterpret_cast<char16_t*>(this + 1); }
};

void MessageRow::FreeBlock::operator()(Block* block) const {
    ::operator delete(block);
}

MessageRow::MessageRow(const QString& key, qint64 size, qint64 time, const MessageTexts& texts) {
    const std::array<QStringView, TextCount> all{key, texts.to, texts.from, texts.subject, texts.scl, texts.tag};
    Block head{size, time, {}, !std::all_of(all.begin(), all.end(), IsLatin1), false};
    quint32 end = 0;
    for (size_t text = 0; text < all.size(); ++text) {
        end += static_cast<quint32>(all[text].size());
        head.ends[text] = end;
    }
    block_.reset(new (::operator new(head.Bytes())) Block(head));
    char* narrow = block_->Narrow();
    char16_t* wide = block_->Wide();
    for (const QStringView text : all) {
        if (head.isWide) {
            wide = std::copy_n(text.utf16(), text.size(), wide);
        } else {
            narrow = std::transform(text.begin(), text.end(), narrow, [](QChar unit) { return unit.toLatin1(); });
        }
    }
}

MessageRow::MessageRow(const MessageRow& other)
    : block_(static_cast<Block*>(
          std::memcpy(::operator new(other.block_->Bytes()), other.block_.get(), other.block_->Bytes()))) {}

/// Calls `use` with a packed text as it is stored.
template <class Use>
auto MessageRow::WithText(int text, Use use) const {
    const quint32 begin = text == 0 ? 0 : block_->ends[static_cast<size_t>(text - 1)];
    const auto length = static_cast<qsizetype>(block_->ends[static_cast<size_t>(text)] - begin);
    return block_->isWide ? use(QStringView(block_->Wide() + begin, length))
                          : use(QLatin1String(block_->Narrow() + begin, length));
}

QString MessageRow::Text(int text) const {
    return WithText(text, [](auto characters) { return characters.toString(); });
}

QString MessageRow::Key() const {
    return Text(TextKey);
}

bool MessageRow::HasKey(QStringView key) const {
    return WithText(TextKey, [key](auto characters) { return characters == key; });
}

qint64 MessageRow::Size() const {
    return block_->size;
}

qint64 MessageRow::Time() const {
    return block_->time;
}

QString MessageRow::Tag() const {
    return Text(TextTag);
}

MessageTexts MessageRow::Texts() const {
    return {Text(TextTo), Text(TextFrom), Text(TextSubject), Text(TextScl), Text(TextTag)};
}

MessageRow MessageRow::WithTexts(const MessageTexts& texts) const {
    MessageRow row(Key(), Size(), Time(), texts);
    row.SetUnread(IsUnread());
    return row;
}

QString MessageRow::Cell(int column) const {
    QString text;
    AppendCell(column, text);
    return text;
}

void MessageRow::AppendCell(int column, QString& to) const {
    const auto append = [this, &to](int text) { WithText(text, [&to](auto characters) { to.append(characters); }); };
    switch (column) {
    case ColumnDate:
        return AppendTime(block_->time, to);
    case ColumnTo:
        return append(TextTo);
    case ColumnFrom:
        return append(TextFrom);
    case ColumnSubject:
        return append(TextSubject);
    case ColumnSize:
        return AppendNumber(block_->size, 1, to);
    case ColumnBytes:
        return AppendNumber(block_->size, 8, to);
    case ColumnScl:
        return append(TextScl);
    default:
        return;
    }
}

void MessageRow::AppendTag(QString& to) const {
    WithText(TextTag, [&to](auto characters) { to.append(characters); });
}

bool MessageRow::IsUnread() const {
    return block_->isUnread;
}

void MessageRow::SetUnread(bool unread) {
    block_->isUnread = unread;
}

} // namespace quellbox
