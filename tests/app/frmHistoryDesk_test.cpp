#include "history/frmHistory.h"
#include "messages/FailureList.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/RealFolderWindow.h"
#include "whitelist/WhitelistStore.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>

using namespace quellbox;

namespace {

class HistoryDeskTest : public RealFolderWindowTest {
protected:
    void KeepDeleted() {
        store.SetValue(QStringLiteral("Settings"), QStringLiteral("KeepDeletedDays"), QStringLiteral("30"));
    }

    frmHistory* History() { return Find<frmHistory>("frmHistory"); }

    void ShowHistory() {
        Command("mnuToolsHistory")->trigger();
        ASSERT_NE(History(), nullptr);
        SettleHistory();
    }

    void SettleHistory() {
        ASSERT_TRUE(QTest::qWaitFor([this] {
            const HistoryModel& model = History()->Model();
            return !model.IsAsking() && (model.rowCount() == 0 || model.Line(0) != nullptr);
        }));
    }

    /// The lines as "action subject result", the newest first, when there are so many.
    QStringList Lines(int count) {
        ShowHistory();
        const HistoryModel& model = History()->Model();
        EXPECT_TRUE(QTest::qWaitFor([&model, count] { return model.rowCount() == count; }));
        QStringList lines;
        for (int row = 0; row < model.rowCount(); ++row) {
            EXPECT_TRUE(QTest::qWaitFor([&model, row] { return model.Line(row) != nullptr; }));
            const auto cell = [&model, row](int column) { return model.index(row, column).data().toString(); };
            lines.append(cell(HistoryActionName) + QLatin1Char(' ') + cell(HistorySubjectText) + QLatin1Char(' ') +
                         cell(HistoryResultName));
        }
        return lines;
    }

    bool WaitForUndo() {
        return QTest::qWaitFor([this] { return Command("mnuEditUndo")->isEnabled(); });
    }

    void PressUndo() {
        Activate();
        ASSERT_TRUE(WaitForUndo());
        const int before = refreshes;
        const auto connection = QObject::connect(window.get(), &frmMain::Refreshed, [this] { ++refreshes; });
        QTest::keyClick(List(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(QTest::qWaitFor([this, before] { return refreshes > before; }));
        QObject::disconnect(connection);
        Settle();
    }

    QStringList Archived() const { return QDir(root.path() + QStringLiteral("/archive")).entryList(QDir::Files); }

    int refreshes = 0;
};

} // namespace

TEST_F(HistoryDeskTest, WritesDownWhatIsDoneWithMessages) {
    Open(3);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    Click(0);
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(Lines(2), QStringList({QStringLiteral("Delete Mail 2 Done"), QStringLiteral("Unblock Mail 1 Done")}));
}

TEST_F(HistoryDeskTest, WritesDownWhyAMessageCouldNotBeDealtWith) {
    Open(1);
    Write(Pickup(Name(1)), "another one");
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Lines(1), QStringList({QStringLiteral("Unblock Mail 1 Failed")}));
    EXPECT_FALSE(History()->Model().Line(0)->entry.reason.isEmpty());
}

TEST_F(HistoryDeskTest, AnUnblockIsTakenBackWhileTheMessageIsStillThere) {
    Open(2);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_FALSE(QFileInfo::exists(Archive(Name(1))));
    PressUndo();
    EXPECT_EQ(Read(Archive(Name(1))), Mail(1));
    EXPECT_FALSE(QFileInfo::exists(Pickup(Name(1))));
    EXPECT_EQ(window->Messages().Count(), 2);
    EXPECT_EQ(Lines(2), QStringList({QStringLiteral("Undo Mail 1 Done"), QStringLiteral("Unblock Mail 1 Undone")}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Command("mnuEditUndo")->isEnabled(); })) << "once";
}

TEST_F(HistoryDeskTest, WhatTheMailServerHasTakenIsTold) {
    Open(2);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_TRUE(QFile::remove(Pickup(Name(1))));
    PressUndo();
    EXPECT_FALSE(QFileInfo::exists(Archive(Name(1))));
    auto* mark = Find<QToolButton>("btnFailures");
    ASSERT_NE(mark, nullptr);
    EXPECT_TRUE(mark->isVisible());
    EXPECT_EQ(Lines(2), QStringList({QStringLiteral("Undo Mail 1 Failed"), QStringLiteral("Unblock Mail 1 Done")}));
}

