#include "messages/QuickFilter.h"

#include "messages/FoldedRows.h"
#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

/// Whether a row is in sight while this is typed.
bool Shows(const QString& typed, const MessageRow& row) {
    FoldedRows rows;
    rows.Append(row);
    return QuickFilter(typed).Matches(rows.Text(0));
}

bool IsWithin(const QString& typed, const QString& other) {
    return QuickFilter(typed).IsWithin(QuickFilter(other));
}

} // namespace

TEST(QuickFilter, WantsEachWordAnywhereInTheRow) {
    const MessageRow row(u"key"_s, 1234, 86399,
                         {u"reader@x.org"_s, u"Ann <a@y.org>"_s, u"Cheap watches"_s, u"7"_s, {}});
    for (const QString& typed : {u"ann"_s, u"watches reader"_s, u"eap wat"_s, u"1970-01-01"_s, u"1234 7"_s}) {
        EXPECT_TRUE(Shows(typed, row)) << typed.toStdString();
    }
    EXPECT_FALSE(Shows(u"ann bob"_s, row));
    EXPECT_FALSE(Shows(u"cheapwatches"_s, row));
}

TEST(QuickFilter, ColumnsAreApart) {
    const MessageRow row(u"key"_s, 0, 0, {u"ab"_s, u"cd"_s, {}, {}, {}});
    EXPECT_TRUE(Shows(u"ab"_s, row));
    EXPECT_FALSE(Shows(u"bc"_s, row));
}

TEST(QuickFilter, SeeksWhatIsShownOnly) {
    const MessageRow row(u"secretkey"_s, 1234, 0, {{}, {}, {}, {}, u"secrettag"_s});
    EXPECT_FALSE(Shows(u"secretkey"_s, row));
    EXPECT_FALSE(Shows(u"secrettag"_s, row));
    EXPECT_TRUE(Shows(u"1234"_s, row));
    EXPECT_FALSE(Shows(u"01234"_s, row)) << "the column of bytes is hidden";
}

TEST(QuickFilter, SeeksTheFirstThousandCharactersOfACell) {
    EXPECT_TRUE(Shows(u"end"_s, RowWith(QString(997, u'x') + u"end"_s)));
    EXPECT_FALSE(Shows(u"end"_s, RowWith(QString(998, u'x') + u"end"_s)));
    EXPECT_TRUE(Shows(u"7"_s, MessageRow(u"k"_s, 0, 0, {{}, {}, QString(2000, u'x'), u"7"_s, {}})))
        << "what follows a long cell is sought as well";
}

TEST(QuickFilter, IgnoresTheCaseOfAllLetters) {
    EXPECT_TRUE(Shows(u"ÜBER"_s, RowWith(u"Gegenüber"_s)));
    EXPECT_TRUE(Shows(u"über"_s, RowWith(u"ÜBERWEISUNG"_s)));
    EXPECT_TRUE(Shows(u"ΣΟΦΟΣ"_s, RowWith(u"σοφός σοφος"_s)));
    EXPECT_TRUE(Shows(u"привет"_s, RowWith(u"ПРИВЕТ"_s)));
    EXPECT_TRUE(Shows(u"\U00010428"_s, RowWith(u"\U00010400"_s))) << "letters beyond 16 bits";
    EXPECT_FALSE(Shows(u"uber"_s, RowWith(u"über"_s)));
}

TEST(QuickFilter, BlanksAloneSeekNothing) {
    for (const QString& typed : {u""_s, u" "_s, u" \t\u00a0 "_s}) {
        EXPECT_TRUE(QuickFilter(typed).IsEmpty());
        EXPECT_TRUE(Shows(typed, RowWith(u"a"_s)));
    }
    EXPECT_EQ(QuickFilter(u"  a  b "_s), QuickFilter(u"a b"_s));
}

TEST(QuickFilter, ALongerWordOrAFurtherOneIsNarrower) {
    EXPECT_TRUE(IsWithin(u"ab"_s, u"a"_s));
    EXPECT_TRUE(IsWithin(u"b a"_s, u"a"_s));
    EXPECT_TRUE(IsWithin(u"abc"_s, u"a B"_s));
    EXPECT_TRUE(IsWithin(u"a"_s, u""_s));
    EXPECT_FALSE(IsWithin(u"a"_s, u"ab"_s));
    EXPECT_FALSE(IsWithin(u"ab"_s, u"ac"_s));
    EXPECT_FALSE(IsWithin(u""_s, u"a"_s));
}

TEST(QuickFilter, AWordWithinAnotherOneSaysNothingNew) {
    EXPECT_EQ(QuickFilter(u"cheap CHE cheap"_s), QuickFilter(u"cheap"_s));
}

} // namespace quellbox
