#include "platform/AnsiText.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

} // namespace

TEST(AnsiText, AsciiStandsForItself) {
    EXPECT_EQ(AnsiText(u"From: \"Quellbox\" <postmaster>\r\n\t~"_s), "From: \"Quellbox\" <postmaster>\r\n\t~");
    EXPECT_EQ(AnsiText(QString()), QByteArray());
}

TEST(AnsiText, WritesWhatWindows1252Knows) {
    EXPECT_EQ(Windows1252Text(u"J\u00FCrgen \u00A0\u00FF"_s), "J\xFCrgen \xA0\xFF");
    EXPECT_EQ(Windows1252Text(u"\u20AC\u201A\u2018\u2019\u0178\u0160\u017E\u2122"_s),
              "\x80\x82\x91\x92\x9F\x8A\x9E\x99");
}

TEST(AnsiText, AQuestionMarkStandsForEachCharacterThatIsUnknown) {
    EXPECT_EQ(Windows1252Text(u"a\u0141b\u4E2Dc"_s), "a?b?c");
    EXPECT_EQ(Windows1252Text(u"\U0001F600."_s), "?.");
    EXPECT_EQ(Windows1252Text(u"\u0081\u009D"_s), "??");
    EXPECT_EQ(Windows1252Text(QString(QChar(0xD800)) + u"x"_s), "?x");
}

} // namespace quellbox