TEST_F(HistoryDeskTest, UndoNeverOverwritesAFile) {
    Open(1);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    Write(Archive(Name(1)), "another one");
    PressUndo();
    EXPECT_EQ(Read(Archive(Name(1))), QByteArray("another one"));
    EXPECT_EQ(Read(Pickup(Name(1))), Mail(1));
}

TEST_F(HistoryDeskTest, WithoutKeepingDeletingIsForGood) {
    Open(2);
    Click(0);
    Command("mnuActionsDelete")->trigger();
    Settle();
    Lines(1);
    EXPECT_FALSE(Command("mnuEditUndo")->isEnabled());
    EXPECT_EQ(QDir(root.path() + QStringLiteral("/archive"))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                  .size(),
              1);
}

TEST_F(HistoryDeskTest, WhatWasDeletedComesBackEvenFromAnEmptyList) {
    KeepDeleted();
    Open(3);
    Command("mnuEditSelectAll")->trigger();
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 0);
    EXPECT_EQ(Archived(), QStringList());
    ASSERT_TRUE(WaitForUndo());
    EXPECT_TRUE(Find<QMenu>("mnuEdit")->menuAction()->isEnabled());
    PressUndo();
    EXPECT_EQ(window->Messages().Count(), 3);
    EXPECT_EQ(Read(Archive(Name(2))), Mail(2));
    EXPECT_FALSE(QFileInfo::exists(Archive(QStringLiteral(".quellbox-deleted"))));
}

TEST_F(HistoryDeskTest, TakesBackOneActionAfterTheOther) {
    KeepDeleted();
    Open(3);
    Click(0);
    Command("mnuActionsDelete")->trigger();
    Settle();
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Archived(), QStringList({Name(3)}));
    PressUndo();
    EXPECT_EQ(Archived(), QStringList({Name(2), Name(3)}));
    PressUndo();
    EXPECT_EQ(Archived(), QStringList({Name(1), Name(2), Name(3)}));
}

TEST_F(HistoryDeskTest, OnlyTheSelectedEntriesAreTakenBack) {
    KeepDeleted();
    Open(4);
    Command("mnuEditSelectAll")->trigger();
    Command("mnuActionsDelete")->trigger();
    Settle();
    Lines(4);
    auto* list = History()->findChild<QTreeView*>(QStringLiteral("lvwHistory"));
    list->selectionModel()->select(History()->Model().index(1, 0),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list->selectionModel()->select(History()->Model().index(3, 0),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::mouseClick(History()->findChild<QPushButton*>(QStringLiteral("btnUndo")), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Archived().size() == 2; }));
    Settle();
    EXPECT_EQ(Lines(6).filter(QStringLiteral("Undone")).size(), 2);
}

TEST_F(HistoryDeskTest, UndoOfATolerationTakesTheSenderOffTheWhitelist) {
    Open(2);
    Click(0);
    QTimer::singleShot(0, window.get(), [] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QPushButton*>(QStringLiteral("btnAdd"))->click();
        dialog->findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    });
    Command("mnuActionsTolerate")->trigger();
    Settle();
    ASSERT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("sender1@example.com")}));
    ASSERT_TRUE(QFileInfo::exists(Pickup(Name(1))));
    EXPECT_EQ(Lines(2).filter(QStringLiteral("Added to whitelist")).size(), 1);
    PressUndo();
    EXPECT_EQ(Read(Archive(Name(1))), Mail(1));
    EXPECT_EQ(LoadWhitelist(store), QStringList());
    EXPECT_EQ(Lines(4).filter(QStringLiteral("Removed from whitelist")).size(), 1);
}

TEST_F(HistoryDeskTest, WritesDownWhatARefreshTolerates) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("TolerationLevel"), QStringLiteral("2"));
    ASSERT_EQ(SaveWhitelist(store, {QStringLiteral("sender2@example.com")}), QStringList());
    Open(3);
    EXPECT_EQ(Lines(1), QStringList({QStringLiteral("Automatic toleration Mail 2 Done")}));
    EXPECT_FALSE(Command("mnuEditUndo")->isEnabled()) << "the user has done nothing";
}

