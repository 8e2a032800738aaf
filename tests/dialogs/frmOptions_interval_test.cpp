#include "tests/dialogs/OptionsTest.h"

using namespace quellbox;

TEST_F(Options, TypesOnlyDigitsAndFullStops) {
    Open(4);
    Interval()->setFocus();
    Interval()->selectAll();
    QTest::keyClicks(Interval(), QStringLiteral("-a1,e .5+x"));
    EXPECT_EQ(Interval()->text(), QStringLiteral("1.5"));
    QTest::keyClick(Interval(), Qt::Key_Backspace);
    EXPECT_EQ(Interval()->text(), QStringLiteral("1."));
    QTest::keyClick(Interval(), Qt::Key_Home);
    QTest::keyClick(Interval(), Qt::Key_Delete);
    EXPECT_EQ(Interval()->text(), QStringLiteral("."));
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("\u00e9"));
    QCoreApplication::sendEvent(Interval(), &composed);
    EXPECT_EQ(Interval()->text(), QStringLiteral("."));
    composed.setCommitString(QStringLiteral("7"));
    QCoreApplication::sendEvent(Interval(), &composed);
    EXPECT_EQ(Interval()->text(), QStringLiteral("7."));
    EXPECT_EQ(Slider()->value(), 30);
}

TEST_F(Options, LeavingTheIntervalSetsTheSliderRoundedAndWithinItsBounds) {
    Open(4);
    const std::vector<std::pair<const char*, int>> cases = {
        {"1.5", 5},   {"2.5", 5},    {"5.5", 6}, {"6.5", 6},          {"7.5", 8}, {"42", 42}, {"59.5", 60},
        {"60.5", 60}, {"61", 60},    {"4.4", 5}, {"99999999999", 60}, {"", 5},    {"..", 5},  {".", 5},
        {"1.5.2", 5}, {"9.9.9", 10}, {"0", 5}};
    for (const auto& [text, seconds] : cases) {
        Enter(QLatin1String(text));
        EXPECT_EQ(Slider()->value(), seconds) << text;
        EXPECT_EQ(Interval()->text().toInt(), seconds) << text;
    }
}

TEST_F(Options, WhatIsPastedIsReadAsANumberToo) {
    Open(4);
    const std::vector<std::pair<const char*, int>> cases = {
        {"1e9", 60}, {"-7", 5}, {"abc", 5}, {"1e999", 60}, {" 12 s", 12}};
    for (const auto& [text, seconds] : cases) {
        Interval()->setFocus();
        Interval()->selectAll();
        Interval()->insert(QLatin1String(text));
        Slider()->setFocus();
        EXPECT_EQ(Slider()->value(), seconds) << text;
    }
}

TEST_F(Options, TheIntervalFollowsTheSlider) {
    Open(4);
    Slider()->setFocus();
    Press(Qt::Key_Right);
    EXPECT_EQ(Interval()->text(), QStringLiteral("31"));
    Press(Qt::Key_PageUp);
    EXPECT_EQ(Interval()->text(), QStringLiteral("36"));
    Press(Qt::Key_End);
    EXPECT_EQ(Interval()->text(), QStringLiteral("60"));
    Press(Qt::Key_Home);
    EXPECT_EQ(Interval()->text(), QStringLiteral("5"));
}

TEST_F(Options, AStoredIntervalOutsideTheBoundsIsShownWithinThem) {
    for (const auto& [stored, shown] : {std::pair{600, 60}, {0, 5}, {-3, 5}, {32767, 60}, {4, 5}}) {
        state.RefreshInterval = static_cast<qint16>(stored);
        Open(4);
        EXPECT_EQ(Slider()->value(), shown);
        EXPECT_EQ(Interval()->text().toInt(), shown);
        Click(Find<QPushButton>("cmdCancel"));
        EXPECT_EQ(state.RefreshInterval, stored);
        Open(4);
        Click(Find<QPushButton>("cmdOK"));
        EXPECT_EQ(state.RefreshInterval, shown);
    }
}

TEST_F(Options, AutoRefreshSwitchesTheIntervalAtOnce) {
    Open(4);
    EXPECT_TRUE(Slider()->isEnabled());
    EXPECT_TRUE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    EXPECT_FALSE(Slider()->isEnabled());
    EXPECT_FALSE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    EXPECT_TRUE(Slider()->isEnabled());
    EXPECT_TRUE(Interval()->isEnabled());
    QTest::keyClick(Check("chkAutoRefresh"), Qt::Key_Space);
    Click(Find<QPushButton>("cmdOK"));
    dialog.reset();
    EXPECT_EQ(state.AutoRefresh, 0);
}
