#include "messages/ListTable.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class ListTable : public testing::Test {
protected:
    void Add(const QString& key, qint64 size, const MessageTexts& texts) {
        std::vector<MessageRow> rows;
        rows.emplace_back(key, size, 1'773'144'183, texts); // 2026-03-10 12:03:03
        model.Append(std::move(rows));
    }

    /// The cells of every row, and the rows below each other.
    std::string Cells() const {
        const NextRow next = CellsOf(CopyOfRows(model));
        QStringList lines;
        for (QStringList cells; next(cells); cells.clear()) {
            lines += cells.join(u'|');
        }
        return lines.join(u'\n').toStdString();
    }

    MessageListModel model;
};

} // namespace

TEST_F(ListTable, HasTheColumnsThatAreShownAndTwoMore) {
    QStringList columns;
    for (const TableColumn& column : ListTableColumns(false)) {
        columns += column.key + u'=' + column.header + (column.isNumber ? u" number"_s : QString());
    }
    EXPECT_EQ(columns.join(u", "_s).toStdString(), "date=Date, to=To, from=From, subject=Subject, size=Size number, "
                                                   "scl=SCL%, file=File name, sender=Envelope sender");
}

TEST_F(ListTable, RatingsAreNumbersWhereTheServerWritesNumbers) {
    EXPECT_EQ(ListTableColumns(true).at(5).key, u"scl"_s);
    EXPECT_TRUE(ListTableColumns(true).at(5).isNumber);
    EXPECT_FALSE(ListTableColumns(false).at(5).isNumber);
}

TEST_F(ListTable, OneRowHasACellForEachColumn) {
    const MessageRow row(u"a.eml"_s, 300, 1'773'144'183, {u"t1"_s, u"f1"_s, u"s1"_s, u"9 99.0"_s, u"e1"_s});
    EXPECT_EQ(CellsOf(row).join(u'|').toStdString(), "2026-03-10 12:03:03|t1|f1|s1|300|9 99.0|a.eml|e1");
    EXPECT_EQ(static_cast<size_t>(CellsOf(row).size()), ListTableColumns(false).size());
}

TEST_F(ListTable, HasTheRowsInTheOrderOfTheList) {
    Add(u"a.eml"_s, 300, {u"t1"_s, u"f1"_s, u"s1"_s, u"9 99.0"_s, u"e1"_s});
    Add(u"b.eml"_s, 20, {u"t2"_s, u"f2"_s, u"s2"_s, {}, {}});
    EXPECT_EQ(Cells(), "2026-03-10 12:03:03|t1|f1|s1|300|9 99.0|a.eml|e1\n2026-03-10 12:03:03|t2|f2|s2|20||b.eml|");
    model.sort(ColumnBytes, Qt::AscendingOrder);
    EXPECT_EQ(Cells(), "2026-03-10 12:03:03|t2|f2|s2|20||b.eml|\n2026-03-10 12:03:03|t1|f1|s1|300|9 99.0|a.eml|e1");
}

TEST_F(ListTable, WhatWasCopiedStaysWhenTheListChanges) {
    Add(u"a.eml"_s, 300, {});
    const NextRow next = CellsOf(CopyOfRows(model));
    model.Clear();
    QStringList cells;
    EXPECT_TRUE(next(cells));
    EXPECT_EQ(cells.value(6), u"a.eml"_s);
    EXPECT_FALSE(next(cells));
}

} // namespace quellbox
