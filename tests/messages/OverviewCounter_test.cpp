#include "messages/OverviewCounter.h"

#include "tests/messages/ListRows.h"
#include "tests/support/ManualPool.h"
#include "tests/support/RunUntil.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <optional>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class OverviewCounterTest : public testing::Test {
protected:
    OverviewCounterTest() {
        QObject::connect(&counter_, &OverviewCounter::Counted,
                         [this](const Overview& overview) { counts_.push_back(overview.count); });
    }

    bool WaitForWork() {
        return RunUntil([this] { return pool_.Waiting() > 0; });
    }

    bool WaitForCounts(size_t counts) {
        return RunUntil([this, counts] { return counts_.size() == counts; });
    }

    ManualPool pool_;
    MessageListModel model_;
    OverviewCounter counter_{pool_, model_};
    std::vector<qint64> counts_;
};

} // namespace

TEST_F(OverviewCounterTest, CountsWhenItBeginsAndWhenTheListChanges) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    model_.Append(RowsWith({u"a"_s}));
    model_.Append(RowsWith({u"b"_s}));
    ASSERT_TRUE(WaitForWork());
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(2));
    model_.Remove({0});
    ASSERT_TRUE(WaitForWork());
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(3));
    EXPECT_EQ(counts_, std::vector<qint64>({3, 5, 4})) << "changes are counted together";
}

TEST_F(OverviewCounterTest, ACountIsOfTheRowsThatWereThereWhenItBegan) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    model_.Clear();
    model_.Append(RowsWith({u"a"_s}));
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    ASSERT_TRUE(WaitForWork()) << "what has changed meanwhile is counted afterwards";
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(2));
    EXPECT_EQ(counts_, std::vector<qint64>({3, 1}));
    EXPECT_FALSE(counter_.IsCounting());
}

TEST_F(OverviewCounterTest, WhatIsCountedWhenNobodyLooksAnyMoreIsDropped) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    counter_.SetActive(false);
    model_.Append(RowsWith({u"a"_s}));
    pool_.RunAll();
    EXPECT_FALSE(counter_.IsCounting());
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    EXPECT_EQ(counts_, std::vector<qint64>({4}));
}

TEST_F(OverviewCounterTest, WhatIsReadChangesNothing) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    model_.MarkRows(0, 2, true);
    model_.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_FALSE(counter_.IsCounting());
    model_.Update(0, RowWith(u"z"_s));
    EXPECT_TRUE(counter_.IsCounting());
}

TEST_F(OverviewCounterTest, AListThatARefreshEmptiesIsNotCountedBeforeItIsFull) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    model_.Clear();
    model_.Append(NumberedRows(2));
    ASSERT_TRUE(WaitForWork());
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(2));
    EXPECT_EQ(counts_, std::vector<qint64>({3, 2}));
}

TEST_F(OverviewCounterTest, RowsThatGatherWhenTheListIsEmptiedDoNotHurryIt) {
    model_.Append(NumberedRows(3));
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    model_.Append(RowsWith({u"a"_s}));
    model_.Clear();
    std::optional<bool> waited; // whether the time of rows that gather has gone by without a count
    QTimer::singleShot(200, &counter_, [&] { waited = pool_.Waiting() == 0; });
    ASSERT_TRUE(RunUntil([&] { return waited.has_value(); }));
    EXPECT_TRUE(*waited);
    model_.Append(NumberedRows(2));
    ASSERT_TRUE(WaitForWork());
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(2));
    EXPECT_EQ(counts_, std::vector<qint64>({3, 2}));
}

TEST_F(OverviewCounterTest, RowsOutOfSightAreListedAndNotCounted) {
    qint64 listed = 0;
    QObject::connect(&counter_, &OverviewCounter::Counted,
                     [&listed](const Overview& overview) { listed = overview.listed; });
    model_.Append(RowsWith({u"wanted"_s, u"other"_s}));
    model_.Narrow(u"wanted"_s);
    counter_.SetActive(true);
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(1));
    EXPECT_EQ(listed, 2);
    model_.Append(RowsWith({u"another"_s}));
    ASSERT_TRUE(WaitForWork()) << "how many are listed has changed";
    pool_.RunAll();
    ASSERT_TRUE(WaitForCounts(2));
    EXPECT_EQ(listed, 3);
    EXPECT_EQ(counts_, std::vector<qint64>({1, 1}));
}

} // namespace quellbox
