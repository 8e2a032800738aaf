#include "delivery/SmtpText.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

TEST(SmtpTextTest, FitMessageKeepsItsBytesWithoutACopy) {
    const QByteArray message = "Subject: a\r\n\r\none\r\n\r\ntwo. . .\r\n";
    EXPECT_EQ(SmtpText(message), message);
    EXPECT_EQ(SmtpText(message).constData(), message.constData());
}

TEST(SmtpTextTest, EveryKindOfLineEndBecomesCrLf) {
    EXPECT_EQ(SmtpText("a\nb\rc\r\nd\r\n"), "a\r\nb\r\nc\r\nd\r\n");
    EXPECT_EQ(SmtpText("a\r\r\nb\n\rc\n\n"), "a\r\n\r\nb\r\n\r\nc\r\n\r\n");
}

TEST(SmtpTextTest, LastLineIsEnded) {
    EXPECT_EQ(SmtpText("a"), "a\r\n");
    EXPECT_EQ(SmtpText("a\r"), "a\r\n");
    EXPECT_EQ(SmtpText(""), "\r\n");
}

TEST(SmtpTextTest, DotsAtTheBeginningOfLinesAreDoubled) {
    EXPECT_EQ(SmtpText(".\r\n..\r\na.b\r\n.c\r\n"), "..\r\n...\r\na.b\r\n..c\r\n");
    EXPECT_EQ(SmtpText("."), "..\r\n");
}

TEST(SmtpTextTest, NothingInAMessageEndsIt) {
    for (const char* smuggled : {"\n.\r\n", "\r\n.\n", "\n.\n", "\r.\r", "\r.\r\n", "\r\n.\r", "\r\n.\r\n", "\n.\r"}) {
        const QByteArray text = SmtpText(QByteArray("a") + smuggled + "MAIL FROM:<eve@spam.example>\r\n");
        EXPECT_EQ(text, "a\r\n..\r\nMAIL FROM:<eve@spam.example>\r\n") << QByteArray(smuggled).toHex().toStdString();
    }
}

TEST(SmtpTextTest, ZeroBytesAndEightBitsStay) {
    const QByteArray message("a\0b\xE9\xFF\r\n", 7);
    EXPECT_EQ(SmtpText(message), message);
}

TEST(SmtpTextTest, SizeCountsNoAddedDots) {
    EXPECT_EQ(SmtpTextSize(SmtpText(".a\r\n.b\r\nc.d\r\n")), 13);
    EXPECT_EQ(SmtpTextSize(SmtpText("a\nb\n")), 6);
}

} // namespace

} // namespace quellbox
