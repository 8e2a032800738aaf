#include "dialogs/frmFind.h"

#include "messages/MessageRow.h"
#include "tests/support/MemorySettingsStore.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

class Find : public testing::Test {
protected:
    Find() {
        state.RefreshInterval = 60;
        timer.SetInterval();
    }

    bool TimerRuns() const { return timer.findChild<QTimer*>()->isActive(); }

    void Open(const QStringList& texts = {}) {
        for (int index = 0; index < texts.size(); ++index) {
            store.SetValue(QStringLiteral("Find"), QString::number(index), texts[index]);
        }
        dialog = std::make_unique<frmFind>(store, state, timer, nullptr);
        Show();
    }

    void Show() {
        dialog->Prepare();
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    QPushButton* Button(const char* name) { return dialog->findChild<QPushButton*>(QLatin1String(name)); }
    QRadioButton* Field(int column) {
        return dialog->findChild<QRadioButton*>(QStringLiteral("optField%1").arg(column));
    }
    QComboBox* Combo() { return dialog->findChild<QComboBox*>(QStringLiteral("cboFind")); }
    QLineEdit* Edit() { return Combo()->lineEdit(); }

    void Type(const QString& text) {
        Edit()->clear();
        QTest::keyClicks(Edit(), text);
    }

    QStringList Listed() {
        QStringList texts;
        for (int index = 0; index < Combo()->count(); ++index) {
            texts.append(Combo()->itemText(index));
        }
        return texts;
    }

    /// The columns whose buttons are pressed.
    std::vector<int> Chosen() {
        std::vector<int> columns;
        for (const int column : {0, 2, 3, 4}) {
            if (Field(column)->isChecked()) {
                columns.push_back(column);
            }
        }
        return columns;
    }

    MemorySettingsStore store;
    AppState state;
    RefreshTimer timer{state};
    std::unique_ptr<frmFind> dialog;
};

const QStringList threeTexts{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")};

} // namespace

TEST_F(Find, HasItsTextsToolTipsAndTabOrder) {
    Open();
    EXPECT_EQ(dialog->findChild<QGroupBox*>()->title(), QStringLiteral("In &Header Field"));
    EXPECT_EQ(Field(ColumnDate)->text(), QStringLiteral("&Date"));
    EXPECT_EQ(Field(ColumnFrom)->text(), QStringLiteral("&From"));
    EXPECT_EQ(Field(ColumnSubject)->text(), QStringLiteral("&Subject"));
    EXPECT_EQ(Field(ColumnSize)->text(), QStringLiteral("Si&ze"));
    EXPECT_EQ(Combo()->toolTip(), QStringLiteral("Text to find in message header"));
    EXPECT_EQ(Button("btnOK")->text(), QStringLiteral("Find"));
    EXPECT_EQ(Button("btnCancel")->text(), QStringLiteral("Cancel"));
    EXPECT_EQ(Button("btnClear")->text(), QStringLiteral("C&lear"));
    EXPECT_EQ(Button("btnClear")->toolTip(), QStringLiteral("Discard find history"));
    EXPECT_TRUE(Edit()->hasFocus());
    Type(QStringLiteral("x"));
    QStringList order;
    for (int step = 0; step < 4; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        order.append(QApplication::focusWidget()->objectName());
    }
    EXPECT_EQ(order, QStringList({QStringLiteral("optField0"), QStringLiteral("btnOK"), QStringLiteral("btnCancel"),
                                  QStringLiteral("btnClear")}));
}

TEST_F(Find, TheCaptionTellsWhetherAllAreSearchedFor) {
    Open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Find"));
    state.FindAll = -1;
    Show();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Find All"));
}

TEST_F(Find, TheTimerRestsOnlyWhileTheDialogIsActive) {
    Open();
    EXPECT_FALSE(TimerRuns());
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_TRUE(TimerRuns());
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    EXPECT_FALSE(TimerRuns());
    dialog.reset();
    EXPECT_TRUE(TimerRuns());
}

TEST_F(Find, TheHiddenDialogHoldsNoTimer) {
    Open();
    Type(QStringLiteral("x"));
    Button("btnOK")->click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(TimerRuns());
    Show();
    EXPECT_FALSE(TimerRuns());
    EXPECT_EQ(dialog->Text(), QStringLiteral("x"));
    EXPECT_EQ(Edit()->selectedText(), QStringLiteral("x"));
}

TEST_F(Find, OkNeedsATextThatIsNotBlank) {
    Open(threeTexts);
    EXPECT_TRUE(Edit()->text().isEmpty());
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    Type(QStringLiteral("  "));
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    Type(QStringLiteral(" x"));
    EXPECT_TRUE(Button("btnOK")->isEnabled());
    Edit()->clear();
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    QTest::keyClick(Edit(), Qt::Key_Down);
    EXPECT_EQ(Edit()->text(), QStringLiteral("one"));
    EXPECT_TRUE(Button("btnOK")->isEnabled());
}

TEST_F(Find, TheFocusEnablesOkAnew) {
    Open();
    Type(QStringLiteral("x"));
    Button("btnCancel")->setFocus();
    Button("btnOK")->setEnabled(false);
    Edit()->setFocus();
    EXPECT_TRUE(Button("btnOK")->isEnabled());
}

TEST_F(Find, EnterAcceptsTheTrimmedTextAndAppendsIt) {
    Open({QStringLiteral("one")});
    Type(QStringLiteral("  two  "));
    QTest::keyClick(Edit(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int{QDialog::Accepted});
    EXPECT_EQ(dialog->Text(), QStringLiteral("two"));
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(dialog->History().Texts(), Listed());
}

TEST_F(Find, EnterWithoutATextDoesNothing) {
    Open();
    QTest::keyClick(Edit(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(Find, ATextThatDiffersInCaseOnlyIsNotAddedAgain) {
    Open({QStringLiteral("Invoice")});
    Type(QStringLiteral("INVOICE"));
    Button("btnOK")->click();
    EXPECT_EQ(dialog->Text(), QStringLiteral("INVOICE"));
    EXPECT_EQ(Listed(), QStringList{QStringLiteral("Invoice")});
    EXPECT_EQ(dialog->History().Texts(), Listed());
}

TEST_F(Find, TypingIsNotCompletedFromTheHistory) {
    Open({QStringLiteral("invoice")});
    Type(QStringLiteral("inv"));
    EXPECT_EQ(dialog->Text(), QStringLiteral("inv"));
}

TEST_F(Find, ADoubleClickAcceptsButLeavesTheHistory) {
    Open({QStringLiteral("one")});
    Type(QStringLiteral(" two "));
    QTest::mouseDClick(Edit(), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int{QDialog::Accepted});
    EXPECT_EQ(dialog->Text(), QStringLiteral("two"));
    EXPECT_EQ(Listed(), QStringList{QStringLiteral("one")});
    EXPECT_EQ(dialog->History().Texts(), Listed());
}

TEST_F(Find, ADoubleClickWithoutATextCancels) {
    Open();
    QTest::mouseDClick(Edit(), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int{QDialog::Rejected});
}

TEST_F(Find, EscapeAndCancelReject) {
    Open();
    Type(QStringLiteral("x"));
    QTest::keyClick(Edit(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int{QDialog::Rejected});
    Show();
    Button("btnCancel")->click();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int{QDialog::Rejected});
    EXPECT_TRUE(dialog->History().Texts().isEmpty());
}

TEST_F(Find, EnterOnCancelCancels) {
    Open();
    Type(QStringLiteral("x"));
    Button("btnCancel")->setFocus();
    QTest::keyClick(Button("btnCancel"), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), int{QDialog::Rejected});
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(Find, AFieldIsTakenOverAtOnceAndKeptByCancel) {
    Open();
    EXPECT_EQ(Chosen(), std::vector<int>{ColumnDate});
    for (const int column : {2, 3, 4, 0, 3}) {
        QTest::mouseClick(Field(column), Qt::LeftButton, {}, QPoint(8, Field(column)->height() / 2));
        EXPECT_EQ(state.HeaderField, column);
        EXPECT_EQ(Chosen(), std::vector<int>{column});
    }
    Button("btnCancel")->click();
    EXPECT_EQ(state.HeaderField, 3);
}

TEST_F(Find, MnemonicsChooseTheField) {
    Open();
    QTest::keyClick(Edit(), Qt::Key_Z, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return state.HeaderField == ColumnSize; }));
    QTest::keyClick(dialog.get(), Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return state.HeaderField == ColumnFrom; }));
}

TEST_F(Find, AFieldWithoutAButtonChoosesNone) {
    Open();
    for (const int field : {1, 5, 9, -3, 32'767}) {
        state.HeaderField = static_cast<qint16>(field);
        dialog->hide();
        Show();
        EXPECT_TRUE(Chosen().empty()) << field;
        EXPECT_EQ(state.HeaderField, field);
    }
    Field(ColumnFrom)->click();
    EXPECT_EQ(state.HeaderField, ColumnFrom);
    EXPECT_EQ(Chosen(), std::vector<int>{ColumnFrom});
}

TEST_F(Find, ClearRemovesThePickedTextOnly) {
    Open(threeTexts);
    QTest::keyClick(Edit(), Qt::Key_Down);
    QTest::keyClick(Edit(), Qt::Key_Down);
    ASSERT_EQ(Edit()->text(), QStringLiteral("two"));
    Button("btnClear")->click();
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("one"), QStringLiteral("three")}));
    EXPECT_EQ(dialog->History().Texts(), Listed());
    EXPECT_TRUE(Edit()->hasFocus());
    EXPECT_TRUE(Edit()->text().isEmpty());
    EXPECT_FALSE(Button("btnOK")->isEnabled());
}

