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
    void AddSizes(const std::vector<qint64>& sizes) {
        for (const qint64 size : sizes) {
            model.Append({WithSize(RowWith(QString::number(model.Count())), size)});
        }
    }

    SelectionStatus Status(const std::vector<RowRange>& selected, bool filtered = false) const {
        return ComputeSelectionStatus(model, selected, state, filtered);
    }

    MessageListModel model;
    AppState state;
};

} // namespace

TEST_F(SelectionStatusTest, OfAnEmptyListHasNoTexts) {
    const SelectionStatus status = Status({});
    EXPECT_EQ(status.SelectedCount, 0);
    EXPECT_FALSE(status.hasRows);
    EXPECT_EQ(status.count, QString());
    EXPECT_EQ(status.info, StatusPanel());
}

TEST_F(SelectionStatusTest, WithoutSelectionShowsTheArchive) {
    AddSizes({10, 20});
    const SelectionStatus status = Status({});
    EXPECT_EQ(status.SelectedCount, 0);
    EXPECT_EQ(status.info.text, u"/archive/"_s);
    EXPECT_EQ(status.size, StatusPanel());
    EXPECT_TRUE(status.hasRows);
}

TEST_F(SelectionStatusTest, OfOneRowShowsItsFile) {
    AddSizes({10, 1'500});
    const SelectionStatus status = Status({{1, 1}});
    EXPECT_EQ(status.SelectedCount, 1);
    EXPECT_EQ(status.info.text, u"1"_s);
    EXPECT_EQ(status.size, (StatusPanel{u"1.5 KB"_s, u"Size of selected messages"_s}));
}

TEST_F(SelectionStatusTest, OfSeveralRowsAddsUpAllRanges) {
    AddSizes({1, 20, 300, 4'000, 50'000});
    const SelectionStatus status = Status({{0, 1}, {3, 4}});
    EXPECT_EQ(status.SelectedCount, 4);
    EXPECT_EQ(status.info.text, u"4 selected"_s);
    EXPECT_EQ(status.size, (StatusPanel{u"54.0 KB"_s, u"Total size of selected messages"_s}));
}

TEST_F(SelectionStatusTest, CountsTheMessagesOrNamesTheFilter) {
    AddSizes({1, 2, 3});
    EXPECT_EQ(Status({}).count, u"3 messages"_s);
    state.FilterDays = 1;
    EXPECT_EQ(Status({}).count, u"3 messages"_s);
    EXPECT_EQ(Status({}, true).count, u"3 (just today)"_s);
}

TEST_F(SelectionStatusTest, CountsPlainlyUnderAFilterWithoutACaption) {
    AddSizes({1});
    for (const qint16 days : {qint16{-1}, qint16{8}}) {
        state.FilterDays = days;
        EXPECT_EQ(Status({}, true).count, u"1"_s);
    }
}

TEST_F(SelectionStatusTest, HoldsUpToOneByteBelowTwoGigabytes) {
    AddSizes({2'147'483'646, 1, 1});
    EXPECT_EQ(Status({{0, 1}}).size.text, u"2.147 GB"_s);
    EXPECT_THROW(Status({{0, 2}}), OverflowError);
}

TEST_F(SelectionStatusTest, OverflowsForOneHugeRowToo) {
    AddSizes({2'147'483'648, 1, 9'223'372'036'854'775'807});
    EXPECT_THROW(Status({{0, 0}}), OverflowError);
    EXPECT_THROW(Status({{1, 2}}), OverflowError);
}

TEST_F(SelectionStatusTest, HoldsAsManyRowsAsA16BitCount) {
    std::vector<MessageRow> rows = NumberedRows(32'768);
    for (MessageRow& row : rows) {
        row = WithSize(row, 1);
    }
    model.Append(std::move(rows));
    EXPECT_EQ(Status({{0, 32'766}}).SelectedCount, 32'767);
    EXPECT_THROW(Status({{0, 32'767}}), OverflowError);
}

} // namespace quellbox
