#include "history/frmHistory.h"

#include "tests/history/JournalFile.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

using namespace quellbox;

namespace {

class HistoryWindow : public JournalTest {
protected:
    void Show() {
        window_.emplace(*journal_, nullptr);
        window_->show();
        window_->activateWindow();
        Settle();
    }

    template <class Widget>
    Widget& Find(const char* name) {
        return *window_->findChild<Widget*>(QLatin1String(name));
    }

    /// Waits until the window shows what it was asked for.
    void Settle() {
        EXPECT_TRUE(RunUntil([this] {
            const HistoryModel& model = window_->Model();
            return !model.IsAsking() && (model.rowCount() == 0 || model.Line(0) != nullptr);
        }));
        QCoreApplication::processEvents();
    }

    QStringList Column(HistoryColumn column) {
        const QAbstractItemModel& model = *Find<QTreeView>("lvwHistory").model();
        QStringList cells;
        for (int row = 0; row < model.rowCount(); ++row) {
            cells.append(model.index(row, column).data().toString());
        }
        return cells;
    }

    void FillThree() {
        Open();
        Act(HistoryAction::Delete, {QStringLiteral("gone.eml")});
        Act(HistoryAction::Unblock, {QStringLiteral("fine.eml")});
        auto record = journal_->Begin({HistoryAction::Unblock, theArchive, thePickup});
        record->Take(FailedMessage(QStringLiteral("stuck.eml"), QStringLiteral("No space left")));
        record.reset();
        Files();
    }

    std::optional<frmHistory> window_;
};

TEST_F(HistoryWindow, ListsWhatWasDoneTheNewestFirst) {
    FillThree();
    Show();
    EXPECT_EQ(Column(HistorySubjectText),
              QStringList({QStringLiteral("stuck.eml"), QStringLiteral("fine.eml"), QStringLiteral("gone.eml")}));
    EXPECT_EQ(Column(HistoryActionName),
              QStringList({QStringLiteral("Unblock"), QStringLiteral("Unblock"), QStringLiteral("Delete")}));
    EXPECT_EQ(Column(HistoryResultName),
              QStringList({QStringLiteral("Failed"), QStringLiteral("Done"), QStringLiteral("Done")}));
    EXPECT_EQ(Find<QLabel>("lblCount").text(), QStringLiteral("3 entries"));
}

TEST_F(HistoryWindow, HasItsColumnsInTheirOrder) {
    Open();
    Show();
    QStringList headers;
    const QAbstractItemModel& model = *Find<QTreeView>("lvwHistory").model();
    for (int column = 0; column < model.columnCount(); ++column) {
        headers.append(model.headerData(column, Qt::Horizontal).toString());
    }
    EXPECT_EQ(headers.join(QLatin1Char(' ')), QStringLiteral("Time Action Sender To Subject SCL% Result"));
}

TEST_F(HistoryWindow, NarrowsAsOneTypes) {
    FillThree();
    Show();
    QTest::keyClicks(&Find<QLineEdit>("txtFind"), QStringLiteral("STUCK"));
    Settle();
    EXPECT_EQ(Column(HistorySubjectText), QStringList({QStringLiteral("stuck.eml")}));
    Find<QLineEdit>("txtFind").clear();
    Settle();
    EXPECT_EQ(Column(HistorySubjectText).size(), 3);
}

TEST_F(HistoryWindow, NarrowsByActionAndResult) {
    FillThree();
    Show();
    auto& action = Find<QComboBox>("cboAction");
    action.setCurrentIndex(action.findText(QStringLiteral("Unblock")));
    Settle();
    EXPECT_EQ(Column(HistorySubjectText), QStringList({QStringLiteral("stuck.eml"), QStringLiteral("fine.eml")}));
    auto& result = Find<QComboBox>("cboResult");
    result.setCurrentIndex(result.findText(QStringLiteral("Done")));
    Settle();
    EXPECT_EQ(Column(HistorySubjectText), QStringList({QStringLiteral("fine.eml")}));
    EXPECT_EQ(Find<QLabel>("lblCount").text(), QStringLiteral("1 entries"));
}

TEST_F(HistoryWindow, TellsTheDetailsOfTheSelectedEntry) {
    FillThree();
    Show();
    EXPECT_TRUE(RunUntil([this] {
        return Find<QPlainTextEdit>("txtDetails").toPlainText().contains(QStringLiteral("Reason: No space left"));
    }));
    QTest::keyClick(&Find<QTreeView>("lvwHistory"), Qt::Key_Down);
    const QString text = Find<QPlainTextEdit>("txtDetails").toPlainText();
    EXPECT_TRUE(text.contains(QStringLiteral("File: fine.eml")));
    EXPECT_TRUE(text.contains(QStringLiteral("Account: Jo")));
    EXPECT_TRUE(text.contains(QStringLiteral("Computer: pc")));
    EXPECT_FALSE(text.contains(QStringLiteral("Reason")));
}

TEST_F(HistoryWindow, UndoIsOfferedForWhatCanBeTakenBackAndNamesTheSelection) {
    FillThree();
    Show();
    auto& undo = Find<QPushButton>("btnUndo");
    auto& list = Find<QTreeView>("lvwHistory");
    QTest::keyClick(&list, Qt::Key_Home);
    EXPECT_FALSE(undo.isEnabled()) << "it has failed";
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_TRUE(undo.isEnabled());
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_FALSE(undo.isEnabled()) << "it is gone for good";
    QTest::keySequence(&list, QKeySequence::SelectAll);
    EXPECT_TRUE(undo.isEnabled());
    QSignalSpy clicked(&*window_, &frmHistory::UndoClick);
    QTest::mouseClick(&undo, Qt::LeftButton);
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked.front().front().value<HistoryIds>(), window_->Model().Ids());
    window_->SetUndoAllowed(false);
    EXPECT_FALSE(undo.isEnabled());
}

TEST_F(HistoryWindow, ShowsWhatIsDoneMeanwhileAndKeepsTheSelection) {
    FillThree();
    Show();
    auto& list = Find<QTreeView>("lvwHistory");
    QTest::keyClick(&list, Qt::Key_End);
    Act(HistoryAction::Unblock, {QStringLiteral("new.eml")});
    EXPECT_TRUE(RunUntil([this] { return window_->Model().rowCount() == 4; }));
    EXPECT_EQ(list.currentIndex().row(), 3);
    EXPECT_EQ(list.selectionModel()->selectedRows().size(), 1);
}

TEST_F(HistoryWindow, ExportsWhatItShows) {
    FillThree();
    Show();
    QTest::keyClicks(&Find<QLineEdit>("txtFind"), QStringLiteral("fine"));
    Settle();
    QSignalSpy clicked(&*window_, &frmHistory::ExportClick);
    QTest::mouseClick(&Find<QPushButton>("btnExport"), Qt::LeftButton);
    ASSERT_EQ(clicked.size(), 1);
    QTest::keyClicks(&Find<QLineEdit>("txtFind"), QStringLiteral("nothing"));
    Settle();
    EXPECT_FALSE(Find<QPushButton>("btnExport").isEnabled());
}

TEST_F(HistoryWindow, EscapeAndCloseCloseIt) {
    Open();
    Show();
    QTest::keyClick(&*window_, Qt::Key_Escape);
    EXPECT_FALSE(window_->isVisible());
    window_->show();
    QTest::mouseClick(&Find<QPushButton>("btnClose"), Qt::LeftButton);
    EXPECT_FALSE(window_->isVisible());
}

} // namespace
