#include "app/HelpBrowser.h"
#include "app/frmHelp.h"
#include "tests/support/MainWindowFixture.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quellbox {
namespace {

class MainHelp : public MainWindowTest {
protected:
    MainHelp() {
        program_.Major = 2;
        program_.Minor = 1;
        program_.Revision = 37;
        program_.WebSite = QStringLiteral("http://www.quellbox.example");
    }

    static frmHelp* HelpWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* help = qobject_cast<frmHelp*>(widget)) {
                return help;
            }
        }
        return nullptr;
    }

    /// The file name of the topic that the visible help window shows; empty without one.
    static std::string Topic() {
        const frmHelp* help = HelpWindow();
        if (help == nullptr || !help->isVisible()) {
            return {};
        }
        return help->findChild<HelpBrowser*>(QStringLiteral("txtTopic"))->source().fileName().toStdString();
    }

    /// Runs `look` once while the dialog with this name is open.
    void WhileOpen(const char* name, std::function<void(QDialog&)> look) {
        dialogs_.callOnTimeout([this, name, look = std::move(look)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr && dialog->objectName() == QLatin1String(name)) {
                dialogs_.stop();
                look(*dialog);
                dialog->close();
            }
        });
        dialogs_.start(1);
    }

    /// A dialog as a builder of dialogs would make it: nothing but its name and its Help button.
    static void ExecDialog(QWidget* parent, const char* name, const char* button) {
        QDialog dialog(parent);
        dialog.setObjectName(QLatin1String(name));
        auto* layout = new QVBoxLayout(&dialog);
        auto* edit = new QLineEdit(&dialog);
        auto* help = new QPushButton(QStringLiteral("Help"), &dialog);
        help->setObjectName(QLatin1String(button));
        layout->addWidget(edit);
        layout->addWidget(help);
        dialog.exec();
    }

    QTimer dialogs_;
};

TEST_F(MainHelp, GettingStartedShowsTheDefaultTopicAndSuggestionsTheFirstContext) {
    Open();
    Action("mnuHelpStarting0")->trigger();
    Settle();
    EXPECT_EQ(Topic(), "start.html");
    Action("mnuHelpStarting1")->trigger();
    Settle();
    EXPECT_EQ(Topic(), "suggestions.html");
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainHelp, TheSystemsViewerGetsTheFileTheCommandAndTheContext) {
    shell_.SetHelpViewer(true);
    Open();
    Action("mnuHelpStarting0")->trigger();
    Settle();
    Action("mnuHelpStarting1")->trigger();
    Settle();
    QTest::keyClick(List(), Qt::Key_F1);
    Settle();
    EXPECT_EQ(shell_.Helped(),
              QStringList({program_.HelpFile + QStringLiteral(" 0 0"), program_.HelpFile + QStringLiteral(" 15 1"),
                           program_.HelpFile + QStringLiteral("::/list.html 0 0")}));
    EXPECT_TRUE(program_.HelpFile.endsWith(QStringLiteral("Quellbox.chm")));
    EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(MainHelp, AMissingHelpFileIsLeftToTheSystemsViewer) {
    shell_.SetHelpViewer(true);
    Open();
    Action("mnuHelpStarting1")->trigger();
    Settle();
    EXPECT_EQ(shell_.Helped(), QStringList{program_.HelpFile + QStringLiteral(" 15 1")});
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainHelp, ASystemThatCannotShowTheHelpFileIsReported) {
    shell_.SetHelpViewer(true, false);
    Open();
    Action("mnuHelpStarting0")->trigger();
    Settle();
    EXPECT_EQ(errors_,
              QStringList({QStringLiteral("This system has no viewer for help files:\n\n") + program_.HelpFile}));
}

TEST_F(MainHelp, SuggestionsAskForTheFirstContextEvenOfAViewerThatCannotShowIt) {
    shell_.SetHelpViewer(true, false);
    Open();
    Action("mnuHelpStarting1")->trigger();
    Settle();
    EXPECT_EQ(shell_.Helped(), QStringList{program_.HelpFile + QStringLiteral(" 15 1")});
    EXPECT_EQ(errors_.size(), 1);
    EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(MainHelp, F1ShowsTheTopicOfTheWindow) {
    AddThree();
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_F1);
    Settle();
    EXPECT_EQ(Topic(), "list.html");
    Action("mnuMessageView")->trigger();
    Settle();
    auto* view = QApplication::activeWindow();
    ASSERT_NE(view, nullptr);
    QWidget* viewer = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        viewer = widget->objectName() == QLatin1String("frmView") ? widget : viewer;
    }
    ASSERT_NE(viewer, nullptr);
    QTest::keyClick(viewer->focusWidget(), Qt::Key_F1);
    Settle();
    EXPECT_EQ(Topic(), "contents.html");
    EXPECT_TRUE(viewer->isVisible());
}

