#include "tests/dialogs/OptionsTest.h"

using namespace quellbox;

namespace {

class HistoryOptions : public Options {
protected:
    QLineEdit* Days() const { return Find<QLineEdit>("txtKeepDeletedDays"); }
    QLineEdit* History() const { return Find<QLineEdit>("txtHistoryDays"); }

    /// Types into a box and leaves it.
    void Fill(QLineEdit* box, const QString& text) const {
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClicks(box, text);
        Find<QPushButton>("cmdHelp")->setFocus();
    }

    void Ok() const { Click(Find<QPushButton>("cmdOK")); }
};

} // namespace

TEST_F(HistoryOptions, DeletedMessagesAreNotKeptUnlessTheUserWantsIt) {
    state.HistoryDays = 90;
    Open(5);
    EXPECT_FALSE(Check("chkKeepDeleted")->isChecked());
    EXPECT_FALSE(Days()->isEnabled());
    EXPECT_EQ(Days()->text(), QStringLiteral("30")) << "a proposal";
    EXPECT_EQ(History()->text(), QStringLiteral("90"));
    Ok();
    EXPECT_EQ(state.KeepDeletedDays, 0);
    EXPECT_EQ(state.HistoryDays, 90);
}

TEST_F(HistoryOptions, TheBoxSwitchesTheDaysAtOnce) {
    Open(5);
    QTest::keyClick(Check("chkKeepDeleted"), Qt::Key_Space);
    EXPECT_TRUE(Days()->isEnabled());
    Ok();
    EXPECT_EQ(state.KeepDeletedDays, 30);
    Open(5);
    EXPECT_TRUE(Check("chkKeepDeleted")->isChecked());
    QTest::keyClick(Check("chkKeepDeleted"), Qt::Key_Space);
    EXPECT_FALSE(Days()->isEnabled());
    Ok();
    EXPECT_EQ(state.KeepDeletedDays, 0);
}

TEST_F(HistoryOptions, NumbersBeyondTheBoundsBecomeTheNearest) {
    state.KeepDeletedDays = 7;
    Open(5);
    for (const auto& [text, days, history] : {std::tuple("0", "1", "0"),
                                              {"1", "1", "1"},
                                              {"999", "999", "999"},
                                              {"1000", "999", "1000"},
                                              {"9999", "999", "9999"},
                                              {"10000", "999", "9999"},
                                              {"99999999999", "999", "9999"},
                                              {"", "1", "0"}}) {
        Fill(Days(), QLatin1String(text));
        EXPECT_EQ(Days()->text(), QLatin1String(days)) << text;
        Fill(History(), QLatin1String(text));
        EXPECT_EQ(History()->text(), QLatin1String(history)) << text;
    }
    Fill(Days(), QStringLiteral("12"));
    Fill(History(), QStringLiteral("0"));
    Ok();
    EXPECT_EQ(state.KeepDeletedDays, 12);
    EXPECT_EQ(state.HistoryDays, 0);
}

TEST_F(HistoryOptions, OnlyDigitsCanBeTyped) {
    state.KeepDeletedDays = 7;
    Open(5);
    Days()->setFocus();
    Days()->selectAll();
    QTest::keyClicks(Days(), QStringLiteral("-a1,e .5+x"));
    EXPECT_EQ(Days()->text(), QStringLiteral("15"));
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("\u00e9"));
    QCoreApplication::sendEvent(Days(), &composed);
    EXPECT_EQ(Days()->text(), QStringLiteral("15"));
    composed.setCommitString(QStringLiteral("2"));
    QCoreApplication::sendEvent(Days(), &composed);
    EXPECT_EQ(Days()->text(), QStringLiteral("152"));
    Days()->selectAll();
    Days()->insert(QStringLiteral(" 12 days"));
    Find<QPushButton>("cmdHelp")->setFocus();
    EXPECT_EQ(Days()->text(), QStringLiteral("12")) << "what is pasted is read as a number";
}

TEST_F(HistoryOptions, WhatWasTypedLastCountsAlsoWithTheReturnKey) {
    state.KeepDeletedDays = 7;
    Open(5);
    Days()->setFocus();
    Days()->selectAll();
    QTest::keyClicks(Days(), QStringLiteral("45"));
    Press(Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.KeepDeletedDays, 45);
}

TEST_F(HistoryOptions, StoredNumbersBeyondTheBoundsAreShownWithinThem) {
    state.KeepDeletedDays = 32767;
    state.HistoryDays = -5;
    Open(5);
    EXPECT_EQ(Days()->text(), QStringLiteral("999"));
    EXPECT_EQ(History()->text(), QStringLiteral("0"));
    Click(Find<QPushButton>("cmdCancel"));
    EXPECT_EQ(state.KeepDeletedDays, 32767) << "Cancel takes nothing over";
    EXPECT_EQ(state.HistoryDays, -5);
    state.KeepDeletedDays = -1;
    Open(5);
    EXPECT_FALSE(Check("chkKeepDeleted")->isChecked());
}

TEST_F(HistoryOptions, TheLabelsLeadToTheirBoxes) {
    state.KeepDeletedDays = 7;
    Open(5);
    EXPECT_EQ(Find<QLabel>("lblKeepDeletedDays")->text(), QStringLiteral("D&ays to keep them (1 to 999)"));
    EXPECT_EQ(Find<QLabel>("lblNoHistory")->text(), QStringLiteral("With 0 days, no history is written."));
    Press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(Focus(), Days());
    Press(Qt::Key_Y, Qt::AltModifier);
    EXPECT_EQ(Focus(), History());
}

TEST_F(HistoryOptions, TabReachesTheControlsOfThePageAndThenTheButtons) {
    state.KeepDeletedDays = 7;
    Open(5);
    QStringList order;
    for (int step = 0; step < 4; ++step) {
        Press(Qt::Key_Tab);
        order += Focus()->objectName();
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(), "chkKeepDeleted txtKeepDeletedDays txtHistoryDays cmdOK");
}
