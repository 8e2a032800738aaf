#include "whitelist/frmTolerate.h"

#include "tests/support/MemorySettingsStore.h"
#include "whitelist/WhitelistStore.h"
#include "whitelist/frmEntryCombo.h"

#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

const QString invalid = QStringLiteral("Invalid email address specified");

class Tolerate : public testing::Test {
protected:
    void Open(const QStringList& entries, const QString& mode = ToleranceWord::whitelist) {
        EXPECT_TRUE(SaveWhitelist(store, entries).isEmpty());
        dialog = std::make_unique<frmTolerate>(store, state, nullptr);
        dialog->SetMode(mode);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
    }

    QPushButton* Button(const char* name) { return dialog->findChild<QPushButton*>(QLatin1String(name)); }
    QLineEdit* Edit() { return dialog->findChild<QLineEdit*>(); }
    QListWidget* List() { return dialog->findChild<QListWidget*>(); }
    QString Status() { return dialog->findChild<QStatusBar*>(QStringLiteral("stbBottom"))->currentMessage(); }

    void Type(const QString& text) {
        Edit()->clear();
        QTest::keyClicks(Edit(), text);
    }

    void ClickEntry(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, modifiers, CentreOf(row));
    }

    QPoint CentreOf(int row) { return List()->visualItemRect(List()->item(row)).center(); }

    void Press(int row) { QTest::mousePress(List()->viewport(), Qt::LeftButton, {}, CentreOf(row)); }
    void Release(int row) { QTest::mouseRelease(List()->viewport(), Qt::LeftButton, {}, CentreOf(row)); }

    /// Moves the pointer with the left button down.
    void DragOver(int row) {
        const QPoint at = CentreOf(row);
        QMouseEvent move(QEvent::MouseMove, at, List()->viewport()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(List()->viewport(), &move);
    }

    /// What is highlighted is what the field shows and what Remove would remove.
    void ExpectOneEntryInForce() {
        ASSERT_EQ(List()->selectedItems().size(), 1);
        const QListWidgetItem* selected = List()->selectedItems().first();
        EXPECT_EQ(Edit()->text(), selected->text());
        EXPECT_EQ(dialog->findChild<EntryCombo*>()->ListIndex(), List()->row(selected));
        EXPECT_TRUE(Button("btnRemove")->isEnabled());
    }

    /// Whether an entry is in view from its top to its bottom.
    bool IsInView(int row) { return List()->viewport()->rect().contains(List()->visualItemRect(List()->item(row))); }

    static QStringList Many(int count) {
        QStringList entries;
        for (int number = 0; number < count; ++number) {
            entries += QStringLiteral("user%1@x.org").arg(number, 3, 10, QLatin1Char('0'));
        }
        return entries;
    }

    QStringList Listed() {
        QStringList texts;
        for (int row = 0; row < List()->count(); ++row) {
            texts.append(List()->item(row)->text());
        }
        return texts;
    }

    /// Answers the question that comes next.
    void Answer(QMessageBox::StandardButton button) {
        QTimer::singleShot(0, dialog.get(), [this, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            ++questions;
            question = box->text();
            title = box->windowTitle();
            defaultIsNo = box->defaultButton() == box->button(QMessageBox::No);
            box->button(button)->click();
        });
    }

    MemorySettingsStore store;
    AppState state;
    std::unique_ptr<frmTolerate> dialog;
    int questions = 0;
    QString question;
    QString title;
    bool defaultIsNo = false;
};

} // namespace

