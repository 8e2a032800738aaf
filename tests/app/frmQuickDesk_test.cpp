#include "tests/messages/ListRows.h"
#include "tests/support/AccessibleNames.h"
#include "tests/support/CallGate.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/RealFolderWindow.h"

#include <QAccessible>
#include <QLineEdit>
#include <QMenu>

namespace quellbox {
namespace {

/// The list holds the rows a.eml, b.eml and c.eml, in this order, of which the first is selected.
class QuickDeskTest : public MainWindowTest {
protected:
    void SetUp() override {
        AddThree();
        OpenRefreshed();
    }

    QLineEdit* Field() const { return Find<QLineEdit>("txtQuick"); }
    std::string Label() const { return Find<QLabel>("lblQuick")->text().toStdString(); }
    bool FieldIsThere() const { return Field()->isVisible(); }

    void PressQuickKey() const {
        QTest::keyClick(window_->focusWidget(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        Settle();
    }

    /// Opens the field with its key and types a text into what has the focus then.
    void Type(const char* text) const {
        if (!FieldIsThere()) {
            PressQuickKey();
        } else if (!Field()->hasFocus()) {
            QTest::mouseClick(Field(), Qt::LeftButton);
        }
        ASSERT_EQ(window_->focusWidget(), Field());
        QTest::keyClicks(window_->focusWidget(), QLatin1String(text));
        Settle();
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(window_->focusWidget(), key, modifiers);
        Settle();
    }

    QStringList Files(const char* folder) const {
        QStringList names;
        for (const QString& path : files_.Paths()) {
            names += path.startsWith(QLatin1String(folder)) ? QStringList{path.section(QLatin1Char('/'), -1)}
                                                            : QStringList{};
        }
        return names;
    }
};

} // namespace

TEST_F(QuickDeskTest, IsAwayUntilItIsAskedFor) {
    EXPECT_FALSE(FieldIsThere());
    EXPECT_FALSE(Action("mnuEditQuick")->isChecked());
    const QRect list(List()->mapTo(window_.get(), QPoint()), List()->size());
    const QRect pane(Splitter("splWhole")->mapTo(window_.get(), QPoint()), Splitter("splWhole")->widget(0)->size());
    EXPECT_EQ(list, pane) << "nothing is above or beside the list";
    PressQuickKey();
    EXPECT_TRUE(FieldIsThere());
    EXPECT_TRUE(Action("mnuEditQuick")->isChecked());
    EXPECT_EQ(window_->focusWidget(), Field());
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_EQ(Label(), "3 of 3");
    PressQuickKey();
    EXPECT_FALSE(FieldIsThere());
    EXPECT_FALSE(Action("mnuEditQuick")->isChecked());
    EXPECT_EQ(window_->focusWidget(), List());
    EXPECT_EQ(QRect(List()->mapTo(window_.get(), QPoint()), List()->size()), list);
}

TEST_F(QuickDeskTest, TypingLeavesTheRowsWithAllWords) {
    Type("ABOUT -b");
    EXPECT_EQ(Keys(), "b.eml");
    EXPECT_EQ(Label(), "1 of 3");
    EXPECT_EQ(Panel("count"), "3 messages");
    Press(Qt::Key_Backspace);
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    Type("nothing");
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(Label(), "0 of 3");
    EXPECT_TRUE(Action("mnuEdit")->isEnabled()) << "it has what shows all again";
    EXPECT_FALSE(Action("mnuFileExport")->isEnabled());
    EXPECT_EQ(Panel("count"), "3 messages");
}

TEST_F(QuickDeskTest, EscapeInTheFieldShowsAllAgain) {
    Type("-b.");
    Press(Qt::Key_Escape);
    EXPECT_FALSE(FieldIsThere());
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_EQ(window_->focusWidget(), List());
    EXPECT_TRUE(Field()->text().isEmpty());
    EXPECT_FALSE(window_->Messages().IsNarrowed());
}

TEST_F(QuickDeskTest, EscapeInTheListClosesTheFieldFirstAndThenDeselects) {
    ClickRow(1);
    Type("-b.");
    Press(Qt::Key_Down);
    ASSERT_EQ(window_->focusWidget(), List());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(FieldIsThere());
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_NE(Find<RawPane>("rtfRaw")->toPlainText(), QString());
    Press(Qt::Key_Escape);
    EXPECT_EQ(SelectedKeys(), "");
}

TEST_F(QuickDeskTest, WhatStaysInSightStaysSelected) {
    ClickRow(1);
    const QString contents = Find<RawPane>("rtfRaw")->toPlainText();
    Type("-b.");
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(List()->currentIndex().row(), 0);
    EXPECT_EQ(Find<RawPane>("rtfRaw")->toPlainText(), contents);
    Press(Qt::Key_Escape);
    EXPECT_EQ(SelectedKeys(), "b.eml");
    EXPECT_EQ(List()->currentIndex().row(), 1);
}

TEST_F(QuickDeskTest, WhatGoesOutOfSightIsSelectedNoMore) {
    ClickRow(0);
    ClickRow(2, Qt::ControlModifier);
    ASSERT_EQ(Panel("info"), "2 selected");
    Type("-c.");
    EXPECT_EQ(SelectedKeys(), "c.eml");
    EXPECT_EQ(Panel("info"), "c.eml");
    EXPECT_EQ(window_->State().SelectedCount, 1);
    Type("x");
    EXPECT_EQ(window_->State().SelectedCount, 0);
    EXPECT_FALSE(Action("mnuActionsDelete")->isEnabled());
    EXPECT_EQ(Find<RawPane>("rtfRaw")->toPlainText(), QString());
    Press(Qt::Key_Escape);
    EXPECT_EQ(SelectedKeys(), "");
}

TEST_F(QuickDeskTest, WhatStaysSelectedWithoutTheCurrentRowIsSeenAndDealtWith) {
    ClickRow(2);
    ClickRow(0, Qt::ControlModifier);
    Type("-c.");
    EXPECT_EQ(SelectedKeys(), "c.eml");
    EXPECT_EQ(List()->currentIndex().row(), 0);
    Press(Qt::Key_Return);
    Q_EMIT Find<QMenu>("mnuActions")->aboutToShow();
    EXPECT_TRUE(Action("mnuActionsDelete")->isEnabled());
    Q_EMIT Find<QMenu>("mnuActions")->aboutToHide();
    Press(Qt::Key_Delete);
    EXPECT_EQ(Files("/archive/"), QStringList({QStringLiteral("a.eml"), QStringLiteral("b.eml")}));
}

TEST_F(QuickDeskTest, GoingToTheListOpensNoMenuWhateverWasClickedLast) {
    ClickRow(0);
    QTest::mouseClick(List()->viewport(), Qt::RightButton, {},
                      List()->visualRect(window_->Messages().index(0, 0)).center());
    Find<QMenu>("mnuMessage")->close();
    Type("-c.");
    Press(Qt::Key_Return);
    EXPECT_FALSE(Find<QMenu>("mnuMessage")->isVisible());
    EXPECT_EQ(SelectedKeys(), "c.eml");
}

TEST_F(QuickDeskTest, EscapeElsewhereClosesTheFieldToo) {
    Type("-b.");
    Find<RawPane>("rtfRaw")->setFocus();
    Press(Qt::Key_Escape);
    EXPECT_FALSE(FieldIsThere());
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
}

TEST_F(QuickDeskTest, AnEmptyListLeavesTheMenuThatClosesTheField) {
    PressQuickKey();
    Action("mnuEditSelectAll")->trigger();
    Action("mnuActionsDelete")->trigger();
    Settle();
    ASSERT_EQ(Keys(), "");
    EXPECT_TRUE(Action("mnuEdit")->isEnabled());
    Action("mnuEditQuick")->trigger();
    EXPECT_FALSE(Action("mnuEdit")->isEnabled());
}

TEST_F(QuickDeskTest, ActionsTouchOnlyWhatIsInSight) {
    Type("-b.");
    Action("mnuEditSelectAll")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "b.eml");
    Press(Qt::Key_Return);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Files("/archive/"), QStringList({QStringLiteral("a.eml"), QStringLiteral("c.eml")}));
    EXPECT_EQ(Label(), "0 of 2");
    EXPECT_EQ(Panel("count"), "2 messages");
    Action("mnuEditQuick")->trigger();
    Settle();
    EXPECT_EQ(Keys(), "a.eml c.eml");
    Type("-c.");
    Action("mnuEditSelectAll")->trigger();
    Action("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Files("/pickup/"), QStringList(QStringLiteral("c.eml")));
    EXPECT_EQ(Files("/archive/"), QStringList(QStringLiteral("a.eml")));
}

TEST_F(QuickDeskTest, TheNextMessageAfterAnActionIsOneInSight) {
    AddMessage("b2.eml", 0);
    window_->mnuAcRefresh_Click();
    Settle();
    Type("-b");
    ASSERT_EQ(Keys(), "b.eml b2.eml");
    ClickRow(0);
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(SelectedKeys(), "b2.eml");
    EXPECT_EQ(Keys(), "b2.eml");
}

TEST_F(QuickDeskTest, DelAndTheLikeAreForTheTextWhileItIsTyped) {
    ClickRow(0);
    Type("-a.x");
    Press(Qt::Key_Left);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Field()->text(), QStringLiteral("-a."));
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Field()->selectedText(), QStringLiteral("-a."));
    Press(Qt::Key_Delete);
    EXPECT_EQ(Files("/archive/").size(), 3);
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
}

