#include "tests/messages/ListRows.h"
#include "tests/support/Gzip.h"
#include "tests/support/RealFolderWindow.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>

#include <functional>

using namespace quellbox;

namespace {

class Actions : public RealFolderWindowTest {
protected:
    /// Runs `act` on the whitelist dialog as soon as it is shown.
    void OnDialog(std::function<void(QDialog&)> act) {
        QTimer::singleShot(0, window.get(), [this, act = std::move(act)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->objectName(), QStringLiteral("frmTolerate"));
            EXPECT_FALSE(Find<QTimer>("tmrRefresh")->isActive());
            dialogSeen = true;
            act(*dialog);
        });
    }

    static void Press(QDialog& dialog, const char* name) {
        dialog.findChild<QPushButton*>(QLatin1String(name))->click();
    }

    bool dialogSeen = false;
};

} // namespace

TEST_F(Actions, AnArrivingMessageIsListedClickedAndUnblocked) {
    Open(0);
    Write(Archive(Name(1)), Mail(1));
    window->RefreshArchive(true);
    Settle();
    ASSERT_EQ(window->Messages().Count(), 1);
    EXPECT_TRUE(window->Messages().Row(0).IsUnread());
    EXPECT_FALSE(Command("mnuActionsUnblock")->isEnabled());
    Click(0);
    EXPECT_FALSE(window->Messages().Row(0).IsUnread());
    EXPECT_TRUE(Raw()->toPlainText().contains(QStringLiteral("second line")));
    ASSERT_TRUE(Command("mnuActionsUnblock")->isEnabled());
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 0);
    EXPECT_FALSE(QFileInfo::exists(Archive(Name(1))));
    EXPECT_EQ(Read(Pickup(Name(1))), Mail(1));
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("0 messages"));
    EXPECT_TRUE(window->Panels().Info().text.isEmpty());
    EXPECT_TRUE(window->Panels().Size().text.isEmpty());
    EXPECT_TRUE(Raw()->toPlainText().isEmpty());
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
    EXPECT_FALSE(Command("tlbMessages_delete")->isEnabled());
    EXPECT_FALSE(Command("mnuActionsDelete")->isEnabled());
}

TEST_F(Actions, DeletingShowsTheRowThatFollowed) {
    Open(4);
    const QStringList before = Keys();
    Click(1);
    Click(2, Qt::ControlModifier);
    Command("tlbMessages_delete")->trigger();
    Settle();
    EXPECT_EQ(Keys(), QStringList({before[0], before[3]}));
    EXPECT_FALSE(QFileInfo::exists(Archive(before[1])));
    EXPECT_EQ(List()->currentIndex().row(), 1);
    EXPECT_TRUE(List()->selectionModel()->isRowSelected(1));
    EXPECT_EQ(window->Panels().Info().text, before[3]);
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("2 messages"));
    EXPECT_EQ(window->Panels().Size().toolTip, QStringLiteral("Size of selected messages"));
    EXPECT_EQ(Raw()->FileName(), Archive(before[3]));
    EXPECT_EQ(Tree()->topLevelItem(0)->text(0), QStringLiteral("MESSAGE"));
}

TEST_F(Actions, DeletingTheLastRowSelectsTheNewLastRow) {
    Open(3);
    Click(2);
    QTest::keyClick(List(), Qt::Key_Delete);
    Settle();
    EXPECT_EQ(window->Messages().Count(), 2);
    EXPECT_TRUE(List()->selectionModel()->isRowSelected(1));
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("2 messages"));
}

TEST_F(Actions, ANameThatIsInPickupKeepsTheArchiveFileAndRemovesTheRow) {
    Open(2);
    const QString key = Keys().first();
    Write(Pickup(key), "other");
    Click(0);
    Find<QAction>("mnuMessageUnblock")->trigger();
    Settle();
    EXPECT_FALSE(Keys().contains(key));
    EXPECT_EQ(Read(Pickup(key)), QByteArray("other"));
    EXPECT_FALSE(Read(Archive(key)).isEmpty());
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_TRUE(Keys().contains(key));
}

