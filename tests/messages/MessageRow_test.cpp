#include "messages/MessageRow.h"

#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

#include <limits>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

MessageTexts Texts(const QString& suffix) {
    return {u"to"_s + suffix, u"from"_s + suffix, u"subject"_s + suffix, u"7 53.21"_s + suffix, u"tag"_s + suffix};
}

void ExpectTexts(const MessageRow& row, const QString& suffix) {
    EXPECT_EQ(row.Key(), u"key"_s + suffix);
    EXPECT_EQ(row.Cell(ColumnTo), u"to"_s + suffix);
    EXPECT_EQ(row.Cell(ColumnFrom), u"from"_s + suffix);
    EXPECT_EQ(row.Cell(ColumnSubject), u"subject"_s + suffix);
    EXPECT_EQ(row.Cell(ColumnScl), u"7 53.21"_s + suffix);
    EXPECT_EQ(row.Tag(), u"tag"_s + suffix);
    const MessageTexts texts = row.Texts();
    EXPECT_EQ(texts.to, u"to"_s + suffix);
    EXPECT_EQ(texts.from, u"from"_s + suffix);
    EXPECT_EQ(texts.subject, u"subject"_s + suffix);
    EXPECT_EQ(texts.scl, u"7 53.21"_s + suffix);
    EXPECT_EQ(texts.tag, u"tag"_s + suffix);
}

} // namespace

TEST(MessageRow, KeepsEveryTextExactly) {
    // Around the last character of Latin-1, a pair of surrogates, half a pair, and NUL.
    const QStringList suffixes{QString(),
                               u"\u00FF"_s,
                               u"\u0100"_s,
                               u"\U0001F4E7"_s,
                               QChar(0xD83D),
                               u"\uFFFD"
                               u"80.eml"_s,
                               QString(1, QChar(0))};
    for (const QString& suffix : suffixes) {
        ExpectTexts(MessageRow(u"key"_s + suffix, 0, 0, Texts(suffix)), suffix);
    }
}

TEST(MessageRow, KeepsEveryTextWhereOnlyOneNeedsMoreThanLatin1) {
    MessageTexts texts = Texts(u"\u00E4"_s);
    texts.tag = u"\u043F"_s;
    const MessageRow row(u"key"_s, 0, 0, texts);
    EXPECT_EQ(row.Key(), u"key"_s);
    EXPECT_EQ(row.Cell(ColumnSubject), u"subject\u00E4"_s);
    EXPECT_EQ(row.Tag(), u"\u043F"_s);
}

TEST(MessageRow, KeepsALongText) {
    for (const QChar character : {QChar(u'x'), QChar(0x043F)}) {
        const QString subject(1'000'000, character);
        const MessageRow row(u"key"_s, 0, 0, {u"to"_s, {}, subject, u"9"_s, {}});
        EXPECT_TRUE(row.Cell(ColumnSubject) == subject);
        EXPECT_EQ(row.Cell(ColumnScl), u"9"_s);
    }
}

TEST(MessageRow, ShowsTheSizePlainlyAndWithAtLeastEightDigits) {
    const auto sizes = [](qint64 bytes) {
        const MessageRow row = WithSize(RowWith(u"a"_s), bytes);
        EXPECT_EQ(row.Size(), bytes);
        return QStringList{row.Cell(ColumnSize), row.Cell(ColumnBytes)};
    };
    EXPECT_EQ(sizes(0), (QStringList{u"0"_s, u"00000000"_s}));
    EXPECT_EQ(sizes(123), (QStringList{u"123"_s, u"00000123"_s}));
    EXPECT_EQ(sizes(99'999'999), (QStringList{u"99999999"_s, u"99999999"_s}));
    EXPECT_EQ(sizes(100'000'000), (QStringList{u"100000000"_s, u"100000000"_s}));
    EXPECT_EQ(sizes(std::numeric_limits<qint64>::max()),
              (QStringList{u"9223372036854775807"_s, u"9223372036854775807"_s}));
}

TEST(MessageRow, ShowsTheTime) {
    const MessageRow row = WithTime(RowWith(u"a"_s), {{2026, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(row.Cell(ColumnDate), u"2026-02-03 04:05:06"_s);
    EXPECT_EQ(MessageRow(u"a"_s, 0, -1, {}).Cell(ColumnDate), u"1969-12-31 23:59:59"_s);
    EXPECT_EQ(MessageRow(u"a"_s, 0, -1, {}).Time(), -1);
}

TEST(MessageRow, ShowsNothingInAColumnThatTheListDoesNotHave) {
    const MessageRow row(u"key"_s, 1, 1, Texts({}));
    EXPECT_EQ(row.Cell(-1), QString());
    EXPECT_EQ(row.Cell(ColumnCount), QString());
}

TEST(MessageRow, AppendsACellToWhatIsThere) {
    const MessageRow row(u"key"_s, 12, 0, Texts({}));
    QString text = u"|"_s;
    for (int column = 0; column < ColumnCount; ++column) {
        row.AppendCell(column, text);
        text += u'|';
    }
    EXPECT_EQ(text, u"|1970-01-01 00:00:00|to|from|subject|12|00000012|7 53.21|"_s);
}

TEST(MessageRow, KnowsItsKey) {
    for (const QString& key : {u"a.eml"_s, u"\u043F.eml"_s, QString()}) {
        const MessageRow row(key, 0, 0, {});
        EXPECT_TRUE(row.HasKey(key));
        EXPECT_FALSE(row.HasKey(key + u'x'));
        EXPECT_FALSE(row.HasKey(u"A.EML"));
    }
}

TEST(MessageRow, ACopyIsIndependent) {
    MessageRow row(u"key"_s, 5, 7, Texts(u"\u00FF"_s));
    row.SetUnread(true);
    MessageRow copy = row;
    row.SetUnread(false);
    EXPECT_TRUE(copy.IsUnread());
    EXPECT_EQ(copy.Size(), 5);
    EXPECT_EQ(copy.Time(), 7);
    copy = RowWith(u"other"_s);
    EXPECT_EQ(copy.Cell(ColumnSubject), u"other"_s);
    EXPECT_EQ(row.Cell(ColumnSubject), u"subject\u00FF"_s);
}

TEST(MessageRow, WithOtherTextsStaysTheRowOfItsFile) {
    MessageRow row(u"key"_s, 5, 7, {});
    row.SetUnread(true);
    const MessageRow other = row.WithTexts(Texts(u"\u0100"_s));
    EXPECT_EQ(other.Key(), u"key"_s);
    EXPECT_EQ(other.Size(), 5);
    EXPECT_EQ(other.Time(), 7);
    EXPECT_TRUE(other.IsUnread());
    EXPECT_EQ(other.Cell(ColumnTo), u"to\u0100"_s);
}

TEST(MessageRow, IsEmptyAndReadAtFirst) {
    const MessageRow row;
    EXPECT_EQ(row.Key(), QString());
    EXPECT_EQ(row.Cell(ColumnSubject), QString());
    EXPECT_EQ(row.Size(), 0);
    EXPECT_FALSE(row.IsUnread());
}

} // namespace quellbox
