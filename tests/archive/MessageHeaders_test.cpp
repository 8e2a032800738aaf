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

TEST(FillTexts, TakesTheFieldsOfALoadedMessage) {
    HeaderFields fields = Confidence(u"7 53.21%"_s, {});
    fields.recipient = u"to"_s;
    fields.sender = u"from"_s;
    fields.subject = u"subject"_s;
    fields.xSender = u"Envelope@Example.com"_s;
    MessageTexts texts;
    EXPECT_TRUE(FillTexts(texts, fields));
    EXPECT_EQ(texts.to, u"to"_s);
    EXPECT_EQ(texts.from, u"from"_s);
    EXPECT_EQ(texts.subject, u"subject"_s);
    EXPECT_EQ(texts.scl, u"7 53.21"_s);
    EXPECT_EQ(texts.tag, u"Envelope@Example.com"_s);
}

TEST(FillTexts, EmptiesWhatTheMessageDoesNotHave) {
    MessageTexts texts;
    texts.tag = u"old"_s;
    texts.scl = u"old"_s;
    EXPECT_TRUE(FillTexts(texts, HeaderFields()));
    EXPECT_EQ(texts.tag, QString());
    EXPECT_EQ(texts.scl, QString());
}

TEST(FillTexts, OfAnUnreadableMessageOnlyGetTheError) {
    HeaderFields fields;
    fields.errorCode = 1;
    fields.errorText = u"not a message"_s;
    MessageTexts texts;
    texts.tag = u"tag"_s;
    texts.to = u"to"_s;
    EXPECT_FALSE(FillTexts(texts, fields));
    EXPECT_EQ(texts.subject, u"not a message"_s);
    EXPECT_EQ(texts.to, u"to"_s);
    EXPECT_EQ(texts.scl, QString());
    EXPECT_EQ(texts.tag, u"tag"_s);
}

} // namespace quellbox
