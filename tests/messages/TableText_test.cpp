#include "messages/TableText.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

std::string Harmless(const QString& text) {
    return HarmlessInSpreadsheet(text).toStdString();
}

std::string Json(const QString& text) {
    QString json;
    AppendJsonText(text, json);
    return json.toStdString();
}

} // namespace

TEST(HarmlessInSpreadsheet, LeavesAnOrdinaryTextAsItIs) {
    for (const char* text : {"", "Hello", "a=b", "1+1", "jo@example.com", "2026-03-10 12:03:00", "'quoted", "5 99.9",
                             "Re: a; b; c", "a,=b", "\"quoted\""}) {
        EXPECT_EQ(Harmless(QString::fromUtf8(text)), text);
    }
}

TEST(HarmlessInSpreadsheet, PutsAnApostropheBeforeWhatWouldBeCalculated) {
    for (const char* text :
         {"=1+1", "+1+1", "-1+1", "@SUM(A1)", "=", "-", "=cmd|'/c calc'!A0", " =1", "\u00A0=1", "\u3000-x", "\u200B=1",
          "\"=1\"", "\uFF1D1", "\uFF0B1", "\uFF0D1", "\uFF20x", "\u22121", "\x01=1"}) {
        EXPECT_EQ(Harmless(QString::fromUtf8(text)), std::string("'") + text) << text;
    }
    EXPECT_EQ(HarmlessInSpreadsheet(u"\uFEFF=1"_s), u"'\uFEFF=1"_s);
}

TEST(HarmlessInSpreadsheet, PutsAnApostropheBeforeATabAndALineBreakAtTheBeginning) {
    EXPECT_EQ(Harmless(u"\tx"_s), "'\tx");
    EXPECT_EQ(Harmless(u"\rx"_s), "'\rx");
    EXPECT_EQ(Harmless(u"\nx"_s), "'\nx");
    EXPECT_EQ(Harmless(u"\t=x"_s), "'\t'=x");
}

TEST(HarmlessInSpreadsheet, TakesEachPartThatAnotherSeparatorWouldMakeForACell) {
    EXPECT_EQ(Harmless(u"a;=1;b"_s), "a;'=1;b");
    EXPECT_EQ(Harmless(u"a; +1"_s), "a;' +1");
    EXPECT_EQ(Harmless(u"a\t=1\r\n-x\n@y"_s), "a\t'=1\r\n'-x\n'@y");
    EXPECT_EQ(Harmless(u"a;\"\"=1"_s), "a;'\"\"=1");
    EXPECT_EQ(Harmless(u";=1;"_s), ";'=1;");
}

TEST(HarmlessInSpreadsheet, LeavesMereNumbers) {
    for (const char* text : {"-1", "-1.50", "0", "1e9", "-2E-3"}) {
        EXPECT_EQ(Harmless(QString::fromUtf8(text)), text);
    }
    for (const char* text : {"+1", "-.5", "-01", "-1 ", "-1\n"}) {
        EXPECT_EQ(Harmless(QString::fromUtf8(text)), std::string("'") + text);
    }
}

TEST(AppendCsvText, DoublesQuotesAndReplacesNul) {
    QString csv = u"1,"_s;
    AppendCsvText(QStringView(u"say \"hi\",\r\nthen\0go", 18).toString(), csv);
    EXPECT_EQ(csv, u"1,\"say \"\"hi\"\",\r\nthen\uFFFDgo\""_s);
}

TEST(AppendJsonText, EscapesWhatWouldEndTheTextOrTheLine) {
    EXPECT_EQ(Json(u"a\"b\\c"_s), R"("a\"b\\c")");
    EXPECT_EQ(Json(QStringView(u"\r\n\t\0", 4).toString()), R"("\u000d\u000a\u0009\u0000")");
    EXPECT_EQ(Json(u"\u0085\u2028\u2029\u007F"_s), R"("\u0085\u2028\u2029\u007f")");
    EXPECT_EQ(Json(u"=Ünï\U0001F600"_s), "\"=Ünï\U0001F600\"");
}

TEST(AppendJsonText, ParsersReadTheSameText) {
    QString all;
    for (char16_t unit = 0; unit < 0x2100; ++unit) {
        all += QChar(unit);
    }
    QString json = u"{\"x\":"_s;
    AppendJsonText(all, json);
    json += u'}';
    EXPECT_EQ(QJsonDocument::fromJson(json.toUtf8()).object().value(u"x"_s).toString(), all);
}

} // namespace quellbox