TEST_F(QuickDeskTest, DownAndEnterGoToTheListAndItsFirstRow) {
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return}) {
        Action("mnuEditSelectNone")->trigger();
        Type("-b.");
        Press(key);
        EXPECT_EQ(window_->focusWidget(), List());
        EXPECT_EQ(SelectedKeys(), "b.eml");
        EXPECT_EQ(Find<RawPane>("rtfRaw")->FileName(), QStringLiteral("/archive/b.eml"));
        Press(Qt::Key_Escape);
    }
}

TEST_F(QuickDeskTest, ARefreshKeepsTheWordsAndTheFocus) {
    Type("-b");
    AddMessage("b2.eml", 10);
    AddMessage("d.eml", 11);
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Keys(), "b2.eml b.eml");
    EXPECT_EQ(Label(), "2 of 5");
    EXPECT_EQ(Panel("count"), "5 messages");
    EXPECT_EQ(window_->focusWidget(), Field());
    AddMessage("b3.eml", 12);
    window_->RefreshArchive(true);
    Settle();
    EXPECT_EQ(Keys(), "b3.eml b2.eml b.eml");
    AddMessage("e.eml", 13);
    window_->RefreshArchive(true);
    Settle();
    EXPECT_EQ(Label(), "3 of 7");
    Press(Qt::Key_Escape);
    EXPECT_EQ(window_->Messages().Count(), 7);
}