TEST_F(Find, ClearRemovesAllWhenNoneIsPicked) {
    Open(threeTexts);
    EXPECT_TRUE(Button("btnClear")->isEnabled());
    Button("btnClear")->setFocus();
    Button("btnClear")->click();
    EXPECT_TRUE(Listed().isEmpty());
    EXPECT_TRUE(dialog->History().Texts().isEmpty());
    EXPECT_TRUE(Edit()->hasFocus());
    EXPECT_TRUE(Button("btnClear")->isEnabled());
    Button("btnClear")->click();
    EXPECT_TRUE(Listed().isEmpty());
}

TEST_F(Find, APickedTextThatWasChangedIsNoLongerPicked) {
    Open(threeTexts);
    QTest::keyClick(Edit(), Qt::Key_Down);
    QTest::keyClick(Edit(), Qt::Key_End);
    QTest::keyClick(Edit(), Qt::Key_X);
    QTest::keyClick(Edit(), Qt::Key_Backspace);
    ASSERT_EQ(Edit()->text(), QStringLiteral("one"));
    Button("btnClear")->click();
    EXPECT_TRUE(Listed().isEmpty());
}

TEST_F(Find, TypingTheTextOfAnEntryDoesNotPickIt) {
    Open(threeTexts);
    Type(QStringLiteral("two"));
    Button("btnClear")->setFocus();
    Button("btnClear")->click();
    EXPECT_TRUE(Listed().isEmpty());
}

