#include "app/HelpDesk.h"

#include "app/HelpBrowser.h"
#include "app/frmHelp.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/FakeShell.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemorySettingsStore.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

/// The desk beside a window that has a topic, on a desktop that shows no compiled help by itself.
class HelpDeskTest : public testing::Test {
protected:
    HelpDeskTest() {
        window_.setObjectName(QStringLiteral("frmMain"));
        window_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
        QObject::connect(&desk_, &HelpDesk::Failed, [this](const QString& text) { failures_ += text; });
        state_.RefreshInterval = 60;
        timer_.SetInterval();
    }

    static frmHelp* HelpWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* help = qobject_cast<frmHelp*>(widget); help != nullptr && help->isVisible()) {
                return help;
            }
        }
        return nullptr;
    }

    /// The file name of the topic that is shown; empty without one.
    static std::string Topic() {
        const frmHelp* help = HelpWindow();
        return help == nullptr
                   ? std::string()
                   : help->findChild<HelpBrowser*>(QStringLiteral("txtTopic"))->source().fileName().toStdString();
    }

    MemoryFileSystem files_;
    MemorySettingsStore store_;
    FakeShell shell_;
    ProgramInfo program_ = TestProgram(QStringLiteral("/prog/"));
    AppState state_;
    RefreshTimer timer_{state_};
    QWidget window_;
    HelpDesk desk_{{files_, store_, shell_, program_, timer_, window_}};
    QStringList failures_;
};

TEST_F(HelpDeskTest, ShowsTheTopicOfAWindowOrOfTheOneThatItStandsAbove) {
    desk_.ShowHelpOf(&window_);
    EXPECT_EQ(Topic(), "list.html");
    QDialog find(&window_);
    find.setObjectName(QStringLiteral("frmFind"));
    QPushButton inside(&find);
    desk_.ShowHelpOf(&inside);
    EXPECT_EQ(Topic(), "find.html");
    find.setObjectName(QStringLiteral("frmWithoutTopic"));
    desk_.ShowHelpOf(&inside);
    EXPECT_EQ(Topic(), "list.html");
    const QWidget alone;
    desk_.ShowHelpOf(&alone);
    EXPECT_EQ(Topic(), "start.html");
    EXPECT_TRUE(failures_.isEmpty());
}

TEST_F(HelpDeskTest, TheEntriesShowTheDefaultTopicAndTheFirstContext) {
    desk_.mnuHelpStarting_Click(1);
    EXPECT_EQ(Topic(), "suggestions.html");
    desk_.mnuHelpStarting_Click(0);
    EXPECT_EQ(Topic(), "start.html");
}

TEST_F(HelpDeskTest, TheKeyIsLeftToTheHelpWindowItself) {
    EXPECT_TRUE(desk_.HelpKeyDown(&window_));
    ASSERT_EQ(Topic(), "list.html");
    EXPECT_FALSE(desk_.HelpKeyDown(HelpWindow()->findChild<HelpBrowser*>()));
    desk_.Close();
    EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(HelpDeskTest, AHelpButtonOfEitherNameWorksOnceHoweverOftenItIsConnected) {
    shell_.SetHelpViewer(true);
    QDialog dialog(&window_);
    dialog.setObjectName(QStringLiteral("frmFind"));
    QPushButton button(&dialog);
    dialog.show();
    for (const char* name : {"btnHelp", "cmdHelp"}) {
        button.setObjectName(QLatin1String(name));
        desk_.ConnectHelpButton(&dialog);
    }
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(shell_.Helped(), QStringList(program_.HelpFile + QStringLiteral("::/find.html 0 0")));
}

TEST_F(HelpDeskTest, AViewerThatShowsNothingIsReported) {
    shell_.SetHelpViewer(true, false);
    desk_.mnuHelpStarting_Click(1);
    EXPECT_EQ(shell_.Helped(), QStringList(program_.HelpFile + QStringLiteral(" 15 1")));
    ASSERT_EQ(failures_.size(), 1);
    EXPECT_TRUE(failures_.front().endsWith(program_.HelpFile));
}

TEST_F(HelpDeskTest, TheHelpWindowBelongsToTheModalDialogWhileThereIsOne) {
    desk_.mnuHelpStarting_Click(0);
    ASSERT_NE(HelpWindow(), nullptr);
    QDialog dialog(&window_);
    dialog.setModal(true);
    dialog.show();
    desk_.KeepUsableBesideDialogs();
    EXPECT_EQ(HelpWindow()->windowHandle()->transientParent(), dialog.windowHandle());
    dialog.close();
    desk_.KeepUsableBesideDialogs();
    EXPECT_EQ(HelpWindow()->windowHandle()->transientParent(), nullptr);
}

TEST_F(HelpDeskTest, ThePagesAreOpenedByTheDesktop) {
    desk_.mnuHelpCheck_Click();
    desk_.mnuHelpFeedback_Click();
    EXPECT_EQ(shell_.Opened(), QStringList({program_.UpdatePage(), program_.FeedbackPage()}));
}

TEST_F(HelpDeskTest, TheTimerRestsWhileTheAboutBoxIsOpen) {
    const auto runs = [this] { return timer_.findChild<QTimer*>()->isActive(); };
    const DialogVisit visit("frmAbout", [&](QDialog& box) {
        EXPECT_EQ(box.parentWidget(), &window_);
        EXPECT_FALSE(runs());
    });
    desk_.mnuHelpAbout_Click();
    EXPECT_TRUE(visit.Happened());
    EXPECT_TRUE(runs());
}

} // namespace
} // namespace quellbox
