#include "contents/RawText.h"

#include <gtest/gtest.h>

using namespace quellbox;

TEST(RawText, IsUtf8WhenValidElseWindows1252) {
    EXPECT_EQ(RawText("\xC3\xA9"), QString(QChar(0xE9)));
    EXPECT_EQ(RawText("\xE9\x80"), QString(QChar(0xE9)) + QChar(0x20AC));
    EXPECT_TRUE(RawText({}).isEmpty());
}

TEST(RawText, ShowsANulAsItsSymbol) {
    EXPECT_EQ(RawText(QByteArray("a\0b", 3)), QStringLiteral("a\u2400b"));
}

TEST(NextChunk, TakesWhatIsLeft) {
    EXPECT_EQ(NextChunk(QStringLiteral("abc"), 0, 3), 3);
    EXPECT_EQ(NextChunk(QStringLiteral("abc"), 2, 3), 1);
    EXPECT_EQ(NextChunk(QStringLiteral("abc"), 3, 3), 0);
}

TEST(NextChunk, EndsAtALineEndWhereThereIsOne) {
    EXPECT_EQ(NextChunk(QStringLiteral("a\r\nb\r\ncdefg"), 0, 8), 6);
}

TEST(NextChunk, TakesSmallPiecesOfALongLine) {
    EXPECT_EQ(NextChunk(QString(20'000, u'x'), 0, 16'384), 2048);
    EXPECT_EQ(NextChunk(QString(2047, u'x') + QStringLiteral("\r\n") + QString(20'000, u'x'), 0, 2048), 2049);
    EXPECT_EQ(NextChunk(QString(5000, u'x') + QStringLiteral("\n") + QString(20'000, u'x'), 0, 16'384), 5001);
}

TEST(NextChunk, NeverSplitsALineEndOrACharacter) {
    EXPECT_EQ(NextChunk(QStringLiteral("abc\r\ndef"), 0, 4), 5);
    EXPECT_EQ(NextChunk(QStringLiteral("ab\U0001F600cd"), 0, 3), 4);
}
