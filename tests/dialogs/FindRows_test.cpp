#include "dialogs/FindRows.h"

#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class FindRowsTest : public testing::Test {
protected:
    void Fill(const QStringList& subjects) { model.Append(RowsWith(subjects)); }

    /// Fills four rows, of which the first and the third have the subject "hit".
    void FillHits() {
        Fill({QStringLiteral("a hit"), QStringLiteral("b"), QStringLiteral("HIT c"), QStringLiteral("d")});
    }

    void SearchFor(const char* text, qint16 column = ColumnSubject) {
        state.FindText = QLatin1String(text);
        state.HeaderField = column;
    }

    std::vector<int> Find() { return FindRows(model, state).rows; }

    /// Searches where nothing is to be found.
    std::string Miss() {
        const FindResult found = FindRows(model, state);
        EXPECT_TRUE(found.rows.empty());
        return found.missText.toStdString();
    }

    MessageListModel model;
    AppState state;
};

using Rows = std::vector<int>;

TEST_F(FindRowsTest, FindsOneRowAfterTheOtherIgnoringCase) {
    FillHits();
    SearchFor("Hit");
    EXPECT_EQ(Find(), Rows{0});
    EXPECT_EQ(state.FindPosition, 1);
    EXPECT_EQ(Find(), Rows{2});
    EXPECT_EQ(state.FindPosition, 3);
    EXPECT_EQ(state.FindText, QStringLiteral("Hit"));
}

TEST_F(FindRowsTest, AMissAfterTheLastHitResetsTheSearchAndDoesNotWrap) {
    FillHits();
    SearchFor("hit");
    state.FindPosition = 3;
    EXPECT_EQ(Miss(), "'hit' not found in header field SUBJECT");
    EXPECT_EQ(state.FindPosition, 0);
    EXPECT_TRUE(state.FindText.isEmpty());
}

TEST_F(FindRowsTest, AHitInTheLastRowIsFollowedByTheFirst) {
    Fill({QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("x")});
    SearchFor("x");
    state.FindPosition = 2;
    EXPECT_EQ(Find(), Rows{2});
    EXPECT_EQ(state.FindPosition, 3);
    EXPECT_EQ(Find(), Rows{0});
}

TEST_F(FindRowsTest, APositionBeyondTheListStartsAtTheTop) {
    FillHits();
    SearchFor("hit");
    state.FindPosition = 30'000;
    EXPECT_EQ(Find(), Rows{0});
}

TEST_F(FindRowsTest, AnEmptyListMissesAtOnce) {
    SearchFor("abc");
    EXPECT_EQ(Miss(), "'abc' not found in header field SUBJECT");
    EXPECT_EQ(state.FindPosition, 0);
    EXPECT_TRUE(state.FindText.isEmpty());
}

TEST_F(FindRowsTest, AnEmptyTextOccursInTheNextRow) {
    Fill({QString(), QStringLiteral("b")});
    SearchFor("");
    EXPECT_EQ(Find(), Rows{0});
    EXPECT_EQ(Find(), Rows{1});
}

TEST_F(FindRowsTest, FindAllGoesOnToTheEnd) {
    FillHits();
    SearchFor("hit");
    state.FindAll = -1;
    EXPECT_EQ(Find(), Rows({0, 2}));
    EXPECT_EQ(state.FindPosition, 3);
}

TEST_F(FindRowsTest, FindNextAfterFindAllMissesUnlessRowsWereAdded) {
    FillHits();
    SearchFor("hit");
    state.FindAll = -1;
    Find();
    state.FindAll = 0;
    AppState before = state;
    EXPECT_EQ(Miss(), "'hit' not found in header field SUBJECT");
    model.Append({RowWith(QStringLiteral("new hit"))});
    EXPECT_EQ(FindRows(model, before).rows, Rows{4});
}

TEST_F(FindRowsTest, FindAllWithARememberedTextStartsAfterTheLastHit) {
    Fill({QStringLiteral("x"), QStringLiteral("x"), QStringLiteral("x")});
    SearchFor("x");
    Find();
    state.FindAll = -1;
    EXPECT_EQ(Find(), Rows({1, 2}));
}

TEST_F(FindRowsTest, SearchesOnlyTheColumnOfTheHeaderField) {
    MessageRow row = RowWith(QStringLiteral("key"));
    for (size_t column = 0; column < ColumnCount; ++column) {
        row.cells[column] = QStringLiteral("text of %1").arg(column);
    }
    model.Append({row});
    for (qint16 column = 0; column < ColumnCount; ++column) {
        for (qint16 other = 0; other < ColumnCount; ++other) {
            SearchFor(qPrintable(QString::number(other)), column);
            EXPECT_EQ(Find() == Rows{0}, column == other) << column << ' ' << other;
            state.FindPosition = 0;
        }
    }
}

TEST_F(FindRowsTest, TheDateIsSearchedAsItIsDisplayed) {
    MessageRow row = RowWith(QStringLiteral("key"));
    row.cells[ColumnDate] = QStringLiteral("2026-03-10 12:03:00");
    model.Append({row});
    SearchFor("03-10 12:03", ColumnDate);
    EXPECT_EQ(Find(), Rows{0});
    SearchFor("10 Mar", ColumnDate);
    EXPECT_EQ(Miss(), "'10 Mar' not found in header field DATE");
}

TEST_F(FindRowsTest, TheMissNamesTheCaptionOfTheColumn) {
    FillHits();
    const std::vector<const char*> captions{"DATE", "TO", "FROM", "SUBJECT", "SIZE", "BYTES", "SCL%"};
    for (size_t column = 0; column < captions.size(); ++column) {
        SearchFor("%2 & <b>", static_cast<qint16>(column));
        EXPECT_EQ(Miss(), std::string("'%2 & <b>' not found in header field ") + captions[column]);
    }
}

TEST_F(FindRowsTest, AColumnThatTheListDoesNotHaveHoldsNothing) {
    FillHits();
    for (const qint16 column : {qint16{9}, qint16{-3}, qint16{ColumnCount}, qint16{32'767}, qint16{-32'768}}) {
        SearchFor("hit", column);
        EXPECT_EQ(Miss(), "'hit' not found in header field " + std::to_string(column));
    }
}

TEST_F(FindRowsTest, ATextLongerThanEveryFieldIsMissed) {
    FillHits();
    state.HeaderField = ColumnSubject;
    state.FindText = QString(10'000, QLatin1Char('h'));
    const std::string miss = Miss();
    EXPECT_EQ(miss.size(), 10'000 + std::string("'' not found in header field SUBJECT").size());
}

TEST_F(FindRowsTest, ATextOf10000CharactersIsFoundInAFieldThatTheListCutsOff) {
    state.FindText = QString(9'999, QLatin1Char('x')) + QLatin1Char('Y');
    Fill({QStringLiteral("short"), QString(20'000, QLatin1Char('x')) + QLatin1Char('y')});
    state.HeaderField = ColumnSubject;
    EXPECT_EQ(Find(), Rows{1});
}

TEST_F(FindRowsTest, SpecialCharactersStandForThemselves) {
    Fill({QStringLiteral("abc"), QStringLiteral("a.*c [50%]"), QStringLiteral("Größe")});
    SearchFor(".*C [50%");
    EXPECT_EQ(Find(), Rows{1});
    state.FindText = QStringLiteral("GRÖ");
    EXPECT_EQ(Find(), Rows{2});
}

} // namespace
} // namespace quellbox
