#include "contents/ExternalViewer.h"

#include "contents/WorkArea.h"
#include "tests/support/FakeShell.h"

#include <gtest/gtest.h>

using namespace quellbox;

TEST(ExternalViewer, IsUsedForExactlyOne) {
    AppState state;
    for (const qint16 value : {qint16(0), qint16(-1), qint16(2)}) {
        state.OutlookExpress = value;
        EXPECT_FALSE(UsesExternalViewer(state));
    }
    state.OutlookExpress = 1;
    EXPECT_TRUE(UsesExternalViewer(state));
}

TEST(ExternalViewer, DoesNotGetWhatTheServerHasPacked) {
    AppState state;
    EXPECT_TRUE(SuitsExternalViewer(state, QStringLiteral("/archive/a.gz"))) << "the default packs nothing";
    state.ServerProfile = QStringLiteral("amavis");
    EXPECT_FALSE(SuitsExternalViewer(state, QStringLiteral("/archive/spam-a.GZ")));
    EXPECT_TRUE(SuitsExternalViewer(state, QStringLiteral("/archive/banned-a")));
}

#ifndef _WIN32
TEST(ExternalViewer, GetsThePathAsOneArgumentAndFailsSilently) {
    FakeShell shell;
    shell.SetOpens(false);
    const QString path = QStringLiteral("/archive/a b;$(c).EML");
    ShowInExternalViewer(shell, path);
    EXPECT_EQ(shell.Opened(), QStringList({path}));
}
#endif

TEST(WorkArea, ReducesMovesAndOtherwiseLeavesAlone) {
    const QRect area(0, 20, 800, 580);
    EXPECT_EQ(KeepInWorkArea({10, 30, 200, 100}, area), QRect(10, 30, 200, 100));
    EXPECT_EQ(KeepInWorkArea({700, 550, 200, 100}, area), QRect(600, 500, 200, 100));
    EXPECT_EQ(KeepInWorkArea({10, 30, 900, 700}, area), area);
    EXPECT_EQ(KeepInWorkArea({-50, 0, 200, 100}, area), QRect(-50, 0, 200, 100));
    EXPECT_EQ(KeepInWorkArea({600, 500, 200, 100}, area), QRect(600, 500, 200, 100));
}
