#include "delivery/SmtpCapabilities.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

/// The words of all answers in what comes in at once, and the same when every byte comes alone.
QStringList WordsOf(const QByteArray& bytes) {
    const auto take = [](SmtpReplyReader& reader, QStringList& words) {
        while (const auto reply = reader.Take()) {
            words += reply->Words();
        }
    };
    QStringList atOnce;
    SmtpReplyReader reader;
    EXPECT_TRUE(reader.Feed(bytes));
    take(reader, atOnce);
    QStringList oneByOne;
    SmtpReplyReader slowReader;
    for (const char byte : bytes) {
        EXPECT_TRUE(slowReader.Feed(QByteArrayView(&byte, 1)));
        take(slowReader, oneByOne);
    }
    EXPECT_EQ(atOnce, oneByOne);
    return atOnce;
}

bool IsUnderstood(const QByteArray& bytes) {
    SmtpReplyReader reader;
    return reader.Feed(bytes);
}

QStringList List(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts) {
        list += QString::fromUtf8(text);
    }
    return list;
}

TEST(SmtpReplyTest, LinesOfOneAnswerAreJoined) {
    EXPECT_EQ(WordsOf("550-5.7.1 No\r\n550-\r\n550 5.7.1 way\r\n"), List({"550 5.7.1 No 5.7.1 way"}));
    EXPECT_EQ(WordsOf("250 a\r\n354 b\n250\r\n"), List({"250 a", "354 b", "250"}));
}

TEST(SmtpReplyTest, WordsHaveNothingThatUpsetsADisplay) {
    EXPECT_EQ(WordsOf("550 a\x1B[31m\tb\xE2\x80\xAE"
                      "c\r\n"),
              List({"550 a[31m bc"}));
    EXPECT_LE(WordsOf("550 " + QByteArray(4000, 'x') + "\r\n").first().size(), 1001);
}

TEST(SmtpReplyTest, WhatIsNoAnswerIsNotUnderstood) {
    for (const char* junk : {"hello\r\n", "\r\n", "25\r\n", "150 a\r\n", "650 a\r\n", "250a\r\n", "2500 a\r\n",
                             "25x a\r\n", "250-a\r\n251 b\r\n", " 250 a\r\n", "HTTP/1.1 200 OK\r\n"}) {
        EXPECT_FALSE(IsUnderstood(junk)) << junk;
    }
}

TEST(SmtpReplyTest, AfterJunkNothingIsUnderstood) {
    SmtpReplyReader reader;
    EXPECT_FALSE(reader.Feed("250 a\r\nhello\r\n250 b\r\n"));
    EXPECT_TRUE(reader.Take());
    EXPECT_FALSE(reader.Take());
    EXPECT_FALSE(reader.Feed("250 c\r\n"));
    EXPECT_FALSE(reader.Take());
}

TEST(SmtpReplyTest, LengthOfLinesIsBounded) {
    EXPECT_TRUE(IsUnderstood("250 " + QByteArray(4096 - 5, 'x') + "\r\n"));
    EXPECT_FALSE(IsUnderstood("250 " + QByteArray(4096 - 4, 'x') + "\r\n"));
    EXPECT_FALSE(IsUnderstood(QByteArray(4097, '2')));
}

TEST(SmtpReplyTest, NumberOfLinesIsBounded) {
    EXPECT_TRUE(IsUnderstood(QByteArray("250-x\r\n").repeated(255) + "250 x\r\n"));
    EXPECT_FALSE(IsUnderstood(QByteArray("250-x\r\n").repeated(256) + "250 x\r\n"));
}

TEST(SmtpReplyTest, WhatWaitsIsBounded) {
    SmtpReplyReader reader;
    const QByteArray many = ("250 " + QByteArray(1000, 'x') + "\r\n").repeated(1000);
    int understood = 0;
    while (understood < 10 && reader.Feed(many)) {
        ++understood;
    }
    EXPECT_EQ(understood, 4);
}

TEST(SmtpReplyTest, NothingWaitsAfterEverythingIsTaken) {
    SmtpReplyReader reader;
    EXPECT_TRUE(reader.IsEmpty());
    for (const char* part : {"2", "50-a\r\n", "250 b\r\n"}) {
        EXPECT_TRUE(reader.Feed(part));
        EXPECT_FALSE(reader.IsEmpty());
    }
    EXPECT_TRUE(reader.Take());
    EXPECT_TRUE(reader.IsEmpty());
}

TEST(SmtpCapabilitiesTest, ExtensionsAreReadInAnyCase) {
    const SmtpCapabilities offered = ParseCapabilities(
        {250, {"pipelining.example", "pipelining", "Size 1000", "8BITMIME", "smtpUTF8", "AUTH PLAIN", "X-OTHER 1"}});
    EXPECT_TRUE(offered.pipelining && offered.eightBit && offered.smtpUtf8 && offered.authentication && offered.size);
    EXPECT_EQ(offered.sizeLimit, 1000);
}

TEST(SmtpCapabilitiesTest, GreetingOffersNothing) {
    const SmtpCapabilities offered = ParseCapabilities({250, {"PIPELINING"}});
    EXPECT_FALSE(offered.pipelining);
}

TEST(SmtpCapabilitiesTest, SizeWithoutAUsefulNumberIsNoLimit) {
    for (const char* line : {"SIZE", "SIZE 0", "SIZE x", "SIZE -5", "SIZE 99999999999999999999"}) {
        const SmtpCapabilities offered = ParseCapabilities({250, {"fake.example", line}});
        EXPECT_TRUE(offered.size);
        EXPECT_EQ(offered.sizeLimit, 0) << line;
    }
}

} // namespace

} // namespace quellbox