TEST_F(HistoryDeskTest, IsWrittenIntoTheFileThatIsGivenAndThereAtTheNextStart) {
    historyFile = root.path() + QStringLiteral("/data/history.sqlite");
    Open(2);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Lines(1).size(), 1);
    window->close();
    window.reset();
    pool.WaitForDone();
    EXPECT_TRUE(QFileInfo::exists(historyFile));
    Open(0);
    EXPECT_EQ(Lines(1), QStringList({QStringLiteral("Unblock Mail 1 Done")}));
    PressUndo();
    EXPECT_EQ(Read(Archive(Name(1))), Mail(1)) << "also what was done before";
}

TEST_F(HistoryDeskTest, WithoutDaysNoFileIsWritten) {
    historyFile = root.path() + QStringLiteral("/data/history.sqlite");
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("HistoryDays"), QStringLiteral("0"));
    Open(2);
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Lines(1).size(), 1) << "as long as the program runs";
    window->close();
    window.reset();
    pool.WaitForDone();
    EXPECT_FALSE(QFileInfo::exists(historyFile));
}

TEST_F(HistoryDeskTest, ADamagedHistoryStopsNothingAndIsTold) {
    historyFile = root.path() + QStringLiteral("/history.sqlite");
    Write(historyFile, QByteArray(5000, 'x'));
    Open(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !told.isEmpty(); }));
    EXPECT_TRUE(told.front().contains(QStringLiteral("damaged"))) << told.front().toStdString();
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Lines(1), QStringList({QStringLiteral("Unblock Mail 1 Done")}));
    EXPECT_EQ(told.size(), 1);
}

TEST_F(HistoryDeskTest, TheWindowIsNotModalAndClosesWithTheProgram) {
    Open(2);
    ShowHistory();
    EXPECT_FALSE(History()->isModal());
    Activate();
    Click(1);
    EXPECT_EQ(window->State().SelectedCount, 1);
    QPointer<frmHistory> history = History();
    window->close();
    EXPECT_FALSE(history && history->isVisible());
}

TEST_F(HistoryDeskTest, WhatTheWindowShowsIsExported) {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Open(3);
    Command("mnuEditSelectAll")->trigger();
    Command("mnuActionsUnblock")->trigger();
    Settle();
    Lines(3);
    History()->findChild<QLineEdit*>(QStringLiteral("txtFind"))->setText(QStringLiteral("mail 2"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return History()->Model().rowCount() == 1; }));
    const QString file = root.path() + QStringLiteral("/history.jsonl");
    const DialogVisit visit("dlgExport", [&file](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file);
        dialog.accept();
    });
    QTest::mouseClick(History()->findChild<QPushButton*>(QStringLiteral("btnExport")), Qt::LeftButton);
    EXPECT_TRUE(visit.Happened());
    ASSERT_TRUE(QTest::qWaitFor([&file] { return QFileInfo::exists(file); }));
    Settle();
    const QByteArray written = Read(file);
    EXPECT_EQ(written.count('\n'), 1) << written.toStdString();
    EXPECT_TRUE(written.contains("\"subject\":\"Mail 2\"")) << written.toStdString();
    EXPECT_TRUE(window->Panels().Info().text.contains(QStringLiteral("history.jsonl")));
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
}

TEST_F(HistoryDeskTest, UndoOfATolerationLeavesWhatWasThereBefore) {
    ASSERT_EQ(SaveWhitelist(store, {QStringLiteral("other@example.com")}), QStringList());
    Open(2);
    Click(0);
    QTimer::singleShot(0, window.get(), [] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QPushButton*>(QStringLiteral("btnAdd"))->click();
        dialog->findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    });
    Command("mnuActionsTolerate")->trigger();
    Settle();
    ASSERT_EQ(LoadWhitelist(store).size(), 2);
    PressUndo();
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("other@example.com")}));
}

TEST_F(HistoryDeskTest, WhatTheServerHasTakenDoesNotHideWhatWasDoneBefore) {
    KeepDeleted();
    Open(3);
    Click(0);
    Command("mnuActionsDelete")->trigger();
    Settle();
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_TRUE(QFile::remove(Pickup(Name(2))));
    PressUndo();
    EXPECT_EQ(Archived(), QStringList({Name(3)}));
    PressUndo();
    EXPECT_EQ(Archived(), QStringList({Name(1), Name(3)}));
}