TEST_F(Tolerate, HasItsTextsAndTabOrder) {
    Open({QStringLiteral("a@x.org")});
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Tolerate"));
    EXPECT_EQ(Button("btnAdd")->text(), QStringLiteral("&Add"));
    EXPECT_EQ(Button("btnAdd")->toolTip(), QStringLiteral("tolerated sender"));
    EXPECT_EQ(Button("btnAll")->text(), QStringLiteral("Remove A&ll"));
    EXPECT_EQ(Button("btnAll")->toolTip(), QStringLiteral("Clear all tolerated senders"));
    EXPECT_EQ(Button("btnOK")->toolTip(), QStringLiteral("Toleration not yet implemented for now"));
    EXPECT_EQ(Button("btnCancel")->toolTip(), QStringLiteral("Toleration not yet implemented for now"));
    EXPECT_TRUE(Button("btnHelp")->toolTip().isEmpty());
    QStringList order;
    const QStringList wanted{QStringLiteral("btnOK"),     QStringLiteral("btnAdd"),  QStringLiteral("btnAll"),
                             QStringLiteral("btnRemove"), QStringLiteral("btnHelp"), QStringLiteral("btnCancel")};
    for (QWidget* next = Edit()->nextInFocusChain(); next != Edit(); next = next->nextInFocusChain()) {
        if (qobject_cast<QPushButton*>(next) != nullptr) {
            order.append(next->objectName());
        }
    }
    EXPECT_EQ(order, wanted);
    EXPECT_TRUE(Edit()->hasFocus());
}

TEST_F(Tolerate, EveryControlHasItsCaptionAndToolTip) {
    Open({});
    const QString leftOver = QStringLiteral("Toleration not yet implemented for now");
    const struct {
        const char* name;
        QString caption;
        QString toolTip;
    } buttons[] = {{"btnAdd", QStringLiteral("&Add"), QStringLiteral("tolerated sender")},
                   {"btnRemove", QStringLiteral("&Remove"), QString()},
                   {"btnAll", QStringLiteral("Remove A&ll"), QStringLiteral("Clear all tolerated senders")},
                   {"btnHelp", QStringLiteral("&Help"), QString()},
                   {"btnCancel", QStringLiteral("Cancel"), leftOver},
                   {"btnOK", QStringLiteral("OK"), leftOver}};
    for (const auto& [name, caption, toolTip] : buttons) {
        ASSERT_NE(Button(name), nullptr) << name;
        EXPECT_EQ(Button(name)->text(), caption) << name;
        EXPECT_EQ(Button(name)->toolTip(), toolTip) << name;
    }
    EXPECT_EQ(dialog->findChild<QWidget*>(QStringLiteral("cboTolerate"))->toolTip(),
              QStringLiteral("Tolerated senders"));
}

TEST_F(Tolerate, FieldAndListAreInATypewriterFont) {
    Open({QStringLiteral("a@x.org")});
    const QString family = QStringLiteral("Courier New");
    EXPECT_EQ(Edit()->font().family(), family);
    EXPECT_EQ(List()->font().family(), family);
    EXPECT_NE(Button("btnAdd")->font().family(), family);
}

TEST_F(Tolerate, TheDomainIsAskedForWithAQuestionMark) {
    Open({QStringLiteral("a@example.com")});
    Type(QStringLiteral("@example.com"));
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QTimer::singleShot(0, dialog.get(), [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        icon = box->icon();
        buttons = box->standardButtons();
        box->button(QMessageBox::No)->click();
    });
    Button("btnAdd")->click();
    EXPECT_EQ(icon, QMessageBox::Question);
    EXPECT_EQ(buttons, QMessageBox::Yes | QMessageBox::No);
}

TEST_F(Tolerate, ValidatesWhatIsTyped) {
    Open({});
    EXPECT_TRUE(Button("btnOK")->isDefault());
    EXPECT_TRUE(Status().isEmpty());
    for (const char* text : {"@", "@ab", "a@b", "*@x.org"}) {
        Type(QLatin1String(text));
        EXPECT_FALSE(Button("btnAdd")->isEnabled());
        EXPECT_EQ(Status(), invalid);
    }
    Type(QStringLiteral("@a.b"));
    EXPECT_TRUE(Button("btnAdd")->isEnabled());
    EXPECT_TRUE(Button("btnAdd")->isDefault());
    EXPECT_TRUE(Status().isEmpty());
}

