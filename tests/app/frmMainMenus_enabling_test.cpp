#include "app/MainMenus.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class MenusEnabling : public testing::Test {
protected:
    /// What can be used with three rows of which one is selected.
    static CommandStates Usual() { return ComputeCommandStates({Activity::Idle, 3, 1, 1, 7, true}); }

    bool Can(const char* entry) const { return menus.Entry(entry).isEnabled(); }

    QMainWindow window;
    MainMenus menus{window};
};

TEST_F(MenusEnabling, EverythingCanBeUsedOnOneSelectedRow) {
    menus.Show(Usual());
    for (const char* entry : {"mnuActionsDelete", "mnuActionsUnblock", "mnuActionsTolerate", "mnuMessageView",
                              "mnuMessageTolerate", "mnuAcRefresh", "mnuViewBulk", "mnuToolsOptions"}) {
        EXPECT_TRUE(Can(entry)) << entry;
    }
    for (const char* key : {"delete", "unblock", "tolerate", "find", "filter", "cleansing", "whitelist"}) {
        EXPECT_TRUE(menus.Button(key).isEnabled()) << key;
    }
}

TEST_F(MenusEnabling, DuringAJobOnlyWhatShowsThingsInAnotherWayAndHelpCan) {
    menus.Show(ComputeCommandStates({Activity::Working, 3, 1, 1, 7, true}));
    for (const char* entry : {"mnuActionsDelete", "mnuEditSelectAll", "mnuEditFindNext", "mnuOpenFolderSelect0",
                              "mnuToolsTest", "mnuViewContents", "mnuAcRefresh", "mnuViewBulk", "mnuMessageFind"}) {
        EXPECT_FALSE(Can(entry)) << entry;
    }
    for (const char* entry :
         {"mnuViewToolbar", "mnuViewStatus", "mnuViewFormat", "mnuViewReadable", "mnuHelpAbout", "mnuFiExit"}) {
        EXPECT_TRUE(Can(entry)) << entry;
    }
    EXPECT_FALSE(menus.Menu("mnuEdit").menuAction()->isEnabled());
}

TEST_F(MenusEnabling, WhatChangesTheListNeedsIdleness) {
    EXPECT_TRUE(menus.NeedsIdleness("mnuActionsDelete"));
    EXPECT_TRUE(menus.NeedsIdleness("mnuViewContents"));
    EXPECT_FALSE(menus.NeedsIdleness("mnuAcRefresh"));
    EXPECT_FALSE(menus.NeedsIdleness("mnuHelpAbout"));
}

TEST_F(MenusEnabling, TheOpenEditMenuOffersFindNextOnlyWithATextAndItsKeyAlwaysWorks) {
    menus.Show(Usual());
    menus.mnuEdit_Click(false);
    EXPECT_FALSE(Can("mnuEditFindNext"));
    Q_EMIT menus.Menu("mnuEdit").aboutToHide();
    EXPECT_TRUE(Can("mnuEditFindNext"));
    menus.Show(ComputeCommandStates({Activity::Working, 3, 1, 1, 7, true}));
    menus.mnuEdit_Click(true);
    EXPECT_FALSE(Can("mnuEditFindNext")) << "a job has begun";
    Q_EMIT menus.Menu("mnuEdit").aboutToHide();
    EXPECT_FALSE(Can("mnuEditFindNext"));
}

TEST_F(MenusEnabling, TheOpenActionsMenuIsForTheCurrentRow) {
    menus.Show(Usual());
    menus.mnuActions_Click(false);
    EXPECT_FALSE(Can("mnuActionsDelete"));
    Q_EMIT menus.Menu("mnuActions").aboutToHide();
    EXPECT_TRUE(Can("mnuActionsDelete"));
}

} // namespace
} // namespace quellbox
