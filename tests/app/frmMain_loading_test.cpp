// Messages that take longer to read than a click waits for them.
#include "app/MessageListView.h"
#include "contents/frmView.h"
#include "tests/support/MainWindowFixture.h"

#include <QSemaphore>
#include <QTextBlock>

#include <stdexcept>

namespace quellbox {

namespace {

using namespace std::chrono_literals;

class Loading : public MainWindowTest {
protected:
    Loading() {
        pool_.SetMost(16);
        settles_ = false;
    }

    // What the hook uses goes before the readers that may still be in it.
    ~Loading() override {
        LetGo();
        pool_.WaitForDone();
    }

    /// Three messages, newest first; the window waits for none of them longer than `wait`.
    void OpenThree(std::chrono::milliseconds wait = 1ms) {
        AddThree();
        loadPatience_ = wait;
        Open();
        Find<QTimer>("tmrRefresh")->stop();
        window_->mnuAcRefresh_Click();
        Settle();
        ASSERT_EQ(window_->Messages().Count(), 3);
    }

    void Stall(const char* name) {
        const QString path = QStringLiteral("/archive/") + QLatin1String(name);
        files_.SetReadHook([this, path](const QString& read) {
            if (read == path) {
                stalled_.release();
                release_.acquire();
            }
        });
    }

    void LetGo() {
        files_.SetReadHook({});
        release_.release(1000);
    }

    bool WaitUntilLoaded() {
        return QTest::qWaitFor([this] { return !window_->IsLoading(); }, patience);
    }

    /// Whether the window processes its events while a message is on its way.
    bool RunsEvents() {
        int turns = 0;
        QTimer turn;
        turn.callOnTimeout([&turns] { ++turns; });
        turn.start(0);
        const bool ran = QTest::qWaitFor([&turns] { return turns >= 10; }, patience);
        return ran && window_->IsLoading();
    }

    /// Whether both panes are emptied, now or soon.
    bool PanesEmpty() const {
        return QTest::qWaitFor([this] { return Shown().empty() && Tree()->topLevelItemCount() == 0; }, patience);
    }

    std::string Shown() const { return Raw()->toPlainText().section(QLatin1Char('\n'), 0, 0).toStdString(); }
    RawPane* Raw() const { return Find<RawPane>("rtfRaw"); }
    QTreeWidget* Tree() const { return Find<QTreeWidget>("trvMessage"); }

    std::string Root() const {
        const QTreeWidgetItem* root = Tree()->topLevelItem(0);
        return root == nullptr || root->childCount() < 2 ? std::string() : root->child(1)->text(0).toStdString();
    }

    frmView* Viewer() const {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* view = qobject_cast<frmView*>(widget); view != nullptr && view->isVisible()) {
                return view;
            }
        }
        return nullptr;
    }

    QSemaphore release_;
    QSemaphore stalled_;
};

} // namespace

TEST_F(Loading, AnOrdinaryMessageTakesThePlaceOfTheOneBeforeWithoutEmptyPanesInBetween) {
    OpenThree(std::chrono::milliseconds(patience));
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    bool wasEmpty = false;
    QObject::connect(Raw(), &QPlainTextEdit::textChanged, [this, &wasEmpty] { wasEmpty |= Raw()->Text().isEmpty(); });
    ClickRow(1);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_FALSE(wasEmpty);
    EXPECT_EQ(Shown(), "To: to-b.eml");
    EXPECT_EQ(Root(), "TO: to-b.eml");
}

TEST_F(Loading, TheWindowRunsOnWhileAMessageStalls) {
    OpenThree();
    window_->Messages().MarkRows(0, 2, true);
    Stall("a.eml");
    ClickRow(0);
    EXPECT_TRUE(RunsEvents());
    EXPECT_EQ(Panel("info"), "a.eml");
    EXPECT_TRUE(PanesEmpty());
    EXPECT_TRUE(IsUnread(0)) << "nobody has seen it";
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(Shown(), "To: to-a.eml");
    EXPECT_EQ(Root(), "TO: to-a.eml");
    EXPECT_FALSE(IsUnread(0));
}

TEST_F(Loading, NothingOfTheMessageBeforeIsLeftWhileTheNextOneStalls) {
    OpenThree();
    ClickRow(1);
    ASSERT_TRUE(WaitUntilLoaded());
    ASSERT_EQ(Shown(), "To: to-b.eml");
    Stall("a.eml");
    ClickRow(0);
    EXPECT_TRUE(PanesEmpty());
}

TEST_F(Loading, ASecondClickShowsTheSecondMessageAndTheLateOneIsDropped) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    ASSERT_TRUE(stalled_.tryAcquire(1, patience));
    ClickRow(1);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(Shown(), "To: to-b.eml");
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Shown(), "To: to-b.eml");
    EXPECT_EQ(Root(), "TO: to-b.eml");
}

TEST_F(Loading, ASecondClickOnAMessageThatStallsAsksForItOnce) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    ASSERT_TRUE(stalled_.tryAcquire(1, patience));
    const int opened = files_.OpenCount();
    ClickRow(0);
    ClickRow(0);
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(files_.OpenCount(), opened);
    EXPECT_EQ(Shown(), "To: to-a.eml");
}

TEST_F(Loading, DeletingTheMessageThatStallsShowsTheNextOne) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    ASSERT_TRUE(stalled_.tryAcquire(1, patience));
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(Keys(), "b.eml c.eml");
    ASSERT_TRUE(WaitUntilLoaded());
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Shown(), "To: to-b.eml");
    EXPECT_EQ(Root(), "TO: to-b.eml");
}