TEST_F(Tolerate, EnterAddsInLowerCaseThenAnotherIsOk) {
    Open({});
    Type(QStringLiteral("John.Doe@XY"));
    QTest::keyClick(Edit(), Qt::Key_Return);
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("john.doe@xy")}));
    EXPECT_TRUE(Button("btnOK")->hasFocus());
    EXPECT_TRUE(LoadWhitelist(store).isEmpty());
    QTest::keyClick(Button("btnOK"), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("john.doe@xy")}));
    EXPECT_EQ(state.ToleranceResult, QStringLiteral("OK"));
}

TEST_F(Tolerate, ADomainAsksOnceBeforeItReplacesItsAddresses) {
    const QStringList before{QStringLiteral("a@example.com"), QStringLiteral("b@example.com")};
    Open(before);
    Type(QStringLiteral("@example.com"));
    Answer(QMessageBox::No);
    Button("btnAdd")->click();
    EXPECT_EQ(Listed(), before);
    EXPECT_TRUE(defaultIsNo);
    EXPECT_EQ(title, QStringLiteral("Tolerate entire domain"));
    EXPECT_TRUE(question.contains(QStringLiteral("\n\n@EXAMPLE.COM\n\n")));
    Answer(QMessageBox::Yes);
    Button("btnAdd")->click();
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("@example.com")}));
    EXPECT_EQ(questions, 2);
    Type(QStringLiteral("c@example.com"));
    Button("btnAdd")->click();
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("c@example.com")}));
}

TEST_F(Tolerate, AListedAddressIsSelectedAndNotAddedAgain) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    Type(QStringLiteral("B@x.org"));
    Button("btnAdd")->click();
    EXPECT_EQ(List()->count(), 2);
    EXPECT_EQ(List()->currentRow(), 1);
    EXPECT_TRUE(Button("btnRemove")->isEnabled());
}

TEST_F(Tolerate, AClickedEntryCanBeRemoved) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    EXPECT_FALSE(Button("btnRemove")->isEnabled());
    EXPECT_TRUE(Button("btnAll")->isEnabled());
    Type(QStringLiteral("@"));
    ClickEntry(0);
    EXPECT_TRUE(Status().isEmpty());
    EXPECT_EQ(Edit()->text(), QStringLiteral("a@x.org"));
    ASSERT_TRUE(Button("btnRemove")->isEnabled());
    Button("btnRemove")->click();
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("b@x.org")}));
    EXPECT_FALSE(Button("btnRemove")->isEnabled());
    EXPECT_TRUE(Edit()->hasFocus());
    QTest::keyClick(Edit(), Qt::Key_Down);
    EXPECT_EQ(Edit()->text(), QStringLiteral("b@x.org"));
}

TEST_F(Tolerate, RemoveTakesTheEntryOnWhichADragEnds) {
    const QStringList entries{QStringLiteral("a@x.org"), QStringLiteral("b@x.org"), QStringLiteral("c@x.org")};
    Open(entries);
    Press(0);
    for (const int row : {0, 1, 2, 1}) {
        DragOver(row);
        ExpectOneEntryInForce();
    }
    Release(1);
    ExpectOneEntryInForce();
    EXPECT_EQ(Edit()->text(), entries[1]);
    Button("btnRemove")->click();
    EXPECT_EQ(Listed(), QStringList({entries[0], entries[2]}));
}

TEST_F(Tolerate, AReleaseOnAnotherEntryLeavesOneInForce) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    Press(0);
    Release(1);
    ExpectOneEntryInForce();
    const QString shown = Edit()->text();
    Button("btnRemove")->click();
    EXPECT_EQ(List()->count(), 1);
    EXPECT_FALSE(Listed().contains(shown));
}

TEST_F(Tolerate, AClickBelowTheLastEntryKeepsWhatIsPicked) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    ClickEntry(1);
    const QPoint below(5, List()->viewport()->height() - 2);
    ASSERT_EQ(List()->itemAt(below), nullptr);
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, below);
    ExpectOneEntryInForce();
    EXPECT_EQ(Edit()->text(), QStringLiteral("b@x.org"));
}

