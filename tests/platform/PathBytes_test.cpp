#include "platform/PathBytes.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char16_t* units) {
    return QString::fromUtf16(units);
}

TEST(PathBytes, ValidUtf8StandsForItself) {
    const QByteArray bytes = "folder/Gr\xC3\xBC\xC3\x9F"
                             "e \xF0\x9F\x93\xA7.EML";
    EXPECT_EQ(PathText(bytes), Text(u"folder/Gr\u00FC\u00DFe \U0001F4E7.EML"));
    EXPECT_EQ(PathBytes(PathText(bytes)), bytes);
}

TEST(PathBytes, ByteOrderMarksInFrontAreAPartOfTheName) {
    for (const QByteArray rest : {"a", "\xEF\xBB\xBF", "\xFC"}) {
        const QByteArray bytes = "\xEF\xBB\xBF" + rest;
        EXPECT_EQ(PathText(bytes).at(0).unicode(), u'\uFEFF');
        EXPECT_EQ(PathBytes(PathText(bytes)), bytes) << bytes.toHex().constData();
    }
}

TEST(PathBytes, ByteOutsideUtf8BecomesMarkAndTwoDigits) {
    EXPECT_EQ(PathText("gr\xFC\xDF"
                       "e"),
              Text(u"gr\uFFFDFC\uFFFDDFe"));
    EXPECT_EQ(PathBytes(Text(u"gr\uFFFDFC\uFFFDDFe")), QByteArray("gr\xFC\xDF"
                                                                  "e"));
}

TEST(PathBytes, RealReplacementCharacterIsEscapedByteByByte) {
    const QByteArray bytes = "a\xEF\xBF\xBD"
                             "41";
    EXPECT_EQ(PathText(bytes), Text(u"a\uFFFDEF\uFFFDBF\uFFFDBD41"));
    EXPECT_EQ(PathBytes(PathText(bytes)), bytes);
}

TEST(PathBytes, MarkWithoutUpperCaseDigitsIsItself) {
    EXPECT_EQ(PathBytes(Text(u"a\uFFFDfc")), QByteArray("a\xEF\xBF\xBD"
                                                        "fc"));
    EXPECT_EQ(PathBytes(Text(u"a\uFFFDF")), QByteArray("a\xEF\xBF\xBD"
                                                       "F"));
    EXPECT_EQ(PathBytes(Text(u"\uFFFD\uFFFDFC")), QByteArray("\xEF\xBF\xBD\xFC"));
}

TEST(PathBytes, EveryPairOfBytesComesBack) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            QByteArray bytes = "a";
            bytes += static_cast<char>(first);
            bytes += static_cast<char>(second);
            bytes += "F0";
            ASSERT_EQ(PathBytes(PathText(bytes)), bytes) << bytes.toHex().constData();
        }
    }
}

TEST(PathBytes, SequencesThatOnlyLookLikeUtf8AreEscaped) {
    // A surrogate, a value above the last character, an overlong form and a sequence that ends too early.
    for (const QByteArray bytes : {"\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC0\xAF", "\xE2\x82"}) {
        EXPECT_EQ(PathText(bytes).size(), bytes.size() * 3) << bytes.toHex().constData();
        EXPECT_EQ(PathBytes(PathText(bytes)), bytes);
    }
}

} // namespace

} // namespace quellbox