TEST_F(Actions, AHeldKeyDisposesOfOneMessageOnly) {
    Open(4);
    Click(0);
    for (const auto& [key, modifiers] : {std::pair{Qt::Key_Delete, Qt::KeyboardModifiers()},
                                         {Qt::Key_U, Qt::KeyboardModifiers(Qt::ControlModifier)}}) {
        const int before = window->Messages().Count();
        QTest::simulateEvent(List(), true, key, modifiers, {}, false);
        Settle();
        EXPECT_EQ(window->Messages().Count(), before - 1);
        for (int repeat = 0; repeat < 5; ++repeat) {
            QTest::simulateEvent(List(), true, key, modifiers, {}, true);
        }
        Settle();
        EXPECT_EQ(window->Messages().Count(), before - 1) << key;
        QTest::simulateEvent(List(), false, key, modifiers, {}, false);
    }
    QTest::simulateEvent(List(), true, Qt::Key_T, Qt::ControlModifier, {}, true);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "no dialog for a repeated key";
}

TEST_F(Actions, AMessageWhoseSizeCannotBeCountedIsShownAllTheSame) {
    Open(3);
    const QStringList before = Keys();
    window->Messages().Update(1, WithSize(window->Messages().Row(1), 4'000'000'000));
    Click(0);
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(Keys(), before.mid(1));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(window->Panels().Info().text, before[1]);
    EXPECT_EQ(window->Panels().Size().text, QStringLiteral("4.000 GB"));
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("2 messages"));
    EXPECT_EQ(Raw()->FileName(), Archive(before[1]));
    EXPECT_EQ(Tree()->topLevelItem(0)->text(0), QStringLiteral("MESSAGE"));
}

TEST_F(Actions, TheContextMenuDeletesToo) {
    Open(2);
    const QString key = Keys().first();
    Click(0);
    Command("mnuMessageDelete")->trigger();
    Settle();
    EXPECT_FALSE(QFileInfo::exists(Archive(key)));
    EXPECT_EQ(window->Messages().Count(), 1);
}

TEST_F(Actions, AnEmptyListStaysEmpty) {
    Open(0);
    Command("mnuMessageDelete")->trigger();
    Settle();
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("0 messages"));
    EXPECT_TRUE(window->Panels().Info().text.isEmpty());
}

TEST_F(Actions, WithoutASelectionNothingIsDeleted) {
    Open(2);
    Command("mnuMessageDelete")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 2);
    EXPECT_FALSE(Command("mnuActionsDelete")->isEnabled());
    EXPECT_FALSE(Command("mnuActionsUnblock")->isEnabled());
}

TEST_F(Actions, ALongRunShowsItsProgress) {
    for (int number = 1; number <= 250; ++number) {
        Write(Archive(Name(number)), Mail(number));
    }
    Open();
    List()->selectAll();
    window->UpdateSelectionStatus();
    QStringList counts;
    QObject::connect(&window->Panels(), &StatusPanels::Changed, window.get(),
                     [&] { counts.append(window->Panels().Count().text); });
    Command("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_TRUE(counts.contains(QStringLiteral("200")));
    EXPECT_TRUE(counts.contains(QStringLiteral("100")));
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("0 messages"));
    EXPECT_TRUE(QDir(Archive()).entryList(QDir::Files).isEmpty());
}

