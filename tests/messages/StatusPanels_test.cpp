#include "messages/StatusPanels.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class StatusPanelsTest : public testing::Test {
protected:
    StatusPanelsTest() {
        QObject::connect(&panels, &StatusPanels::Changed, &panels, [this] { ++changes; });
    }

    StatusPanels panels;
    int changes = 0;
};

} // namespace

TEST_F(StatusPanelsTest, StartEmpty) {
    EXPECT_EQ(panels.Info(), StatusPanel());
    EXPECT_EQ(panels.Size(), StatusPanel());
    EXPECT_EQ(panels.Count(), StatusPanel());
}

TEST_F(StatusPanelsTest, KeepsEachPanelApart) {
    panels.SetInfo(u"info"_s);
    panels.SetSize(u"size"_s, u"tip"_s);
    panels.SetCount(u"count"_s);
    EXPECT_EQ(panels.Info(), (StatusPanel{u"info"_s, QString()}));
    EXPECT_EQ(panels.Size(), (StatusPanel{u"size"_s, u"tip"_s}));
    EXPECT_EQ(panels.Count(), (StatusPanel{u"count"_s, QString()}));
    EXPECT_EQ(changes, 3);
}

TEST_F(StatusPanelsTest, TellsOfAnotherToolTipUnderTheSameText) {
    panels.SetSize(u"1.0 KB"_s, u"Size of selected messages"_s);
    panels.SetSize(u"1.0 KB"_s, u"Total size of selected messages"_s);
    EXPECT_EQ(panels.Size().toolTip, u"Total size of selected messages"_s);
    EXPECT_EQ(changes, 2);
}

TEST_F(StatusPanelsTest, SaysNothingWhenNothingChanges) {
    panels.SetInfo(u"info"_s);
    panels.SetSize(u"size"_s, u"tip"_s);
    panels.SetCount(u"count"_s);
    changes = 0;
    panels.SetInfo(u"info"_s);
    panels.SetSize(u"size"_s, u"tip"_s);
    panels.SetCount(u"count"_s);
    EXPECT_EQ(changes, 0);
}

TEST_F(StatusPanelsTest, ShowsTheNewTextAlreadyWhileItTells) {
    QString seen;
    QObject::connect(&panels, &StatusPanels::Changed, &panels, [&] { seen = panels.Info().text; });
    panels.SetInfo(u"new"_s);
    EXPECT_EQ(seen, u"new"_s);
}

} // namespace quellbox
