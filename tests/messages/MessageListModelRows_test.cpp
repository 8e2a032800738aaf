#include "messages/MessageListModel.h"

#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

#include <QPersistentModelIndex>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

constexpr int mostSingleRanges = 32;

/// Every other row, from the first on, so that each is a range of its own.
std::vector<int> EveryOther(int ranges) {
    std::vector<int> rows;
    for (int range = 0; range < ranges; ++range) {
        rows.push_back(2 * range);
    }
    return rows;
}

class MessageListRows : public testing::Test {
protected:
    MessageListRows() {
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model, [this] {
            ++removals;
            foundWhileTelling = foundWhileTelling && FindsEveryRow(model);
        });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [this] {
            ++resets;
            foundWhileTelling = foundWhileTelling && FindsEveryRow(model);
        });
        // A listener that looks a row up before a change must not make the index stale after it.
        for (const auto before :
             {&QAbstractItemModel::rowsAboutToBeRemoved, &QAbstractItemModel::rowsAboutToBeInserted}) {
            QObject::connect(&model, before, &model, [this] { model.RowOfKey(u"0"_s); });
        }
        QObject::connect(&model, &QAbstractItemModel::modelAboutToBeReset, &model, [this] { model.RowOfKey(u"0"_s); });
        QObject::connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, &model,
                         [this] { model.RowOfKey(u"0"_s); });
    }

    MessageListModel model;
    int removals = 0;
    int resets = 0;
    bool foundWhileTelling = true;
};

} // namespace

TEST_F(MessageListRows, RemovesAdjacentRowsAtOnce) {
    model.Append(NumberedRows(6));
    model.Remove({1, 2, 3, 5});
    EXPECT_EQ(KeysOf(model), (QStringList{u"0"_s, u"4"_s}));
    EXPECT_EQ(removals, 2);
    EXPECT_EQ(resets, 0);
    EXPECT_TRUE(foundWhileTelling);
}

TEST_F(MessageListRows, RemovesAllRows) {
    model.Append(NumberedRows(3));
    model.Remove({0, 1, 2});
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(removals, 1);
}

TEST_F(MessageListRows, RemovesFewRangesOneByOneAndKeepsPersistentIndexes) {
    model.Append(NumberedRows(2 * mostSingleRanges));
    const QPersistentModelIndex kept(model.index(5, 0));
    const QPersistentModelIndex gone(model.index(4, 0));
    model.Remove(EveryOther(mostSingleRanges));
    EXPECT_EQ(removals, mostSingleRanges);
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(model.Count(), mostSingleRanges);
    EXPECT_EQ(kept.row(), 2);
    EXPECT_FALSE(gone.isValid());
    EXPECT_TRUE(foundWhileTelling);
    EXPECT_TRUE(FindsEveryRow(model));
}

TEST_F(MessageListRows, RemovesManyRangesByOneReset) {
    model.Append(NumberedRows(2 * (mostSingleRanges + 1)));
    model.Remove(EveryOther(mostSingleRanges + 1));
    EXPECT_EQ(removals, 0);
    EXPECT_EQ(resets, 1);
    ASSERT_EQ(model.Count(), mostSingleRanges + 1);
    for (int row = 0; row < model.Count(); ++row) {
        EXPECT_EQ(model.Row(row).key, QString::number(2 * row + 1));
    }
    EXPECT_TRUE(foundWhileTelling);
}

TEST_F(MessageListRows, ClearsByOneReset) {
    model.Append(NumberedRows(3));
    model.Clear();
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(resets, 1);
}

TEST_F(MessageListRows, FindsRowsThoughAListenerAskedBeforeTheChange) {
    model.Append(NumberedRows(3));
    model.Append(RowsWith({u"x"_s}));
    EXPECT_EQ(model.RowOfKey(u"x"_s), 3);
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(model.RowOfKey(u"x"_s), 0);
    model.Clear();
    EXPECT_EQ(model.RowOfKey(u"x"_s), -1);
}

TEST_F(MessageListRows, SortsIgnoringCase) {
    model.Append(RowsWith({u"b"_s, u"A"_s, u"C"_s, u"a2"_s}));
    model.sort(ColumnSubject, Qt::AscendingOrder);
    EXPECT_EQ(KeysOf(model), (QStringList{u"A"_s, u"a2"_s, u"b"_s, u"C"_s}));
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(KeysOf(model), (QStringList{u"C"_s, u"b"_s, u"a2"_s, u"A"_s}));
}

TEST_F(MessageListRows, KeepsTheOrderOfEqualTextsInBothDirections) {
    model.Append({RowWith(u"same"_s, u"1"_s), RowWith(u"z"_s, u"2"_s), RowWith(u"SAME"_s, u"3"_s),
                  RowWith(u"a"_s, u"4"_s), RowWith(u"Same"_s, u"5"_s)});
    model.sort(ColumnSubject, Qt::AscendingOrder);
    EXPECT_EQ(KeysOf(model), (QStringList{u"4"_s, u"1"_s, u"3"_s, u"5"_s, u"2"_s}));
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(KeysOf(model), (QStringList{u"2"_s, u"1"_s, u"3"_s, u"5"_s, u"4"_s}));
}

TEST_F(MessageListRows, SortsByTheColumnThatIsAskedFor) {
    MessageRow first = RowWith(u"a"_s);
    first.cells[ColumnBytes] = u"00000900"_s;
    MessageRow second = RowWith(u"b"_s);
    second.cells[ColumnBytes] = u"00000080"_s;
    model.Append({first, second});
    model.sort(ColumnBytes, Qt::AscendingOrder);
    EXPECT_EQ(KeysOf(model), (QStringList{u"b"_s, u"a"_s}));
}

TEST_F(MessageListRows, LetsPersistentIndexesFollowTheSort) {
    model.Append(RowsWith({u"c"_s, u"a"_s, u"b"_s}));
    const QPersistentModelIndex index(model.index(0, ColumnSize));
    model.sort(ColumnSubject, Qt::AscendingOrder);
    EXPECT_EQ(index.row(), 2);
    EXPECT_EQ(index.column(), ColumnSize);
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(index.row(), 0);
}

TEST_F(MessageListRows, SaysNothingWhenTheOrderIsThereAlready) {
    model.Append(RowsWith({u"a"_s, u"B"_s, u"b"_s}));
    int changes = 0;
    QObject::connect(&model, &QAbstractItemModel::layoutChanged, &model, [&] { ++changes; });
    model.sort(ColumnSubject, Qt::AscendingOrder);
    EXPECT_EQ(changes, 0);
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(changes, 1);
}

} // namespace quellbox
