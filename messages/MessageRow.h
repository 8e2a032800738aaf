#pragma once

#include <QString>

#include <memory>

namespace quellbox {

/// The columns of the message list, in display order. `Bytes` is hidden; it is what `Size` sorts by.
enum Column { ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnBytes, ColumnScl, ColumnCount };

/// What the header fields of a message say in its row.
struct MessageTexts {
    QString to;
    QString from;
    QString subject;
    QString scl; ///< of the column "SCL%"
    QString tag; ///< envelope sender
};

/// One row of the message list: a message file of the archive directory. A list may have 32,766 of them, so the texts
/// lie packed in one piece of memory, and what is a number is kept as one. Moving a row moves a pointer; a row that was
/// moved from may only be assigned to or destroyed.
class MessageRow {
public:
    MessageRow() : MessageRow({}, 0, 0, {}) {}

    /// `key` is the file name within the archive directory, unique in the list; `size` is in bytes, `time` in seconds
    /// of local time since 1970.
    MessageRow(const QString& key, qint64 size, qint64 time, const MessageTexts& texts);

    MessageRow(const MessageRow& other);
    MessageRow(MessageRow&& other) noexcept = default;
    MessageRow& operator=(const MessageRow& other) { return *this = MessageRow(other); }
    MessageRow& operator=(MessageRow&& other) noexcept = default;
    ~MessageRow() = default;

    QString Key() const;
    bool HasKey(QStringView key) const;
    qint64 Size() const;
    qint64 Time() const;
    QString Tag() const;
    MessageTexts Texts() const;

    /// The row of the same file with other texts.
    MessageRow WithTexts(const MessageTexts& texts) const;

    /// What a column shows, in full.
    QString Cell(int column) const;

    /// Appends what Cell() returns to a text, which need not allocate memory when it is used again and again.
    void AppendCell(int column, QString& to) const;

    /// Appends what Tag() returns, likewise.
    void AppendTag(QString& to) const;

    /// An unread row is shown bold.
    bool IsUnread() const;
    void SetUnread(bool unread);

private:
    struct Block;
    struct FreeBlock {
        void operator()(Block* block) const;
    };

    template <class Use>
    auto WithText(int text, Use use) const;
    QString Text(int text) const;

    std::unique_ptr<Block, FreeBlock> block_;
};

} // namespace quellbox
