#include "messages/MessageListModel.h"

#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class MessageListModelTest : public testing::Test {
protected:
    QVariant Data(int row, int column, int role) const { return model.data(model.index(row, column), role); }

    QVariant Header(int column, int role) const { return model.headerData(column, Qt::Horizontal, role); }

    MessageListModel model;
};

} // namespace

TEST_F(MessageListModelTest, ShowsTheCellsByColumn) {
    MessageRow row = RowWith(u"subject"_s, u"key"_s);
    row.cells[ColumnDate] = u"date"_s;
    row.cells[ColumnScl] = u"7"_s;
    model.Append({row});
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.columnCount(), 7);
    EXPECT_EQ(Data(0, ColumnDate, Qt::DisplayRole).toString(), u"date"_s);
    EXPECT_EQ(Data(0, ColumnSubject, Qt::DisplayRole).toString(), u"subject"_s);
    EXPECT_EQ(Data(0, ColumnScl, Qt::DisplayRole).toString(), u"7"_s);
    EXPECT_FALSE(model.data({}, Qt::DisplayRole).isValid());
}

TEST_F(MessageListModelTest, ShowsTheFirstThousandCharactersOfALongCell) {
    MessageRow row = RowWith(QString(1001, u's'), u"key"_s);
    row.cells[ColumnFrom] = QString(1000, u'f');
    model.Append({row});
    EXPECT_EQ(Data(0, ColumnFrom, Qt::DisplayRole).toString(), QString(1000, u'f'));
    EXPECT_EQ(Data(0, ColumnSubject, Qt::DisplayRole).toString(), QString(1000, u's') + QChar(0x2026));
    EXPECT_EQ(model.Row(0).cells[ColumnSubject].size(), 1001) << "the row keeps all of it";
}

TEST_F(MessageListModelTest, HasNoRowsUnderARow) {
    model.Append(NumberedRows(2));
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
    EXPECT_EQ(model.columnCount(model.index(0, 0)), 0);
}

TEST_F(MessageListModelTest, NamesTheColumns) {
    const QStringList captions{u"Date"_s, u"To"_s, u"From"_s, u"Subject"_s, u"Size"_s, u"Bytes"_s, u"SCL%"_s};
    for (int column = 0; column < ColumnCount; ++column) {
        EXPECT_EQ(Header(column, Qt::DisplayRole).toString(), captions.at(column));
    }
    EXPECT_FALSE(Header(ColumnCount, Qt::DisplayRole).isValid());
    EXPECT_FALSE(Header(-1, Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
}

TEST_F(MessageListModelTest, AlignsTheSizesToTheRight) {
    model.Append(NumberedRows(1));
    for (int column = 0; column < ColumnCount; ++column) {
        const bool right = column == ColumnSize || column == ColumnBytes;
        EXPECT_EQ((Data(0, column, Qt::TextAlignmentRole).toInt() & Qt::AlignRight) != 0, right) << column;
        EXPECT_EQ((Header(column, Qt::TextAlignmentRole).toInt() & Qt::AlignRight) != 0, right) << column;
    }
}

TEST_F(MessageListModelTest, KeepsAPictureForEachHeader) {
    int changedSection = -1;
    QObject::connect(&model, &QAbstractItemModel::headerDataChanged, &model,
                     [&](Qt::Orientation, int first, int) { changedSection = first; });
    EXPECT_TRUE(model.setHeaderData(ColumnFrom, Qt::Horizontal, u"up"_s, Qt::DecorationRole));
    EXPECT_EQ(Header(ColumnFrom, Qt::DecorationRole).toString(), u"up"_s);
    EXPECT_FALSE(Header(ColumnTo, Qt::DecorationRole).isValid());
    EXPECT_EQ(changedSection, ColumnFrom);
    EXPECT_FALSE(model.setHeaderData(ColumnFrom, Qt::Horizontal, u"x"_s, Qt::DisplayRole));
    EXPECT_FALSE(model.setHeaderData(ColumnFrom, Qt::Vertical, u"x"_s, Qt::DecorationRole));
    EXPECT_FALSE(model.setHeaderData(ColumnCount, Qt::Horizontal, u"x"_s, Qt::DecorationRole));
}

TEST_F(MessageListModelTest, MarksWholeRowsUnreadAndRead) {
    model.Append(NumberedRows(5));
    model.MarkRows(1, 3, true);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < ColumnCount; ++column) {
            EXPECT_EQ(Data(row, column, MessageListModel::unreadRole).toBool(), row >= 1 && row <= 3) << row;
        }
    }
    model.MarkRows(2, 2, false);
    EXPECT_TRUE(model.Row(1).unread);
    EXPECT_FALSE(model.Row(2).unread);
    EXPECT_TRUE(model.Row(3).unread);
}

