#include "app/frmHelp.h"

#include "app/HelpBrowser.h"
#include "tests/support/FakeShell.h"
#include "tests/support/MemorySettingsStore.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class Help : public testing::Test {
protected:
    void Open(const char* topic = "start.html") {
        help.ShowTopic(QLatin1String(topic));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&help));
    }

    template <class T>
    T* Find(const char* name) {
        T* found = help.findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    HelpBrowser* Topic() { return Find<HelpBrowser>("txtTopic"); }
    QTreeWidget* Contents() { return Find<QTreeWidget>("trvContents"); }
    QLineEdit* Search() { return Find<QLineEdit>("txtSearch"); }
    std::string Shown() { return Topic()->source().toString().toStdString(); }
    std::string Chosen() { return Contents()->currentItem()->text(0).toStdString(); }

    QStringList ContentsShown() {
        QStringList titles;
        for (QTreeWidgetItemIterator item(Contents(), QTreeWidgetItemIterator::NotHidden); *item != nullptr; ++item) {
            titles += (*item)->text(0);
        }
        return titles;
    }

    void FollowLink(const QString& target) { Q_EMIT Topic()->anchorClicked(QUrl(target)); }

    FakeShell shell;
    MemorySettingsStore store;
    QStringList reported;
    frmHelp help{shell, store, [this](const QString& text) { reported += text; }};
};

TEST_F(Help, TheDefaultTopicIsGettingStarted) {
    help.ShowDefaultTopic();
    EXPECT_EQ(Shown(), "qrc:/help/start.html");
    EXPECT_EQ(help.windowTitle().toStdString(), "Getting Started - Quellbox Help");
    EXPECT_EQ(Chosen(), "Getting Started");
    EXPECT_EQ(Topic()->document()->begin().blockFormat().bottomMargin(), 10); // as the style sheet says
    EXPECT_TRUE(Topic()->toPlainText().contains(QStringLiteral("archive directory")));
    EXPECT_TRUE(reported.isEmpty());
}

TEST_F(Help, ContextOneIsTheSuggestions) {
    help.ShowContext(1);
    EXPECT_EQ(Shown(), "qrc:/help/suggestions.html");
    EXPECT_EQ(Chosen(), "Suggestions");
}

TEST_F(Help, AContextThatNoTopicHasIsReported) {
    help.ShowContext(99);
    EXPECT_EQ(reported, QStringList({QStringLiteral("The help of this program has no topic number 99.")}));
    EXPECT_FALSE(help.isVisible());
}

TEST_F(Help, ATopicThatIsMissingIsReportedAndTheOldOneStays) {
    Open();
    help.ShowTopic(QStringLiteral("nowhere.html"));
    EXPECT_EQ(reported, QStringList({QStringLiteral("The help of this program has no topic \"nowhere.html\".")}));
    FollowLink(QStringLiteral("elsewhere.html#there"));
    EXPECT_EQ(reported.size(), 2);
    EXPECT_EQ(Shown(), "qrc:/help/start.html");
}

TEST_F(Help, LinksBetweenTopicsAreFollowedWithTheirAnchors) {
    Open();
    FollowLink(QStringLiteral("list.html#refresh"));
    EXPECT_EQ(Shown(), "qrc:/help/list.html#refresh");
    EXPECT_EQ(Chosen(), "Reading the list");
    FollowLink(QStringLiteral("#filter"));
    EXPECT_EQ(Shown(), "qrc:/help/list.html#filter");
    EXPECT_TRUE(shell.Opened().isEmpty());
}

TEST_F(Help, OtherLinksOpenInTheDesktopsProgram) {
    Open();
    FollowLink(QStringLiteral("http://www.quellbox.example/a?b=1"));
    FollowLink(QStringLiteral("mailto:support@quellbox.example"));
    EXPECT_EQ(shell.Opened(), QStringList({QStringLiteral("http://www.quellbox.example/a?b=1"),
                                           QStringLiteral("mailto:support@quellbox.example")}));
    EXPECT_EQ(Shown(), "qrc:/help/start.html");
}

