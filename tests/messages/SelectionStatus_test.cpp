#include "messages/SelectionStatus.h"

#include "platform/RuntimeError.h"
#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

#include <QLocale>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class SelectionStatusTest : public testing::Test {
protected:
    SelectionStatusTest() {
        QLocale::setDefault(QLocale::c());
        state.ArchiveDir = u"/archive/"_s;
        state.FilterCaptions = MakeFilterCaptions();
    }

    ~SelectionStatusTest() override { QLocale::setDefault(QLocale::system()); }

    /// Appends rows with the keys "0", "1" and so on.
    void AddSizes(const QStringList& sizes) {
        for (const QString& size : sizes) {
            MessageRow row = RowWith(QString::number(model.Count()));
            row.cells[ColumnSize] = size;
            model.Append({row});
        }
    }

    SelectionStatus Status(const std::vector<RowRange>& selected, bool filtered = false) const {
        return ComputeSelectionStatus(model, selected, state, filtered);
    }

    MessageListModel model;
    AppState state;
};

} // namespace

TEST_F(SelectionStatusTest, OfAnEmptyListDisablesAllButTheWhitelist) {
    state.TolerationLevel = 1;
    const SelectionStatus status = Status({});
    EXPECT_EQ(status.SelectedCount, 0);
    EXPECT_FALSE(status.hasRows);
    EXPECT_FALSE(status.hasSelection);
    EXPECT_FALSE(status.canTolerate);
    EXPECT_TRUE(status.usesWhitelist);
    EXPECT_EQ(status.count, QString());
    EXPECT_EQ(status.info, StatusPanel());
}

TEST_F(SelectionStatusTest, WithoutSelectionShowsTheArchive) {
    AddSizes({u"10"_s, u"20"_s});
    const SelectionStatus status = Status({});
    EXPECT_EQ(status.SelectedCount, 0);
    EXPECT_EQ(status.info.text, u"/archive/"_s);
    EXPECT_EQ(status.size, StatusPanel());
    EXPECT_TRUE(status.hasRows);
    EXPECT_FALSE(status.hasSelection);
}

TEST_F(SelectionStatusTest, OfOneRowShowsItsFile) {
    AddSizes({u"10"_s, u"1500"_s});
    const SelectionStatus status = Status({{1, 1}});
    EXPECT_EQ(status.SelectedCount, 1);
    EXPECT_EQ(status.info.text, u"1"_s);
    EXPECT_EQ(status.size, (StatusPanel{u"1.5 KB"_s, u"Size of selected messages"_s}));
    EXPECT_TRUE(status.hasSelection);
}

TEST_F(SelectionStatusTest, OfSeveralRowsAddsUpAllRanges) {
    AddSizes({u"1"_s, u"20"_s, u"300"_s, u"4000"_s, u"50000"_s});
    const SelectionStatus status = Status({{0, 1}, {3, 4}});
    EXPECT_EQ(status.SelectedCount, 4);
    EXPECT_EQ(status.info.text, u"4 selected"_s);
    EXPECT_EQ(status.size, (StatusPanel{u"54.0 KB"_s, u"Total size of selected messages"_s}));
}

TEST_F(SelectionStatusTest, CountsTheMessagesOrNamesTheFilter) {
    AddSizes({u"1"_s, u"2"_s, u"3"_s});
    EXPECT_EQ(Status({}).count, u"3 messages"_s);
    state.FilterDays = 1;
    EXPECT_EQ(Status({}).count, u"3 messages"_s);
    EXPECT_EQ(Status({}, true).count, u"3 (just today)"_s);
}

TEST_F(SelectionStatusTest, CountsPlainlyUnderAFilterWithoutACaption) {
    AddSizes({u"1"_s});
    for (const qint16 days : {qint16{-1}, qint16{8}}) {
        state.FilterDays = days;
        EXPECT_EQ(Status({}, true).count, u"1"_s);
    }
}

TEST_F(SelectionStatusTest, ToleratesExactlyOneRowAndOnlyWithAWhitelist) {
    AddSizes({u"1"_s, u"2"_s});
    for (const qint16 level : {qint16{0}, qint16{1}, qint16{2}}) {
        state.TolerationLevel = level;
        EXPECT_FALSE(Status({}).canTolerate) << level;
        EXPECT_EQ(Status({{0, 0}}).canTolerate, level > 0) << level;
        EXPECT_FALSE(Status({{0, 1}}).canTolerate) << level;
        EXPECT_EQ(Status({}).usesWhitelist, level > 0) << level;
    }
}

TEST_F(SelectionStatusTest, HoldsUpToOneByteBelowTwoGigabytes) {
    AddSizes({u"2147483646"_s, u"1"_s, u"1"_s});
    EXPECT_EQ(Status({{0, 1}}).size.text, u"2.147 GB"_s);
    EXPECT_THROW(Status({{0, 2}}), OverflowError);
}

TEST_F(SelectionStatusTest, OverflowsForOneHugeRowToo) {
    AddSizes({u"2147483648"_s, u"1"_s, u"9223372036854775807"_s});
    EXPECT_THROW(Status({{0, 0}}), OverflowError);
    EXPECT_THROW(Status({{1, 2}}), OverflowError);
}

TEST_F(SelectionStatusTest, RefusesASizeThatIsNoNumberOnlyWhereItIsSelected) {
    AddSizes({u"1"_s, u"many"_s, QString()});
    EXPECT_EQ(Status({{0, 0}}).SelectedCount, 1);
    EXPECT_THROW(Status({{0, 1}}), TypeMismatchError);
    EXPECT_THROW(Status({{2, 2}}), TypeMismatchError);
}

TEST_F(SelectionStatusTest, HoldsAsManyRowsAsA16BitCount) {
    std::vector<MessageRow> rows = NumberedRows(32'768);
    for (MessageRow& row : rows) {
        row.cells[ColumnSize] = u"1"_s;
    }
    model.Append(std::move(rows));
    EXPECT_EQ(Status({{0, 32'766}}).SelectedCount, 32'767);
    EXPECT_THROW(Status({{0, 32'767}}), OverflowError);
}

} // namespace quellbox
