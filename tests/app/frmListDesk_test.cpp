#include "tests/support/MainWindowFixture.h"

#include <QContextMenuEvent>

namespace quellbox {
namespace {

class MainList : public MainWindowTest {
protected:
    void SetUp() override {
        AddThree();
        OpenRefreshed();
        ASSERT_EQ(Keys(), "a.eml b.eml c.eml");
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
};

TEST_F(MainList, HeaderPicturesCanBeToldApart) {
    EXPECT_FALSE(Picture("up").isNull());
    EXPECT_NE(Picture("up"), Picture("down"));
    EXPECT_NE(Picture("up"), Picture("blank"));
    EXPECT_NE(Picture("down"), Picture("blank"));
}

TEST_F(MainList, StartsSortedByDateNewestFirst) {
    EXPECT_EQ(Arrows(), "v......");
    EXPECT_EQ(Cell(0, ColumnDate), "2026-03-10 12:03:00");
}

TEST_F(MainList, SizeSortsByNumberAndCarriesTheArrow) {
    ClickHeader(ColumnSize);
    EXPECT_EQ(Keys(), "b.eml a.eml c.eml");
    EXPECT_EQ(Arrows(), "....^..");
    ClickHeader(ColumnSize);
    EXPECT_EQ(Keys(), "c.eml a.eml b.eml");
    EXPECT_EQ(Arrows(), "....v..");
}

TEST_F(MainList, AnotherColumnStartsAscendingAndDateDescending) {
    ClickHeader(ColumnSubject);
    EXPECT_EQ(Arrows(), "...^...");
    ClickHeader(ColumnDate);
    EXPECT_EQ(Arrows(), "v......");
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    ClickHeader(ColumnDate);
    EXPECT_EQ(Arrows(), "^......");
    EXPECT_EQ(Keys(), "c.eml b.eml a.eml");
}

TEST_F(MainList, SortingKeepsTheSelectedMessage) {
    ClickRow(1);
    ClickHeader(ColumnSize);
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(List()->currentIndex().row(), 0);
}

TEST_F(MainList, SortingMakesTheFirstRowCurrentWhenTheCurrentOneIsNotSelected) {
    ClickRow(2);
    Press(Qt::Key_Escape);
    ClickHeader(ColumnSubject);
    EXPECT_EQ(List()->currentIndex().row(), 0);
    EXPECT_EQ(SelectedKeys(), "");
}

TEST_F(MainList, AColumnClickInAnEmptyListDoesNothing) {
    window_->Messages().Clear();
    ClickHeader(ColumnSubject);
    EXPECT_EQ(Arrows(), "v......");
}

TEST_F(MainList, PanelsDescribeOneSelectedRow) {
    ClickRow(2);
    EXPECT_EQ(Panel("info"), "c.eml");
    EXPECT_EQ(Panel("size"), "1.2 KB");
    EXPECT_EQ(PanelView("size")->toolTip().toStdString(), "Size of selected messages");
    EXPECT_EQ(Panel("count"), "3 messages");
    EXPECT_EQ(PanelView("count")->toolTip().toStdString(), "Number of archived files");
}

TEST_F(MainList, CtrlClickAddsAndIsCountedOnMouseUp) {
    ClickRow(0);
    const QPoint third = CentreOfRow(2);
    QTest::mousePress(List()->viewport(), Qt::LeftButton, Qt::ControlModifier, third);
    EXPECT_EQ(window_->State().SelectedCount, 1);
    QTest::mouseRelease(List()->viewport(), Qt::LeftButton, Qt::ControlModifier, third);
    EXPECT_EQ(window_->State().SelectedCount, 2);
    EXPECT_EQ(SelectedKeys(), "a.eml c.eml");
    EXPECT_EQ(Panel("info"), "2 selected");
    EXPECT_EQ(Panel("size"), "2.1 KB");
    EXPECT_EQ(PanelView("size")->toolTip().toStdString(), "Total size of selected messages");
}

TEST_F(MainList, EscapeDeselectsAndShowsTheArchive) {
    window_->State().FindText = QStringLiteral("x");
    window_->State().FindPosition = 2;
    ClickRow(1);
    Press(Qt::Key_Escape);
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_EQ(window_->State().SelectedCount, 0);
    EXPECT_EQ(Panel("info"), "/archive/");
    EXPECT_EQ(Panel("size"), "");
    EXPECT_EQ(PanelView("size")->toolTip().toStdString(), "");
    EXPECT_TRUE(window_->State().FindText.isEmpty());
    EXPECT_EQ(window_->State().FindPosition, 0);
}

TEST_F(MainList, EscapeWorksInTheRawText) {
    auto* raw = Find<QWidget>("rtfRaw");
    raw->setFocus();
    QTest::keyClick(raw, Qt::Key_Escape);
    Settle();
    EXPECT_EQ(SelectedKeys(), "");
}

TEST_F(MainList, ArrowKeysSelectAndCount) {
    List()->setFocus();
    Press(Qt::Key_Down);
    EXPECT_EQ(Panel("info"), "b.eml");
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Panel("info"), "2 selected");
}

TEST_F(MainList, HomeSelectsTheRowThatIsCurrentAlready) {
    List()->setFocus();
    Press(Qt::Key_Escape);
    Press(Qt::Key_Home);
    EXPECT_EQ(SelectedKeys(), "a.eml");
    EXPECT_EQ(window_->State().SelectedCount, 1);
}

TEST_F(MainList, CtrlSpaceIsCounted) {
    List()->setFocus();
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_EQ(window_->State().SelectedCount, 0);
    EXPECT_EQ(Panel("info"), "/archive/");
}

TEST_F(MainList, AClickBesideTheRowsIsCounted) {
    ClickRow(0);
    const QPoint below(20, List()->visualRect(List()->model()->index(2, 0)).bottom() + 4);
    ASSERT_FALSE(List()->indexAt(below).isValid());
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, below);
    Settle();
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_EQ(window_->State().SelectedCount, 0);
}

TEST_F(MainList, SelectAllAndNoneByShortcut) {
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Panel("info"), "3 selected");
    EXPECT_EQ(Panel("size"), "2.2 KB");
    Press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(SelectedKeys(), "");
    EXPECT_EQ(Panel("info"), "/archive/");
}

