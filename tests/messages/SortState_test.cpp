#include "messages/SortState.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

} // namespace

TEST(SortState, StartsWithTheNewestDateFirst) {
    const SortState state;
    EXPECT_EQ(state.SortColumn, ColumnDate);
    EXPECT_EQ(state.order, Qt::DescendingOrder);
    EXPECT_EQ(state.ArrowKey(), u"down"_s);
    EXPECT_EQ(state.SortKey(), ColumnDate);
}

TEST(SortState, FlipsOnEveryClickOnTheSameColumn) {
    SortState state;
    state.Click(ColumnDate);
    EXPECT_EQ(state.order, Qt::AscendingOrder);
    EXPECT_EQ(state.ArrowKey(), u"up"_s);
    state.Click(ColumnDate);
    EXPECT_EQ(state.order, Qt::DescendingOrder);
    EXPECT_EQ(state.ArrowKey(), u"down"_s);
}

TEST(SortState, StartsAnotherColumnAscendingWhateverTheOrderWas) {
    for (const int column : {ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnBytes, ColumnScl}) {
        SortState state;
        state.Click(column);
        EXPECT_EQ(state.SortColumn, column);
        EXPECT_EQ(state.order, Qt::AscendingOrder) << column;
        EXPECT_EQ(state.ArrowKey(), u"up"_s);
    }
}

TEST(SortState, ComesBackToTheDateWithTheNewestFirst) {
    SortState state;
    state.Click(ColumnFrom);
    ASSERT_EQ(state.order, Qt::AscendingOrder);
    state.Click(ColumnDate);
    EXPECT_EQ(state.SortColumn, ColumnDate);
    EXPECT_EQ(state.order, Qt::DescendingOrder);
}

TEST(SortState, ComparesTheHiddenBytesUnderTheArrowOfTheSize) {
    SortState state;
    state.Click(ColumnSize);
    EXPECT_EQ(state.SortColumn, ColumnSize);
    EXPECT_EQ(state.SortKey(), ColumnBytes);
}

TEST(SortState, ComparesEveryOtherColumnByItsOwnTexts) {
    for (const int column : {ColumnTo, ColumnFrom, ColumnSubject, ColumnBytes, ColumnScl}) {
        SortState state;
        state.Click(column);
        EXPECT_EQ(state.SortKey(), column);
    }
}

} // namespace quellbox