TEST_F(Help, NothingButTheHelpIsLoaded) {
    Open();
    for (const char* name : {"file:///etc/hostname", "http://www.quellbox.example/x.css", "qrc:/icons/quellbox.svg",
                             "../icons/quellbox.svg", "/etc/hostname"}) {
        EXPECT_FALSE(Topic()->loadResource(QTextDocument::HtmlResource, QUrl(QLatin1String(name))).isValid()) << name;
    }
    EXPECT_TRUE(Topic()->loadResource(QTextDocument::StyleSheetResource, QUrl(QStringLiteral("help.css"))).isValid());
}

TEST_F(Help, BackAndForwardGoThroughTheTopics) {
    Open();
    auto* back = Find<QPushButton>("btnBack");
    auto* forward = Find<QPushButton>("btnForward");
    EXPECT_FALSE(back->isEnabled());
    help.ShowTopic(QStringLiteral("find.html"));
    ASSERT_TRUE(back->isEnabled());
    EXPECT_FALSE(forward->isEnabled());
    QTest::mouseClick(back, Qt::LeftButton);
    EXPECT_EQ(Chosen(), "Getting Started");
    ASSERT_TRUE(forward->isEnabled());
    QTest::keyClick(Contents(), Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Chosen(), "Find");
    QTest::keyClick(Topic(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Chosen(), "Getting Started");
}

TEST_F(Help, TheKeyboardGoesThroughTheContents) {
    Open();
    Contents()->setFocus();
    QTest::keyClick(Contents(), Qt::Key_Down);
    EXPECT_EQ(Shown(), "qrc:/help/folders.html");
    EXPECT_TRUE(Contents()->hasFocus());
    QTest::keyClick(Contents(), Qt::Key_Escape);
    EXPECT_FALSE(help.isVisible());
}

TEST_F(Help, PlusAndMinusChangeTheSizeOfTheText) {
    Open();
    const qreal size = Topic()->font().pointSizeF();
    QTest::keyClick(Topic(), Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(Topic(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(Topic()->font().pointSizeF(), size + 2);
    QTest::keyClick(Contents(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(Topic()->font().pointSizeF(), size + 1);
    QTest::mouseClick(Find<QPushButton>("btnLarger"), Qt::LeftButton);
    help.ShowTopic(QStringLiteral("keys.html"));
    EXPECT_EQ(Topic()->font().pointSizeF(), size + 2);
    QTest::keyClick(Topic(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(Topic()->font().pointSizeF(), size);
    for (int step = 0; step < 50; ++step) {
        QTest::mouseClick(Find<QPushButton>("btnSmaller"), Qt::LeftButton);
    }
    EXPECT_GE(Topic()->font().pointSizeF(), size - 4);
}

TEST_F(Help, TheSearchShowsTheTopicsThatHaveEveryWord) {
    Open();
    const qsizetype everyTopic = ContentsShown().size();
    QTest::keyClick(Topic(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(Search()->hasFocus());
    QTest::keyClicks(Search(), QStringLiteral("POSTMASTER quellbox.eml"));
    // The topic that stands above the one with the words stays, so that this can be seen.
    EXPECT_EQ(ContentsShown(), QStringList({QStringLiteral("Getting Started"), QStringLiteral("Pickup test")}));
    QTest::keyClick(Search(), Qt::Key_Return);
    EXPECT_EQ(Shown(), "qrc:/help/pickuptest.html");
    EXPECT_FALSE(Topic()->extraSelections().isEmpty());
    EXPECT_FALSE(Find<QLabel>("lblNone")->isVisible());
    Search()->setText(QStringLiteral("xyzzy"));
    EXPECT_TRUE(ContentsShown().isEmpty());
    EXPECT_TRUE(Find<QLabel>("lblNone")->isVisible());
    QTest::keyClick(Search(), Qt::Key_Return);
    EXPECT_EQ(Shown(), "qrc:/help/pickuptest.html");
    Search()->clear();
    EXPECT_EQ(ContentsShown().size(), everyTopic);
    EXPECT_TRUE(Topic()->extraSelections().isEmpty());
}

TEST_F(Help, ItsPlaceIsKept) {
    Open();
    help.setGeometry(30, 40, 700, 500);
    help.close();
    EXPECT_EQ(store.Value(QStringLiteral("Settings"), QStringLiteral("HelpWidth")), QStringLiteral("10500"));
    frmHelp again(shell, store, [](const QString&) {});
    EXPECT_EQ(again.geometry(), QRect(30, 40, 700, 500));
}

} // namespace
} // namespace quellbox