TEST_F(MessageListModelTest, TellsTheViewWhichRowsWereMarked) {
    model.Append(NumberedRows(5));
    QModelIndex from;
    QModelIndex to;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
                     [&](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                         from = topLeft;
                         to = bottomRight;
                     });
    model.MarkRows(1, 3, true);
    EXPECT_EQ(from, model.index(1, 0));
    EXPECT_EQ(to, model.index(3, ColumnScl));
}

TEST_F(MessageListModelTest, SaysUnreadToAssistiveTools) {
    model.Append(RowsWith({u"hello"_s}));
    EXPECT_EQ(Data(0, ColumnSubject, Qt::AccessibleTextRole).toString(), u"hello"_s);
    model.MarkRows(0, 0, true);
    EXPECT_EQ(Data(0, ColumnSubject, Qt::AccessibleTextRole).toString(), u"hello, unread"_s);
    EXPECT_EQ(Data(0, ColumnSubject, Qt::DisplayRole).toString(), u"hello"_s);
}

TEST_F(MessageListModelTest, AppendsAtTheEndWhateverTheListWasSortedBy) {
    model.Append(RowsWith({u"b"_s, u"c"_s}));
    model.sort(ColumnSubject, Qt::DescendingOrder);
    int first = -1;
    int last = -1;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, [&](const QModelIndex&, int from, int to) {
        first = from;
        last = to;
    });
    model.Append(RowsWith({u"z"_s, u"a"_s}));
    EXPECT_EQ(KeysOf(model), (QStringList{u"c"_s, u"b"_s, u"z"_s, u"a"_s}));
    EXPECT_EQ(first, 2);
    EXPECT_EQ(last, 3);
}

TEST_F(MessageListModelTest, SaysNothingWhenNothingIsAppendedRemovedOrCleared) {
    int changes = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, [&] { ++changes; });
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model, [&] { ++changes; });
    QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [&] { ++changes; });
    model.Append({});
    model.Remove({});
    model.Clear();
    EXPECT_EQ(changes, 0);
}

TEST_F(MessageListModelTest, KeepsTheKeyOfAnUpdatedRow) {
    model.Append(RowsWith({u"a"_s, u"b"_s}));
    int changedRow = -1;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
                     [&](const QModelIndex& from) { changedRow = from.row(); });
    MessageRow contents = RowWith(u"new"_s, u"other key"_s);
    contents.tag = u"tag"_s;
    model.Update(1, contents);
    EXPECT_EQ(model.Row(1).key, u"b"_s);
    EXPECT_EQ(model.Row(1).cells[ColumnSubject], u"new"_s);
    EXPECT_EQ(model.Row(1).tag, u"tag"_s);
    EXPECT_EQ(model.Row(0).cells[ColumnSubject], u"a"_s);
    EXPECT_EQ(changedRow, 1);
    EXPECT_TRUE(FindsEveryRow(model));
}

TEST_F(MessageListModelTest, FindsNoRowOfAnUnknownKey) {
    EXPECT_EQ(model.RowOfKey(u"a"_s), -1);
    model.Append(RowsWith({u"a"_s}));
    EXPECT_EQ(model.RowOfKey(u"A"_s), -1);
    EXPECT_EQ(model.RowOfKey(u"a"_s), 0);
}

TEST_F(MessageListModelTest, FindsRowsByKeyAfterEveryChange) {
    model.Append(RowsWith({u"c"_s, u"a"_s, u"d"_s}));
    EXPECT_TRUE(FindsEveryRow(model));
    model.Append(RowsWith({u"b"_s}));
    EXPECT_EQ(model.RowOfKey(u"b"_s), 3);
    model.sort(ColumnSubject, Qt::AscendingOrder);
    EXPECT_TRUE(FindsEveryRow(model));
    model.Remove({1});
    EXPECT_EQ(model.RowOfKey(u"b"_s), -1);
    EXPECT_TRUE(FindsEveryRow(model));
    model.Clear();
    EXPECT_EQ(model.RowOfKey(u"a"_s), -1);
}

} // namespace quellbox