TEST_F(MainList, SelectAllWorksWhileTheRawTextHasTheFocus) {
    auto* raw = Find<QWidget>("rtfRaw");
    raw->setFocus();
    QTest::keyClick(raw, Qt::Key_A, Qt::ControlModifier);
    Settle();
    EXPECT_EQ(window_->State().SelectedCount, 3);
}

TEST_F(MainList, MarkAsUnreadAndReadChangeTheSelectedRows) {
    ClickRow(1);
    ClickRow(2, Qt::ControlModifier);
    Action("mnuEditMarkUnread")->trigger();
    Settle();
    EXPECT_FALSE(IsUnread(0));
    EXPECT_TRUE(IsUnread(1));
    EXPECT_TRUE(IsUnread(2));
    EXPECT_EQ(Panel("info"), "Done");
    ClickRow(1);
    Action("mnuEditMarkRead")->trigger();
    Settle();
    EXPECT_FALSE(IsUnread(1));
    EXPECT_TRUE(IsUnread(2));
    Action("mnuEditMarkAllRead")->trigger();
    Settle();
    EXPECT_FALSE(IsUnread(2));
}

TEST_F(MainList, UnreadRowsLookDifferent) {
    Press(Qt::Key_Escape);
    const QRect row = List()->visualRect(List()->model()->index(1, ColumnDate));
    const QImage read = List()->viewport()->grab(row).toImage();
    window_->Messages().MarkRows(1, 1, true);
    EXPECT_NE(List()->viewport()->grab(row).toImage(), read);
    window_->Messages().MarkRows(1, 1, false);
    EXPECT_EQ(List()->viewport()->grab(row).toImage(), read);
}

TEST_F(MainList, TheEditMenuIsUsableOnlyWithRows) {
    EXPECT_TRUE(Find<QMenu>("mnuEdit")->menuAction()->isEnabled());
    window_->Messages().Clear();
    window_->UpdateSelectionStatus();
    EXPECT_FALSE(Find<QMenu>("mnuEdit")->menuAction()->isEnabled());
}

TEST_F(MainList, TheRightButtonSelectsAndPopsUpTheMessageMenu) {
    QTest::mouseClick(List()->viewport(), Qt::RightButton, {}, CentreOfRow(1));
    Settle();
    auto* menu = Find<QMenu>("mnuMessage");
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->defaultAction(), Action("mnuMessageView"));
    EXPECT_EQ(SelectedKeys(), "b.eml");
    menu->close();
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, CentreOfRow(0));
    Settle();
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(MainList, ViewIsForOneSelectedMessageOnly) {
    ClickRow(0);
    ClickRow(1, Qt::ControlModifier);
    const auto* view = Action("mnuMessageView");
    auto* menu = Find<QMenu>("mnuMessage");
    QTest::mouseClick(List()->viewport(), Qt::RightButton, {}, CentreOfRow(1));
    Settle();
    ASSERT_TRUE(menu->isVisible());
    ASSERT_EQ(SelectedKeys(), "a.eml b.eml");
    EXPECT_FALSE(view->isEnabled());
    menu->close();
    QTest::mouseClick(List()->viewport(), Qt::RightButton, {}, CentreOfRow(2));
    Settle();
    ASSERT_TRUE(menu->isVisible());
    ASSERT_EQ(SelectedKeys(), "c.eml");
    EXPECT_TRUE(view->isEnabled());
    menu->close();
}

TEST_F(MainList, TheMenuByKeyOffersViewForOneSelectedMessageOnly) {
    const auto* view = Action("mnuMessageView");
    auto* menu = Find<QMenu>("mnuMessage");
    const auto popUp = [&] {
        const QPoint at = CentreOfRow(0);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, at, List()->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(List()->viewport(), &event);
        ASSERT_TRUE(menu->isVisible());
        menu->close();
    };
    List()->setFocus();
    Press(Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_EQ(SelectedKeys(), "a.eml b.eml");
    popUp();
    EXPECT_FALSE(view->isEnabled());
    Press(Qt::Key_Down);
    ASSERT_EQ(SelectedKeys(), "c.eml");
    popUp();
    EXPECT_TRUE(view->isEnabled());
}

TEST_F(MainList, AMousePressEnablesViewByWhatIsSelectedUntilThen) {
    const auto* view = Action("mnuMessageView");
    const auto press = [this](int row) {
        QTest::mousePress(List()->viewport(), Qt::LeftButton, Qt::ControlModifier, CentreOfRow(row));
        QTest::mouseRelease(List()->viewport(), Qt::LeftButton, Qt::ControlModifier, CentreOfRow(row));
    };
    press(1);
    EXPECT_TRUE(view->isEnabled()) << "one row was selected";
    press(2);
    EXPECT_FALSE(view->isEnabled()) << "two rows were selected";
}

} // namespace
} // namespace quellbox
