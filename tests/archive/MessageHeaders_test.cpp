#include "archive/MessageHeaders.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

HeaderFields Confidence(std::optional<QString> scl, std::optional<QString> smsmse) {
    HeaderFields fields;
    fields.scl = std::move(scl);
    fields.smsmse = std::move(smsmse);
    return fields;
}

} // namespace

TEST(SclText, IsWhatPrecedesTheFirstPerCentSign) {
    EXPECT_EQ(SclText(Confidence(u"7 53.21%"_s, {})), u"7 53.21"_s);
    EXPECT_EQ(SclText(Confidence(u"9 1% 2%"_s, {})), u"9 1"_s);
    EXPECT_EQ(SclText(Confidence(u"%9"_s, {})), QString());
}

TEST(SclText, IsEmptyWithoutAPerCentSign) {
    EXPECT_EQ(SclText(Confidence(u"7"_s, {})), QString());
    EXPECT_EQ(SclText(Confidence(QString(), {})), QString());
}

TEST(SclText, IsTheWholeSecondHeaderWhenTheFirstIsAbsent) {
    EXPECT_EQ(SclText(Confidence({}, u"9"_s)), u"9"_s);
    EXPECT_EQ(SclText(Confidence({}, u"9% sure"_s)), u"9"_s);
}

TEST(SclText, AsksTheSecondHeaderOnlyWhenTheFirstIsAbsent) {
    EXPECT_EQ(SclText(Confidence(u"7"_s, u"9"_s)), QString());
    EXPECT_EQ(SclText(Confidence(u"7%"_s, u"9"_s)), u"7"_s);
    EXPECT_EQ(SclText(Confidence(QString(), u"9"_s)), QString());
}

TEST(SclText, IsEmptyWithNeitherHeader) {
    EXPECT_EQ(SclText(Confidence({}, {})), QString());
}

TEST(FillRow, TakesTheFieldsOfALoadedMessage) {
    HeaderFields fields = Confidence(u"7 53.21%"_s, {});
    fields.recipient = u"to"_s;
    fields.sender = u"from"_s;
    fields.subject = u"subject"_s;
    fields.xSender = u"Envelope@Example.com"_s;
    MessageRow row;
    row.key = u"key"_s;
    row.cells[ColumnDate] = u"date"_s;
    EXPECT_TRUE(FillRow(row, fields));
    EXPECT_EQ(row.cells[ColumnTo], u"to"_s);
    EXPECT_EQ(row.cells[ColumnFrom], u"from"_s);
    EXPECT_EQ(row.cells[ColumnSubject], u"subject"_s);
    EXPECT_EQ(row.cells[ColumnScl], u"7 53.21"_s);
    EXPECT_EQ(row.tag, u"Envelope@Example.com"_s);
    EXPECT_EQ(row.key, u"key"_s);
    EXPECT_EQ(row.cells[ColumnDate], u"date"_s);
}

TEST(FillRow, EmptiesWhatTheMessageDoesNotHave) {
    MessageRow row;
    row.tag = u"old"_s;
    row.cells[ColumnScl] = u"old"_s;
    EXPECT_TRUE(FillRow(row, HeaderFields()));
    EXPECT_EQ(row.tag, QString());
    EXPECT_EQ(row.cells[ColumnScl], QString());
}

TEST(FillRow, PutsOnlyTheErrorIntoTheRowOfAnUnreadableMessage) {
    HeaderFields fields;
    fields.errorCode = 1;
    fields.errorText = u"not a message"_s;
    MessageRow row;
    row.tag = u"tag"_s;
    row.cells[ColumnTo] = u"to"_s;
    EXPECT_FALSE(FillRow(row, fields));
    EXPECT_EQ(row.cells[ColumnSubject], u"not a message"_s);
    EXPECT_EQ(row.cells[ColumnTo], u"to"_s);
    EXPECT_EQ(row.cells[ColumnScl], QString());
    EXPECT_EQ(row.tag, u"tag"_s);
}

} // namespace quellbox