TEST_F(QuickDeskTest, ATickWithNothingInSightDoesNotListAnew) {
    Type("nothing");
    window_->State().AutoRefresh = 1;
    window_->State().LastRefreshDay = static_cast<qint16>(noon_.date().day());
    files_.Remove(QStringLiteral("/archive/a.eml"));
    Tick();
    EXPECT_EQ(window_->Messages().TotalCount(), 3) << "only an empty list is made anew by a tick";
}

TEST_F(QuickDeskTest, SortingKeepsTheWords) {
    Type("eml -");
    ClickRow(1);
    Type("b");
    ClickHeader(ColumnSubject);
    EXPECT_EQ(Keys(), "b.eml");
    EXPECT_EQ(SelectedKeys(), "b.eml");
    QTest::keyClick(Field(), Qt::Key_Backspace);
    const std::string sorted = Keys();
    ClickHeader(ColumnSubject);
    EXPECT_EQ(Keys(), sorted == "a.eml b.eml c.eml" ? "c.eml b.eml a.eml" : "a.eml b.eml c.eml");
    EXPECT_EQ(SelectedKeys(), "b.eml");
}

TEST_F(QuickDeskTest, FindLooksAtWhatIsInSight) {
    Action("mnuEditSelectNone")->trigger();
    window_->State().HeaderField = ColumnSubject;
    window_->State().FindText = QStringLiteral("about");
    window_->State().FindPosition = 2;
    Type("-b.");
    Press(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(SelectedKeys(), "b.eml");
    window_->State().FindText = QStringLiteral("about a");
    Press(Qt::Key_F3);
    EXPECT_EQ(Panel("info"), "'about a' not found in header field SUBJECT");
}

TEST_F(QuickDeskTest, MarksOnlyWhatIsInSight) {
    window_->Messages().MarkRows(0, 2, true);
    Type("-b.");
    Action("mnuEditMarkAllRead")->trigger();
    Press(Qt::Key_Escape);
    EXPECT_TRUE(IsUnread(0));
    EXPECT_FALSE(IsUnread(1));
    EXPECT_TRUE(IsUnread(2));
}

TEST_F(QuickDeskTest, WhatIsTypedDuringAJobNarrowsTheListAfterIt) {
    ClickRow(0);
    Type("-");
    CallGate gate;
    pool_.SetMost(1);
    pool_.Start(WorkPool::Kind::Single, [&gate] { gate.Pass(0); });
    Action("mnuActionsDelete")->trigger();
    QTest::keyClicks(Field(), QStringLiteral("b"));
    EXPECT_EQ(window_->Messages().Count(), 3) << "the rows that the job works on stay";
    gate.LetAll();
    Settle();
    EXPECT_EQ(Keys(), "b.eml");
    EXPECT_EQ(Files("/archive/"), QStringList({QStringLiteral("b.eml"), QStringLiteral("c.eml")}));
}

TEST_F(QuickDeskTest, ARowThatBulkModeFillsInStaysUnderTheMouse) {
    files_.Add(QStringLiteral("/archive/zz.eml"), "To: to\nFrom: from\nSubject: another\n\n",
               noon_.toMSecsSinceEpoch() * 1'000'000);
    Type("-b.");
    Action("mnuViewBulk")->trigger();
    Settle();
    EXPECT_EQ(Keys(), "") << "bulk mode knows no senders";
    Field()->clear();
    Type("zz");
    ASSERT_EQ(Keys(), "zz.eml");
    ClickRow(0);
    EXPECT_EQ(Cell(0, ColumnSubject), "another");
    EXPECT_EQ(SelectedKeys(), "zz.eml");
    Type(" "); // the same words
    EXPECT_EQ(Keys(), "zz.eml");
    Type("e");
    EXPECT_EQ(Keys(), "");
}

TEST_F(QuickDeskTest, TellsAssistiveToolsWhatItIsAndHowManyAreShown) {
    PressQuickKey();
    EXPECT_EQ(NamelessControls(*window_), "");
    QAccessibleInterface* field = QAccessible::queryAccessibleInterface(Field());
    EXPECT_EQ(field->text(QAccessible::Name), QStringLiteral("Filter by text"));
    Type("-b.");
    EXPECT_EQ(field->text(QAccessible::Description), QStringLiteral("1 of 3"));
    QAccessibleInterface* label = QAccessible::queryAccessibleInterface(Find<QLabel>("lblQuick"));
    EXPECT_EQ(label->text(QAccessible::Name), QStringLiteral("1 of 3"));
}

TEST_F(QuickDeskTest, TabGoesFromTheFieldToTheList) {
    PressQuickKey();
    Press(Qt::Key_Tab);
    EXPECT_EQ(window_->focusWidget(), List());
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window_->focusWidget(), Field());
}

namespace {

class QuickUndoTest : public RealFolderWindowTest {};

} // namespace

TEST_F(QuickUndoTest, WhatIsTakenBackIsListedWhereItMatches) {
    const QString treasure = QStringLiteral("treasure.EML");
    Write(Archive(treasure), "From: a@x.org\r\nTo: b@x.org\r\nSubject: Treasure\r\n\r\ntext\r\n");
    Open(2);
    Command("mnuEditQuick")->trigger();
    auto* field = Find<QLineEdit>("txtQuick");
    QTest::keyClicks(field, QStringLiteral("treas"));
    Settle();
    ASSERT_EQ(Keys(), QStringList(treasure));
    QTest::keyClick(field, Qt::Key_Return);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    ASSERT_TRUE(QFileInfo::exists(Pickup(treasure)));
    ASSERT_TRUE(QTest::qWaitFor([this] { return Command("mnuEditUndo")->isEnabled(); }));
    Command("mnuEditUndo")->trigger();
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->Messages().Count() == 1; }));
    Settle();
    EXPECT_EQ(Keys(), QStringList(treasure));
    EXPECT_EQ(window->Messages().TotalCount(), 3);
}

} // namespace quellbox