TEST_F(Loading, TheNextMessageMayStallAfterADelete) {
    OpenThree();
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    window_->Messages().MarkRows(0, 2, true);
    Stall("b.eml");
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(Panel("info"), "b.eml");
    EXPECT_TRUE(RunsEvents());
    EXPECT_TRUE(PanesEmpty());
    // The row moves while its message is on its way.
    window_->Messages().sort(ColumnSubject, Qt::DescendingOrder);
    ASSERT_EQ(Keys(), "c.eml b.eml");
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(Shown(), "To: to-b.eml");
    EXPECT_FALSE(IsUnread(1));
    EXPECT_TRUE(IsUnread(0));
}

TEST_F(Loading, ARefreshForgetsTheMessageThatStalls) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    ASSERT_TRUE(stalled_.tryAcquire(1, patience));
    files_.SetReadHook({});
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_FALSE(window_->IsLoading());
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(PanesEmpty());
}

TEST_F(Loading, TheWindowClosesWhileAMessageStalls) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    ASSERT_TRUE(stalled_.tryAcquire(1, patience));
    window_->close();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_FALSE(window_->IsLoading());
    window_.reset();
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(Loading, AFileThatGoesWhileItIsAskedForEmptiesThePanesWithoutAWord) {
    OpenThree(0ms);
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    files_.Remove(QStringLiteral("/archive/b.eml"));
    ClickRow(1);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_TRUE(PanesEmpty());
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(Loading, AnUnreadableMessageEmptiesThePanesAndIsRead) {
    OpenThree(0ms);
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    window_->Messages().MarkRows(0, 2, true);
    files_.SetReadHook([](const QString& path) { throw FileError(path, QStringLiteral("gone bad")); });
    ClickRow(1);
    ASSERT_TRUE(WaitUntilLoaded());
    files_.SetReadHook({});
    EXPECT_TRUE(PanesEmpty());
    EXPECT_FALSE(IsUnread(1));
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(Loading, TheViewerOpensWhenItsMessageIsThereAndTheTreeComesToo) {
    OpenThree();
    Stall("a.eml");
    ClickRow(0);
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_TRUE(RunsEvents());
    EXPECT_EQ(Viewer(), nullptr);
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    ASSERT_NE(Viewer(), nullptr);
    EXPECT_EQ(Viewer()->windowTitle(), QStringLiteral("/archive/a.eml"));
    EXPECT_EQ(Root(), "TO: to-a.eml");
}

TEST_F(Loading, ANodeThatIsClickedTakesThePlaceOfTheFileThatStalls) {
    OpenThree();
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    Stall("a.eml");
    const QTreeWidgetItem* root = Tree()->topLevelItem(0);
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, Tree()->visualItemRect(root).center());
    Settle();
    EXPECT_TRUE(RunsEvents());
    EXPECT_EQ(Shown(), "To: to-a.eml") << "a text that is only read again stays meanwhile";
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, Tree()->visualItemRect(root->child(1)).center());
    Settle();
    EXPECT_EQ(Shown(), "TO: to-a.eml");
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Shown(), "TO: to-a.eml");
}

TEST_F(Loading, HeadersOfBulkModeFillTheirRowLateAndWhereverItIs) {
    Set("BulkMode", "True");
    OpenThree();
    ASSERT_EQ(Cell(0, ColumnTo), "");
    Stall("a.eml");
    ClickRow(0);
    ClickRow(1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Cell(1, ColumnTo) == "to-b.eml"; }, patience));
    EXPECT_EQ(Cell(0, ColumnTo), "");
    window_->Messages().sort(ColumnDate, Qt::AscendingOrder);
    ASSERT_EQ(Keys(), "c.eml b.eml a.eml");
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(Cell(2, ColumnTo), "to-a.eml");
    EXPECT_EQ(Cell(0, ColumnTo), "");
    EXPECT_EQ(Shown(), "To: to-b.eml");
}

TEST_F(Loading, WhatReadingThrowsIsReportedOnce) {
    OpenThree(0ms);
    files_.SetReadHook([](const QString&) { throw std::length_error("too long"); });
    ClickRow(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !errors_.isEmpty(); }, patience));
    files_.SetReadHook({});
    EXPECT_EQ(errors_, QStringList(QStringLiteral("too long")));
    ClickRow(0);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(Shown(), "To: to-a.eml");
}

TEST_F(Loading, ALargeMessageOfWhichTheRestFollows) {
    constexpr int size = 25 * 1024 * 1024;
    AddMessage("large.eml", 9);
    QByteArray bytes = files_.Bytes(QStringLiteral("/archive/large.eml"));
    bytes.reserve(size + 100);
    while (bytes.size() < size) {
        bytes += QByteArray(98, 'x') + "\r\n";
    }
    files_.Add(QStringLiteral("/archive/large.eml"), bytes, noon_.addSecs(540).toMSecsSinceEpoch() * 1'000'000);
    AddThree();
    loadPatience_ = 0ms;
    Open();
    Find<QTimer>("tmrRefresh")->stop();
    window_->mnuAcRefresh_Click();
    Settle();
    ASSERT_EQ(Keys(), "large.eml a.eml b.eml c.eml");
    ClickRow(0);
    EXPECT_TRUE(window_->IsLoading());
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown() == "To: to-large.eml"; }, patience));
    EXPECT_FALSE(Raw()->IsComplete()) << "the first screen waits for the last";
    // Another message does not wait for the one that is still taken apart.
    ClickRow(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Root() == "TO: to-a.eml"; }, patience));
    EXPECT_EQ(Shown(), "To: to-a.eml");
    ClickRow(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->IsLoading() && Raw()->IsComplete(); }, 120'000));
    EXPECT_EQ(Raw()->document()->blockCount(), bytes.count('\n') + 1);
    EXPECT_EQ(Root(), "TO: to-large.eml");
}

} // namespace quellbox