TEST_F(Tolerate, AClickWithAKeyHeldPicksAsAnyOther) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    for (const Qt::KeyboardModifiers key : {Qt::ControlModifier, Qt::ShiftModifier}) {
        ClickEntry(1);
        ClickEntry(1, key);
        ExpectOneEntryInForce();
        ClickEntry(0, key);
        ExpectOneEntryInForce();
        EXPECT_EQ(Edit()->text(), QStringLiteral("a@x.org"));
    }
}

TEST_F(Tolerate, RemoveKeepsTheListWhereItIs) {
    Open(Many(200));
    List()->scrollToItem(List()->item(100), QAbstractItemView::PositionAtTop);
    const int position = List()->verticalScrollBar()->value();
    ASSERT_GT(position, 0);
    ClickEntry(102);
    Button("btnRemove")->click();
    EXPECT_EQ(List()->count(), 199);
    EXPECT_EQ(List()->verticalScrollBar()->value(), position);
    EXPECT_EQ(List()->itemAt(QPoint(5, 5)), List()->item(100));
    EXPECT_TRUE(List()->selectedItems().isEmpty());
}

TEST_F(Tolerate, RemoveAtTheEndKeepsTheEndInView) {
    Open(Many(200));
    List()->scrollToBottom();
    ClickEntry(199);
    Button("btnRemove")->click();
    EXPECT_TRUE(IsInView(198));
}

TEST_F(Tolerate, AnAddedEntryComesIntoView) {
    Open(Many(200));
    Type(QStringLiteral("new@x.org"));
    Button("btnAdd")->click();
    ASSERT_EQ(List()->count(), 201);
    EXPECT_TRUE(IsInView(200));
}

TEST_F(Tolerate, RemoveAllAsksNothingAndCancelKeepsTheStoredList) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")});
    state.ToleranceResult = QStringLiteral("OK");
    Button("btnAll")->click();
    EXPECT_EQ(List()->count(), 0);
    EXPECT_FALSE(Button("btnAll")->isEnabled());
    Button("btnCancel")->click();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(LoadWhitelist(store).size(), 2);
    EXPECT_TRUE(state.ToleranceResult.isEmpty());
}