TEST_F(Actions, ToleratingAddsTheSenderAndUnblocks) {
    Open(2);
    const QString key = Keys().first();
    Click(0);
    ASSERT_TRUE(Command("mnuActionsTolerate")->isEnabled());
    OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), QStringLiteral("Sender1@Example.com"));
        EXPECT_TRUE(dialog.findChild<QLineEdit*>()->isReadOnly());
        EXPECT_TRUE(dialog.findChild<QStatusBar*>()->currentMessage().contains(QStringLiteral("f@x.org")));
        Press(dialog, "btnAdd");
        Press(dialog, "btnOK");
    });
    Command("mnuActionsTolerate")->trigger();
    Settle();
    EXPECT_TRUE(dialogSeen);
    EXPECT_EQ(store.Keys(QStringLiteral("Tolerate")), QStringList({QStringLiteral("sender1@example.com")}));
    EXPECT_EQ(Read(Pickup(key)), Mail(1));
    EXPECT_FALSE(Keys().contains(key));
    EXPECT_TRUE(Find<QTimer>("tmrRefresh")->isActive());
}

TEST_F(Actions, OkWithoutAddUnblocksAndSavesTheListUnchanged) {
    store.SetValue(QStringLiteral("Tolerate"), QStringLiteral("@old.org"), QStringLiteral("0"));
    Open(1);
    Click(0);
    OnDialog([](QDialog& dialog) { Press(dialog, "btnOK"); });
    Command("tlbMessages_tolerate")->trigger();
    Settle();
    EXPECT_EQ(store.Keys(QStringLiteral("Tolerate")), QStringList({QStringLiteral("@old.org")}));
    EXPECT_TRUE(QFileInfo::exists(Pickup(Name(1))));
}

TEST_F(Actions, CancelKeepsTheMessageAndClosingByTheFrameKeepsTheEarlierResult) {
    Open(3);
    Click(0);
    OnDialog([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    Command("mnuMessageTolerate")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 3);
    OnDialog([](QDialog& dialog) { dialog.close(); });
    Command("mnuMessageTolerate")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 3);
    window->State().ToleranceResult = QStringLiteral("OK");
    OnDialog([](QDialog& dialog) { dialog.close(); });
    Command("mnuMessageTolerate")->trigger();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 2);
}

TEST_F(Actions, TheWhitelistButtonMaintainsTheListAndMovesNothing) {
    Open(1);
    Click(0);
    OnDialog([](QDialog& dialog) {
        EXPECT_FALSE(dialog.findChild<QLineEdit*>()->isReadOnly());
        dialog.findChild<QLineEdit*>()->setText(QStringLiteral("@New.org"));
        Press(dialog, "btnAdd");
        Press(dialog, "btnOK");
    });
    Command("tlbMessages_whitelist")->trigger();
    Settle();
    EXPECT_TRUE(dialogSeen);
    EXPECT_EQ(store.Keys(QStringLiteral("Tolerate")), QStringList({QStringLiteral("@new.org")}));
    EXPECT_EQ(window->Messages().Count(), 1);
}

TEST_F(Actions, ToleratingNeedsOneRowAndALevel) {
    Open(2);
    Click(0);
    EXPECT_TRUE(Command("tlbMessages_tolerate")->isEnabled());
    Click(1, Qt::ControlModifier);
    EXPECT_FALSE(Command("tlbMessages_tolerate")->isEnabled());
    EXPECT_FALSE(Command("mnuActionsTolerate")->isEnabled());
    window->State().TolerationLevel = 0;
    Click(0);
    EXPECT_FALSE(Command("tlbMessages_tolerate")->isEnabled());
    EXPECT_FALSE(Command("mnuActionsTolerate")->isEnabled());
    EXPECT_FALSE(Command("mnuMessageTolerate")->isEnabled());
    EXPECT_FALSE(Command("tlbMessages_whitelist")->isEnabled());
}

TEST_F(Actions, APackedMessageStaysInTheArchiveAndIsTold) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ServerProfile"), QStringLiteral("amavis"));
    Write(Archive(QStringLiteral("spam-1.gz")), Gzip(Mail(1)));
    Open();
    ASSERT_EQ(Keys(), QStringList{QStringLiteral("spam-1.gz")});
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().contains(QStringLiteral("second line")));
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_TRUE(QFileInfo::exists(Archive(QStringLiteral("spam-1.gz"))));
    EXPECT_TRUE(QDir(Pickup()).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(Find<QWidget>("btnFailures")->isVisible());
}
