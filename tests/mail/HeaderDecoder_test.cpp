#include "mail/HeaderDecoder.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace quellbox {

namespace {

std::string Decoded(QByteArrayView raw) {
    return DecodeHeaderValue(raw).toStdString();
}

} // namespace

TEST(HeaderDecoder, PlainValueIsTrimmed) {
    EXPECT_EQ(Decoded(" Hello, world \r\n"), "Hello, world");
}

TEST(HeaderDecoder, FoldsAreRemovedAndTheirWhiteSpaceStays) {
    EXPECT_EQ(Decoded(" one\r\n two\n\tthree\n"), "one two three");
}

TEST(HeaderDecoder, QuotedPrintableWordIsDecodedWithUnderscoreAsSpace) {
    EXPECT_EQ(Decoded("=?utf-8?Q?Gr=C3=BC=c3=9Fe_an_alle?="), "Grüße an alle");
}

TEST(HeaderDecoder, Base64WordIsDecodedWithAndWithoutPadding) {
    EXPECT_EQ(Decoded("=?UTF-8?B?w6k=?="), "é");
    EXPECT_EQ(Decoded("=?UTF-8?b?w6k?="), "é");
}

TEST(HeaderDecoder, SpaceBetweenEncodedWordsDisappears) {
    EXPECT_EQ(Decoded("=?utf-8?q?a?= \r\n =?iso-8859-1?q?b?= c"), "ab c");
}

TEST(HeaderDecoder, CharacterSplitBetweenTwoWordsIsJoined) {
    EXPECT_EQ(Decoded("=?utf-8?Q?=C3?= =?utf-8?Q?=BC?="), "ü");
    EXPECT_EQ(Decoded("=?utf-8?B?w7?= =?utf-8?B?w==?="), "ü");
}

TEST(HeaderDecoder, PaddingInsideARunEndsAGroup) {
    EXPECT_EQ(Decoded("=?utf-8?B?QQ==?= =?utf-8?B?Qg==?="), "AB");
}

TEST(HeaderDecoder, LanguageTagOfACharacterSetIsIgnored) {
    EXPECT_EQ(Decoded("=?iso-8859-1*de?Q?=FC?="), "ü");
}

TEST(HeaderDecoder, WordsCountInsideQuotesAndNextToOtherCharacters) {
    EXPECT_EQ(Decoded("\"=?utf-8?q?J=C3=B6rg?=\"<j@example.org>"), "\"Jörg\"<j@example.org>");
}

TEST(HeaderDecoder, AddressFieldKeepsEveryAddress) {
    EXPECT_EQ(Decoded(" \"A, B\" <a@example.org>,\r\n =?utf-8?q?=C3=89mile?= <e@example.org>, x@example.org\r\n"),
              "\"A, B\" <a@example.org>, Émile <e@example.org>, x@example.org");
}

TEST(HeaderDecoder, UndeclaredBytesAreUtf8IfValidElseWindows1252) {
    EXPECT_EQ(Decoded("caf\xC3\xA9"), "café");
    EXPECT_EQ(Decoded("caf\xE9 \x80"), "café €");
}

TEST(HeaderDecoder, BytesOfAnUnknownCharacterSetAreUndeclared) {
    EXPECT_EQ(Decoded("=?x-nowhere?Q?caf=E9?="), "café");
    EXPECT_EQ(Decoded("=?../../etc?Q?caf=C3=A9?="), "café");
}

TEST(HeaderDecoder, AsciiThatIsNoneIsUndeclared) {
    EXPECT_EQ(Decoded("=?us-ascii?Q?caf=C3=A9?="), "café");
}

TEST(HeaderDecoder, NamedCharacterSetsAreConverted) {
    EXPECT_EQ(Decoded("=?koi8-r?B?8NLJ18XU?="), "Привет");
    EXPECT_EQ(Decoded("=?iso-2022-jp?B?GyRCRnxLXBsoQg==?="), "日本");
    EXPECT_EQ(Decoded("=?gb2312?B?1tDOxA==?="), "中文");
    EXPECT_EQ(Decoded("=?shift_jis?B?k/qWew==?="), "日本");
}

TEST(HeaderDecoder, StateOfOneValueDoesNotReachTheNext) {
    EXPECT_EQ(Decoded("=?iso-2022-jp?B?GyRCRnw=?="), "日");
    EXPECT_EQ(Decoded("=?iso-2022-jp?Q?plain?="), "plain");
}

TEST(HeaderDecoder, InvalidBytesOfANamedCharacterSetAreReplaced) {
    EXPECT_EQ(Decoded("=?utf-8?Q?a=FFb?="), "a\xEF\xBF\xBD"
                                            "b");
    EXPECT_EQ(Decoded("=?euc-jp?Q?a=FF=FFb?="), "a\xEF\xBF\xBD\xEF\xBF\xBD"
                                                "b");
    EXPECT_EQ(Decoded("=?euc-jp?Q?a=C6?="), "a\xEF\xBF\xBD");
}

TEST(HeaderDecoder, MalformedWordsStayAsWritten) {
    for (const char* raw : {"=?", "=?=", "a =?utf-8?Q?open", "=?utf-8?X?abc?=",
                            "=?"
                            "?Q?abc?=",
                            "=?utf-8?Q", "=?a b?Q?c?="})
        EXPECT_EQ(Decoded(raw), raw);
    EXPECT_EQ(Decoded("=?utf-8?Q?=4?="), "=4");
    EXPECT_EQ(Decoded("=?utf-8?Q?"
                      "?="),
              "");
}

TEST(HeaderDecoder, ControlAndOverrideCharactersNeverReachTheText) {
    EXPECT_EQ(Decoded(QByteArrayView("a\0b\x01"
                                     "c\x7F"
                                     "d\re",
                                     9)),
              "abcd e");
    EXPECT_EQ(Decoded("=?utf-8?Q?a=0D=0Ab=00=1B=C2=9Bc?="), "a  bc");
    EXPECT_EQ(Decoded("=?utf-8?Q?inv=E2=80=AEfdp.exe=E2=81=A6?="), "invfdp.exe");
    EXPECT_EQ(Decoded("a\xE2\x80\xA8"
                      "b"),
              "a b");
}

TEST(HeaderDecoder, ManyOpenWordsAndManyCharacterSetsEnd) {
    QByteArray value;
    for (int i = 0; i < 200'000; ++i)
        value += "=?a?b? ";
    EXPECT_EQ(DecodeHeaderValue(value).size(), value.size() - 1);
    value.clear();
    for (int i = 0; i < 2000; ++i)
        value += "=?x" + QByteArray::number(i) + "?q?a?= ";
    EXPECT_EQ(DecodeHeaderValue(value), QString(2000, u'a'));
}

TEST(HeaderDecoder, ThreadsDecodeAtTheSameTime) {
    std::array<int, 4> right{};
    std::array<std::thread, 4> threads;
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i] = std::thread([&right, i] {
            for (int round = 0; round < 500; ++round) {
                right[i] += Decoded("=?koi8-r?B?8NLJ18XU?=") == "Привет";
                right[i] += Decoded("=?iso-2022-jp?B?GyRCRnxLXBsoQg==?=") == "日本";
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, (std::array<int, 4>{1000, 1000, 1000, 1000}));
}

} // namespace quellbox
