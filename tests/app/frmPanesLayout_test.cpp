#include "tests/support/MainWindowFixture.h"

#include <QMenuBar>
#include <QScrollBar>

#include <numeric>
#include <vector>

namespace quellbox {
namespace {

class MainLayout : public MainWindowTest {
protected:
    void OpenAt(int width, int height) {
        Open();
        window_->resize(width, height);
        QCoreApplication::processEvents();
    }

    int LeftOfPanes() const { return Splitter("splWhole")->mapTo(window_.get(), QPoint()).x(); }

    int BottomOfPanes() const {
        return Splitter("splWhole")->mapTo(window_.get(), Splitter("splWhole")->rect().bottomLeft()).y();
    }

    int ListPane() const { return Splitter("splWhole")->sizes().value(0); }
    int ContentsPane() const { return Splitter("splWhole")->sizes().value(1); }
    int TreePane() const { return Splitter("splBottom")->sizes().value(0); }
    bool BandIsVisible() const { return Find<QWidget>("tlbContents")->isVisible(); }

    void Trigger(const char* action) const {
        Action(action)->trigger();
        Settle();
        QCoreApplication::processEvents();
    }

    int SumOfColumns() const {
        int sum = 0;
        for (int column = 0; column < ColumnCount; ++column) {
            sum += List()->header()->sectionSize(column);
        }
        return sum;
    }
};

TEST_F(MainLayout, WithoutTheToolbarTheListStartsAtTheLeftEdge) {
    OpenAt(800, 600);
    EXPECT_GT(LeftOfPanes(), 20);
    const int columns = SumOfColumns();
    Trigger("mnuViewToolbar");
    EXPECT_EQ(LeftOfPanes(), 0);
    EXPECT_GT(SumOfColumns(), columns); // the shares grow with the list
    Trigger("mnuViewToolbar");
    EXPECT_GT(LeftOfPanes(), 20);
    EXPECT_EQ(SumOfColumns(), columns);
}

TEST_F(MainLayout, WithoutTheStatusBarThePanesReachTheBottom) {
    OpenAt(800, 600);
    EXPECT_LT(BottomOfPanes(), window_->height() - 10);
    Trigger("mnuViewStatus");
    EXPECT_EQ(BottomOfPanes(), window_->height() - 1);
    Trigger("mnuViewStatus");
    EXPECT_LT(BottomOfPanes(), window_->height() - 10);
}

TEST_F(MainLayout, ColumnsToFromAndSubjectShareTheRest) {
    OpenAt(1000, 600);
    const QHeaderView* header = List()->header();
    const int date = header->sectionSize(ColumnDate);
    const int share = header->sectionSize(ColumnTo);
    EXPECT_EQ(header->sectionSize(ColumnFrom), share);
    EXPECT_EQ(header->sectionSize(ColumnSubject), share);
    EXPECT_LE(SumOfColumns(), List()->viewport()->width());
    EXPECT_GT(SumOfColumns(), List()->viewport()->width() - 20);
    window_->resize(1300, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(header->sectionSize(ColumnDate), date);
    EXPECT_EQ(header->sectionSize(ColumnTo), share + 100);
}

TEST_F(MainLayout, ANarrowWindowTakesItsWidthFromTheSharedColumns) {
    OpenAt(1000, 600);
    Trigger("mnuViewToolbar");
    Trigger("mnuViewStatus");
    const QHeaderView* header = List()->header();
    const auto fixed = [header] {
        return std::vector<int>{header->sectionSize(ColumnDate), header->sectionSize(ColumnSize),
                                header->sectionSize(ColumnBytes), header->sectionSize(ColumnScl)};
    };
    const std::vector<int> before = fixed();
    EXPECT_GT(header->sectionSize(ColumnTo), 50);
    // Of this width nothing is left beside the fixed columns, the borders of all and the scroll bar.
    const int least = std::accumulate(before.begin(), before.end(), window_->width() - List()->width()) + ColumnCount +
                      List()->verticalScrollBar()->sizeHint().width();
    for (const auto& [width, share] : {std::pair{least, 0}, {least + 3, 1}, {least + 90, 30}}) {
        window_->resize(width, 600);
        QCoreApplication::processEvents();
        ASSERT_EQ(window_->width(), width);
        EXPECT_EQ(fixed(), before) << width;
        for (const Column column : {ColumnTo, ColumnFrom, ColumnSubject}) {
            EXPECT_EQ(header->sectionSize(column), share) << width;
        }
    }
}

TEST_F(MainLayout, FixedColumnsAreAsWideAsTheirSampleTextsAndHalfAnIcon) {
    OpenAt(1000, 600);
    const QHeaderView* header = List()->header();
    for (const int size : {0, 20}) {
        if (size != 0) {
            List()->setFont(QFont(window_->font().family(), 5)); // the window's font counts
            window_->setFont(QFont(window_->font().family(), size));
            QCoreApplication::processEvents();
        }
        const QFontMetrics metrics(window_->font());
        EXPECT_EQ(header->sectionSize(ColumnDate),
                  metrics.horizontalAdvance(QStringLiteral("2004-09-30 23:59:59XX")) + 16);
        EXPECT_EQ(header->sectionSize(ColumnSize), metrics.horizontalAdvance(QStringLiteral("  999999 ")) + 16);
        EXPECT_EQ(header->sectionSize(ColumnScl), metrics.horizontalAdvance(QStringLiteral(" 9 99.99 ")) + 16);
    }
}

TEST_F(MainLayout, WhereNothingIsLeftTheSharesAreWhatIsMissing) {
    OpenAt(500, 600);
    // So large that the fixed columns alone are wider than the list.
    window_->setFont(QFont(window_->font().family(), 40));
    QCoreApplication::processEvents();
    const QHeaderView* header = List()->header();
    const int fixed =
        header->sectionSize(ColumnDate) + header->sectionSize(ColumnSize) + header->sectionSize(ColumnScl);
    const int rest = List()->width() - ColumnCount - List()->verticalScrollBar()->sizeHint().width() - fixed;
    ASSERT_LT(rest, -30);
    for (const Column column : {ColumnTo, ColumnFrom, ColumnSubject}) {
        EXPECT_EQ(header->sectionSize(column), -rest / 3);
    }
}

TEST_F(MainLayout, StatusPanelsShareTheBarAndKeepTheirLeastWidths) {
    constexpr double info = 11906; // twips
    constexpr double narrow = 2540;
    constexpr int leastWidth = 169; // pixels of the latter
    OpenAt(2000, 600);
    const int width = PanelView("info")->width();
    ASSERT_GT(PanelView("count")->width(), PanelView("count")->minimumWidth());
    EXPECT_NEAR(PanelView("size")->width(), PanelView("count")->width(), 1);
    EXPECT_NEAR(static_cast<double>(width) / PanelView("size")->width(), info / narrow, 0.05);
    window_->resize(1, 600);
    QCoreApplication::processEvents();
    const int sample =
        PanelView("count")->fontMetrics().horizontalAdvance(QStringLiteral("00 messages (just today)XX"));
    EXPECT_LT(PanelView("info")->width(), width);
    EXPECT_EQ(PanelView("info")->minimumWidth(), leastWidth);
    EXPECT_GE(PanelView("info")->width(), leastWidth);
    for (const char* panel : {"size", "count"}) {
        EXPECT_EQ(PanelView(panel)->minimumWidth(), std::max(leastWidth, sample)) << panel;
        EXPECT_GE(PanelView(panel)->width(), leastWidth) << panel;
    }
}

TEST_F(MainLayout, TheBytesColumnStaysAtWidthZero) {
    OpenAt(800, 600);
    EXPECT_EQ(List()->header()->sectionSize(ColumnBytes), 0);
    List()->header()->showSection(ColumnBytes);
    List()->header()->resizeSection(ColumnBytes, 70);
    ASSERT_EQ(List()->header()->sectionSize(ColumnBytes), 70);
    window_->resize(820, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(List()->header()->sectionSize(ColumnBytes), 0);
}

TEST_F(MainLayout, SplitterPositionsAreRestoredAndSavedInTwips) {
    Set("Whole", "3000");
    Set("Bottom", "1500");
    OpenAt(800, 600);
    EXPECT_EQ(ListPane(), 200);
    EXPECT_EQ(TreePane(), 100);
    window_->resize(900, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(ListPane(), 200);
    window_->close();
    EXPECT_EQ(Stored("Whole").toStdString(), "3000");
    EXPECT_EQ(Stored("Bottom").toStdString(), "1500");
}

TEST_F(MainLayout, DraggedSplitBarsAreSaved) {
    OpenAt(800, 600);
    DragBar("splWhole", 250);
    DragBar("splBottom", 220);
    EXPECT_EQ(ListPane(), 250);
    EXPECT_EQ(TreePane(), 220);
    window_->close();
    EXPECT_EQ(Stored("Whole").toStdString(), "3750");
    EXPECT_EQ(Stored("Bottom").toStdString(), "3300");
}

TEST_F(MainLayout, HidingTheContentsKeepsTheListPaneForLater) {
    OpenAt(800, 600);
    DragBar("splWhole", 240);
    EXPECT_TRUE(BandIsVisible());
    Trigger("mnuViewContents");
    EXPECT_EQ(ContentsPane(), 0);
    EXPECT_FALSE(BandIsVisible());
    Trigger("mnuViewContents");
    EXPECT_EQ(ListPane(), 240);
    EXPECT_TRUE(BandIsVisible());
}

TEST_F(MainLayout, HidingTheLayoutKeepsTheTreePaneForLater) {
    OpenAt(800, 600);
    DragBar("splBottom", 180);
    Trigger("mnuViewFormat");
    EXPECT_EQ(TreePane(), 0);
    EXPECT_FALSE(BandIsVisible());
    Trigger("mnuViewFormat");
    EXPECT_EQ(TreePane(), 180);
    EXPECT_TRUE(BandIsVisible());
}

TEST_F(MainLayout, HiddenPanesAreSavedWithTheSizeThatTheyComeBackWith) {
    OpenAt(800, 600);
    DragBar("splWhole", 240);
    DragBar("splBottom", 180);
    Trigger("mnuViewContents");
    window_->close();
    EXPECT_EQ(Stored("Contents").toStdString(), "False");
    EXPECT_EQ(Stored("Whole").toStdString(), "3600");
    EXPECT_EQ(Stored("Bottom").toStdString(), "2700");
}

TEST_F(MainLayout, DraggingTheTreeAwayUnchecksTheLayout) {
    OpenAt(800, 600);
    const int tree = TreePane();
    DragBar("splBottom", 0);
    EXPECT_EQ(TreePane(), 0);
    EXPECT_FALSE(Action("mnuViewFormat")->isChecked());
    EXPECT_TRUE(Action("mnuViewContents")->isChecked());
    EXPECT_FALSE(BandIsVisible());
    Trigger("mnuViewFormat");
    EXPECT_EQ(TreePane(), tree);
    EXPECT_TRUE(BandIsVisible());
}

TEST_F(MainLayout, DraggingTheContentsAwayUnchecksThem) {
    OpenAt(800, 600);
    const int list = ListPane();
    DragBar("splWhole", 600);
    EXPECT_EQ(ContentsPane(), 0);
    EXPECT_FALSE(Action("mnuViewContents")->isChecked());
    EXPECT_FALSE(BandIsVisible());
    Trigger("mnuViewContents");
    EXPECT_EQ(ListPane(), list);
}

TEST_F(MainLayout, FormatLayoutIsUsableOnlyWithContentsWhenTheMenuOpens) {
    OpenAt(800, 600);
    auto* menu = Find<QMenu>("mnuView");
    QMenuBar* bar = window_->menuBar();
    const auto open = [&] {
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
        ASSERT_TRUE(menu->isVisible());
        menu->close();
    };
    open();
    EXPECT_TRUE(Action("mnuViewFormat")->isEnabled());
    Trigger("mnuViewContents");
    open();
    EXPECT_FALSE(Action("mnuViewFormat")->isEnabled());
    Trigger("mnuViewContents");
    open();
    EXPECT_TRUE(Action("mnuViewFormat")->isEnabled());
}

TEST_F(MainLayout, TabNeverReachesAPaneThatCannotBeSeen) {
    OpenAt(800, 600);
    Find<QWidget>("rtfRaw")->setFocus();
    Trigger("mnuViewContents");
    EXPECT_TRUE(List()->hasFocus());
    for (int step = 0; step < 12; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const std::string name = QApplication::focusWidget()->objectName().toStdString();
        EXPECT_NE(name, "rtfRaw");
        EXPECT_NE(name, "trvMessage");
    }
}

TEST_F(MainLayout, KeysNeverMoveASplitBar) {
    OpenAt(800, 600);
    for (const char* name : {"splWhole", "splBottom"}) {
        const QList<int> sizes = Splitter(name)->sizes();
        QSplitterHandle* bar = Splitter(name)->handle(1);
        bar->setFocus();
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
            QTest::keyClick(bar, key);
        }
        EXPECT_EQ(Splitter(name)->sizes(), sizes);
    }
}

} // namespace
} // namespace quellbox