TEST_F(Find, ATextThatOkAddedIsNotPicked) {
    Open();
    for (const char* text : {"one", "two"}) {
        Type(QLatin1String(text));
        Button("btnOK")->click();
        Show();
    }
    EXPECT_EQ(Listed(), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    Button("btnClear")->click();
    EXPECT_TRUE(Listed().isEmpty());
}

TEST_F(Find, AGapEndsTheListedHistory) {
    store.SetValue(QStringLiteral("Find"), QStringLiteral("0"), QStringLiteral("first"));
    store.SetValue(QStringLiteral("Find"), QStringLiteral("2"), QStringLiteral("third"));
    dialog = std::make_unique<frmFind>(store, state, timer, nullptr);
    Show();
    EXPECT_EQ(Listed(), QStringList{QStringLiteral("first")});
}

TEST_F(Find, ATextOf10000CharactersNeitherWidensTheDialogNorIsCut) {
    Open();
    const int width = dialog->width();
    const QString text(10'000, QLatin1Char('w'));
    Edit()->setText(text);
    Button("btnOK")->click();
    EXPECT_EQ(dialog->Text(), text);
    Open({text, QStringLiteral("<b>bold</b>")});
    EXPECT_EQ(dialog->width(), width);
    EXPECT_EQ(Listed(), QStringList({text, QStringLiteral("<b>bold</b>")}));
}
