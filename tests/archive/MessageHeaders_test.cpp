#include "archive/MessageHeaders.h"

#include <gtest/gtest.h>

namespace quellbox {

using namespace Qt::StringLiterals;

TEST(FillTexts, TakesTheFieldsOfALoadedMessage) {
    HeaderFields fields;
    fields.rating = u"7 53.21"_s;
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
