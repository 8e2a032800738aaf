#include "mail/TextWidth.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

TEST(TextWidth, CountsColumnsAndNotCharacters) {
    EXPECT_EQ(ColumnsOf(QString()), 0);
    EXPECT_EQ(ColumnsOf(u"abc"), 3);
    EXPECT_EQ(ColumnsOf(u"Gr\u00fc\u00dfe"), 5);
    EXPECT_EQ(ColumnsOf(u"u\u0308"), 1); // a combining mark
    EXPECT_EQ(ColumnsOf(u"\u6771\u4eac"), 4);
    EXPECT_EQ(ColumnsOf(u"\U0001f600"), 2);
    EXPECT_EQ(ColumnsOf(u"\U00010330"), 1);
}

TEST(TextWidth, WhatFitsIsPadded) {
    EXPECT_EQ(FitColumns(QStringLiteral("abc"), 5), QStringLiteral("abc  "));
    EXPECT_EQ(FitColumns(QStringLiteral("abcde"), 5), QStringLiteral("abcde"));
    EXPECT_EQ(FitColumns(QString(), 2), QStringLiteral("  "));
    EXPECT_EQ(FitColumns(QStringLiteral(u"\u6771\u4eac"), 5), QStringLiteral(u"\u6771\u4eac "));
}

TEST(TextWidth, WhatDoesNotFitIsCutBetweenCharacters) {
    EXPECT_EQ(FitColumns(QStringLiteral("abcdef"), 5), QStringLiteral(u"abcd\u2026"));
    EXPECT_EQ(FitColumns(QStringLiteral(u"\u6771\u4eac\u6771"), 5), QStringLiteral(u"\u6771\u4eac\u2026"));
    EXPECT_EQ(FitColumns(QStringLiteral(u"\u6771\u4eac\u6771"), 4), QStringLiteral(u"\u6771\u2026 "));
    EXPECT_EQ(FitColumns(QStringLiteral(u"a\U0001f600b"), 3), QStringLiteral(u"a\u2026 "));
}

TEST(TextWidth, HalfAPairOfSurrogatesIsACharacterOfItsOwn) {
    const QString half(QChar(0xd83d));
    EXPECT_EQ(ColumnsOf(half), 1);
    EXPECT_EQ(FitColumns(half + half + half, 2), half + QChar(0x2026));
}

} // namespace
