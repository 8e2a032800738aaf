#include "app/MessageListView.h"

#include "tests/messages/ListRows.h"

#include <QHeaderView>
#include <QTest>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class MessageList : public testing::Test {
protected:
    MessageList() {
        view.resize(800, 300);
        view.show();
        model.Append(NumberedRows(5));
    }

    MessageListModel model;
    MessageListView view{model};
};

TEST_F(MessageList, HasNoSelectedRowAtFirst) {
    EXPECT_EQ(view.SelectedRow(), -1);
    EXPECT_TRUE(view.SelectedRanges().empty());
}

TEST_F(MessageList, ActsOnTheCurrentRowWhileThatIsSelected) {
    view.AddToSelection({1, 3});
    EXPECT_EQ(view.SelectedRow(), 3);
    EXPECT_TRUE(view.IsSelected(1));
    EXPECT_FALSE(view.IsSelected(2));
}

TEST_F(MessageList, ActsOnTheFirstSelectedRowWhereTheCurrentOneIsNot) {
    view.AddToSelection({1, 3});
    view.selectionModel()->setCurrentIndex(model.index(0, 0), QItemSelectionModel::NoUpdate);
    EXPECT_EQ(view.SelectedRow(), 1);
}

TEST_F(MessageList, SortsByTheColumnThatIsClickedAndTheOtherWayRoundTheNextTime) {
    const QString first = model.Row(0).Key();
    view.lvwMessages_ColumnClick(ColumnSubject);
    const QString ascending = model.Row(0).Key();
    view.lvwMessages_ColumnClick(ColumnSubject);
    EXPECT_NE(model.Row(0).Key(), ascending);
    EXPECT_EQ(model.Row(4).Key(), ascending);
    EXPECT_FALSE(first.isEmpty());
}

TEST_F(MessageList, HasAHintAtItsLowerEndThatNeverCoversTheHeader) {
    view.ShowHint(QStringLiteral("word ").repeated(200));
    const auto* hint = view.findChild<QLabel*>(QStringLiteral("lblHint"));
    ASSERT_TRUE(hint->isVisible());
    for (const int height : {300, 120, 80}) {
        view.resize(400, height);
        QCoreApplication::processEvents();
        EXPECT_TRUE(view.viewport()->geometry().contains(hint->geometry())) << height;
        EXPECT_EQ(hint->geometry().bottom(), view.viewport()->geometry().bottom()) << height;
    }
    view.ShowHint({});
    EXPECT_FALSE(hint->isVisible());
}

TEST_F(MessageList, LetsClicksThroughItsHint) {
    view.ShowHint(QStringLiteral("a hint"));
    const auto* hint = view.findChild<QLabel*>(QStringLiteral("lblHint"));
    EXPECT_TRUE(hint->testAttribute(Qt::WA_TransparentForMouseEvents));
}

} // namespace
} // namespace quellbox
