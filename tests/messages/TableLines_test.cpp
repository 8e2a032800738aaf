#include "messages/TableLines.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const TableColumns columns{{u"subject"_s, u"Betreff"_s, false}, {u"size"_s, u"=Größe"_s, true}};

std::string Csv(const QStringList& cells) {
    return CsvLine(columns, cells).toStdString();
}

std::string Json(const QStringList& cells) {
    return JsonLine(columns, cells).toStdString();
}

} // namespace

TEST(TableLines, TheHeaderOfCsvHasNoMarkAndNothingThatIsCalculated) {
    EXPECT_EQ(CsvHeader(columns).toStdString(), "\"Betreff\",\"'=Größe\"\r\n");
    EXPECT_EQ(TableBytes(CsvMark()), "\xEF\xBB\xBF");
}

TEST(TableLines, NumbersStandWithoutQuotesWhereTheyAreSome) {
    EXPECT_EQ(Csv({u"a, \"b\""_s, u"-1234.5"_s}), "\"a, \"\"b\"\"\",-1234.5\r\n");
    EXPECT_EQ(Json({u"a, \"b\""_s, u"-1234.5"_s}), "{\"subject\":\"a, \\\"b\\\"\",\"size\":-1234.5}\n");
    EXPECT_EQ(Csv({u"7"_s, u"=2"_s}), "\"7\",\"'=2\"\r\n");
    EXPECT_EQ(Json({u"7"_s, u"=2"_s}), "{\"subject\":\"7\",\"size\":\"=2\"}\n");
}

TEST(TableLines, ACellThatIsMissingIsAnEmptyOne) {
    EXPECT_EQ(Csv({}), "\"\",\r\n");
    EXPECT_EQ(Json({}), "{\"subject\":\"\",\"size\":null}\n");
    EXPECT_EQ(Csv({u"a"_s, {}, u"more"_s}), "\"a\",\r\n");
    EXPECT_EQ(Json({u"a"_s, {}, u"more"_s}), "{\"subject\":\"a\",\"size\":null}\n");
}

TEST(TableLines, ALineBreakInACellEndsALineOfCsvOnly) {
    EXPECT_EQ(Csv({u"a\nb"_s, u"1"_s}), "\"a\nb\",1\r\n");
    EXPECT_EQ(Json({u"a\nb"_s, u"1"_s}), "{\"subject\":\"a\\u000ab\",\"size\":1}\n");
}

TEST(TableLines, WithoutColumnsThereIsStillALine) {
    EXPECT_EQ(CsvLine({}, {u"a"_s}), u"\r\n"_s);
    EXPECT_EQ(JsonLine({}, {u"a"_s}), u"{}\n"_s);
}

TEST(TableLines, BytesAreUtf8WhateverTheTextHolds) {
    EXPECT_EQ(TableBytes(u"Grüße \U0001F4E7\n"_s), "Grüße \xF0\x9F\x93\xA7\n");
    EXPECT_EQ(TableBytes(u"x"_s + QChar(0xD800)), "x\xEF\xBF\xBD") << "half a pair at the end";
    EXPECT_EQ(TableBytes(QChar(0xDC00) + u"y"_s), "\xEF\xBF\xBDy") << "and nothing is left of the line before";
}

} // namespace quellbox