TEST_F(Tolerate, EscapeIsCancelButTheFrameTellsNothing) {
    Open({});
    state.ToleranceResult = QStringLiteral("OK");
    dialog->close();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.ToleranceResult, QStringLiteral("OK"));
    dialog->show();
    QTest::keyClick(Edit(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(state.ToleranceResult.isEmpty());
}

TEST_F(Tolerate, InTolerateModeTheListIsLocked) {
    Open({QStringLiteral("a@x.org")}, ToleranceWord::tolerate);
    dialog->SetSender(QStringLiteral("new@x.org"));
    dialog->SetStatus(QStringLiteral("From <b>me</b>"));
    QTest::keyClicks(Edit(), QStringLiteral("zzz"));
    ClickEntry(0);
    QTest::keyClick(Edit(), Qt::Key_Down);
    EXPECT_EQ(Edit()->text(), QStringLiteral("new@x.org"));
    EXPECT_EQ(Status(), QStringLiteral("From <b>me</b>"));
    EXPECT_TRUE(Edit()->isEnabled());
    EXPECT_FALSE(Button("btnRemove")->isEnabled());
    EXPECT_FALSE(Button("btnAll")->isEnabled());
    EXPECT_TRUE(Button("btnAdd")->isEnabled());
    Button("btnAdd")->click();
    EXPECT_EQ(List()->count(), 2);
    EXPECT_FALSE(Button("btnAll")->isEnabled());
}

TEST_F(Tolerate, InTolerateModeAListedSenderIsSelectedByAdd) {
    Open({QStringLiteral("a@x.org"), QStringLiteral("b@x.org")}, ToleranceWord::tolerate);
    dialog->SetSender(QStringLiteral("B@x.org"));
    Button("btnAdd")->click();
    EXPECT_EQ(List()->count(), 2);
    ASSERT_EQ(List()->selectedItems().size(), 1);
    EXPECT_EQ(List()->selectedItems().first()->text(), QStringLiteral("b@x.org"));
    EXPECT_EQ(List()->currentRow(), 1);
    EXPECT_FALSE(Button("btnRemove")->isEnabled());
    Press(0);
    DragOver(0);
    Release(0);
    EXPECT_EQ(List()->currentRow(), 1) << "the list is locked";
    EXPECT_EQ(List()->selectedItems().first()->text(), QStringLiteral("b@x.org"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("b@x.org"));
}

TEST_F(Tolerate, InTolerateModeASenderWithoutAnAtLeavesAddDisabled) {
    Open({}, ToleranceWord::tolerate);
    dialog->SetSender(QStringLiteral("postmaster"));
    EXPECT_FALSE(Button("btnAdd")->isEnabled());
    EXPECT_EQ(Status(), invalid);
    Button("btnOK")->setFocus();
    Edit()->setFocus();
    EXPECT_FALSE(Button("btnAdd")->isEnabled());
}

TEST_F(Tolerate, AListThatCannotBeSavedKeepsTheDialogOpen) {
    Open({QStringLiteral("a@x.org")});
    store.SetUnwritable();
    Answer(QMessageBox::Ok);
    Button("btnOK")->click();
    EXPECT_EQ(questions, 1);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(state.ToleranceResult.isEmpty());
}

TEST_F(Tolerate, EntriesThatTheStoreDoesNotKeepAreNamedAndOkClosesTheDialog) {
    store.SetIgnoresCase();
    Open({QStringLiteral("Joe@x.org"), QStringLiteral("ann@x.org")});
    Type(QStringLiteral("joe@x.org"));
    Button("btnAdd")->click();
    EXPECT_EQ(List()->count(), 3);
    Answer(QMessageBox::Ok);
    Button("btnOK")->click();
    EXPECT_EQ(questions, 1);
    EXPECT_TRUE(question.endsWith(QStringLiteral("\n\nJoe@x.org"))) << question.toStdString();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.ToleranceResult, QStringLiteral("OK"));
    EXPECT_TRUE(LoadWhitelist(store).contains(QStringLiteral("joe@x.org")));
    EXPECT_EQ(LoadWhitelist(store).size(), 2);
}

TEST_F(Tolerate, OfManyEntriesThatTheStoreDoesNotKeepSomeAreNamedAndTheOthersCounted) {
    Open({});
    QStringList doubled = Many(12);
    for (const QString& entry : Many(12)) {
        doubled += entry.toUpper();
    }
    EXPECT_TRUE(SaveWhitelist(store, doubled).isEmpty());
    dialog = std::make_unique<frmTolerate>(store, state, nullptr);
    store.SetIgnoresCase();
    Answer(QMessageBox::Ok);
    Button("btnOK")->click();
    EXPECT_TRUE(question.contains(QStringLiteral("\nUSER009@X.ORG\n"))) << question.toStdString();
    EXPECT_FALSE(question.contains(QStringLiteral("USER010@X.ORG")));
    EXPECT_TRUE(question.endsWith(QStringLiteral("and 2 more")));
    EXPECT_EQ(LoadWhitelist(store), Many(12));
}

TEST_F(Tolerate, TheControlsKeepTheirAnchors) {
    Open({});
    const QRect add = Button("btnAdd")->geometry();
    const QRect ok = Button("btnOK")->geometry();
    const QSize list = List()->size();
    dialog->resize(dialog->width() + 100, dialog->height() + 80);
    QCoreApplication::processEvents();
    EXPECT_EQ(Button("btnAdd")->geometry(), add.translated(100, 0));
    EXPECT_EQ(Button("btnOK")->geometry(), ok.translated(100, 80));
    EXPECT_EQ(List()->size(), list + QSize(100, 80));
}