TEST_F(MainHelp, F1WithAModifierIsAnotherKey) {
    Open();
    QTest::keyClick(List(), Qt::Key_F1, Qt::ShiftModifier);
    Settle();
    EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(MainHelp, EveryDialogHasItsTopicAndItsHelpButton) {
    Open();
    const std::vector<std::pair<const char*, const char*>> forms = {
        {"frmFind", "find.html"},
        {"frmCleansing", "cleansing.html"},
        {"frmOptions", "options.html"},
        {"frmFolders", "folders.html"},
        {"frmTolerate", "whitelist.html"},
        {"frmAbout", "about.html"},
        {"frmOwnServer", "server-own.html"},
        {"frmOther", "list.html"}, // as the window that it stands above
    };
    for (const auto& [name, topic] : forms) {
        std::string byKey;
        std::string byButton;
        WhileOpen(name, [&](QDialog& dialog) {
            QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_F1);
            byKey = Topic();
            HelpWindow()->close();
            QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
            byButton = Topic();
            HelpWindow()->close();
        });
        ExecDialog(window_.get(), name, name == std::string("frmOptions") ? "cmdHelp" : "btnHelp");
        EXPECT_EQ(byKey, topic) << name;
        EXPECT_EQ(byButton, topic) << name;
    }
}

TEST_F(MainHelp, AWindowOfNoOneShowsTheDefaultTopic) {
    Open();
    QWidget other;
    other.show();
    QTest::keyClick(&other, Qt::Key_F1);
    Settle();
    EXPECT_EQ(Topic(), "start.html");
}

TEST_F(MainHelp, HelpCanBeUsedWhileADialogIsOpenAndStaysAfterwards) {
    Open();
    Action("mnuHelpStarting0")->trigger(); // before the dialog, which then must not block it
    ASSERT_TRUE(QTest::qWaitForWindowExposed(HelpWindow()));
    std::string clicked;
    WhileOpen("frmFind", [&](QDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        auto* larger = HelpWindow()->findChild<QPushButton*>(QStringLiteral("btnLarger"));
        const qreal size = HelpWindow()->findChild<HelpBrowser*>()->font().pointSizeF();
        QTest::mouseClick(HelpWindow()->windowHandle(), Qt::LeftButton, {},
                          larger->mapTo(HelpWindow(), larger->rect().center()));
        EXPECT_EQ(HelpWindow()->findChild<HelpBrowser*>()->font().pointSizeF(), size + 1);
        QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
        EXPECT_EQ(Topic(), "find.html");
        QTest::mouseClick(HelpWindow()->windowHandle(), Qt::LeftButton, {},
                          larger->mapTo(HelpWindow(), larger->rect().center()));
        EXPECT_EQ(HelpWindow()->findChild<HelpBrowser*>()->font().pointSizeF(), size + 2);
    });
    ExecDialog(window_.get(), "frmFind", "btnHelp");
    QCoreApplication::processEvents();
    EXPECT_EQ(Topic(), "find.html");
    EXPECT_EQ(HelpWindow()->windowHandle()->transientParent(), nullptr);
    EXPECT_EQ(HelpWindow()->windowModality(), Qt::NonModal);
}

TEST_F(MainHelp, HelpGoesWithTheMainWindow) {
    Open();
    Action("mnuHelpStarting0")->trigger();
    Settle();
    ASSERT_TRUE(HelpWindow()->isVisible());
    window_->close();
    EXPECT_FALSE(HelpWindow()->isVisible());
    window_.reset();
    EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(MainHelp, UpdateAndFeedbackOpenTheirPages) {
    Open();
    Action("mnuHelpCheck")->trigger();
    Settle();
    Action("mnuHelpFeedback")->trigger();
    Settle();
    EXPECT_EQ(shell_.Opened(),
              QStringList({QStringLiteral("http://www.quellbox.example/quellbox/version.asp?client=2.1.37"),
                           QStringLiteral("http://www.quellbox.example/quellbox/feedback.htm")}));
}

TEST_F(MainHelp, APageThatCannotBeOpenedGoesUnreported) {
    shell_.SetOpens(false);
    Open();
    Action("mnuHelpCheck")->trigger();
    Settle();
    Action("mnuHelpFeedback")->trigger();
    Settle();
    QTest::qWait(0);
    EXPECT_EQ(shell_.Opened().size(), 2);
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainHelp, TheTimerRestsDuringTheAboutBoxAndRunsAfterwards) {
    Set("AutoRefresh", "0");
    AddThree();
    OpenRefreshed();
    auto* timer = Find<QTimer>("tmrRefresh");
    for (const bool ranBefore : {true, false}) {
        if (!ranBefore) {
            timer->stop();
        }
        bool ranMeanwhile = true;
        QString title;
        WhileOpen("frmAbout", [&](QDialog& box) {
            ranMeanwhile = timer->isActive();
            window_->mnuAcRefresh_Click(); // one that was due
            ranMeanwhile = ranMeanwhile || timer->isActive();
            title = box.windowTitle();
        });
        Action("mnuHelpAbout")->trigger();
        Settle();
        EXPECT_EQ(title.toStdString(), "About Quellbox");
        EXPECT_FALSE(ranMeanwhile);
        EXPECT_TRUE(timer->isActive());
        EXPECT_EQ(timer->interval(), 60'000);
    }
}

TEST_F(MainHelp, TheFirstRefreshStillComesAfterAnAboutBoxBeforeIt) {
    AddThree();
    Open();
    WhileOpen("frmAbout", [](QDialog&) {});
    Action("mnuHelpAbout")->trigger();
    Settle();
    ASSERT_TRUE(WaitForRefreshes(1));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_EQ(SelectedKeys(), "a.eml");
}

} // namespace
} // namespace quellbox
