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

TEST(NextChunk, NeverSplitsALineEndOrACharacter) {
    EXPECT_EQ(NextChunk(QStringLiteral("abc\r\ndef"), 0, 4), 5);
    EXPECT_EQ(NextChunk(QStringLiteral("ab\U0001F600cd"), 0, 3), 4);
}
