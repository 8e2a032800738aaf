#include "contents/frmView.h"

#include "tests/support/RealFolderWindow.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTabBar>

using namespace quellbox;

namespace {

class View : public RealFolderWindowTest {
protected:
    static frmView* Viewer() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* viewer = qobject_cast<frmView*>(widget);
            if (viewer != nullptr && viewer->isVisible()) {
                return viewer;
            }
        }
        return nullptr;
    }

    static RawPane* TextOf(frmView* viewer) { return viewer->findChild<RawPane*>(QStringLiteral("rtfRaw")); }

    static RawPane* ReadableOf(frmView* viewer) { return viewer->findChild<RawPane*>(QStringLiteral("rtfReadable")); }

    void OpenViewer(int row) {
        Click(row);
        QTest::keyClick(List(), Qt::Key_Return);
        Settle();
        ASSERT_NE(Viewer(), nullptr);
        ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeWindow() == Viewer(); }));
    }

    QString Stored(const char* key) const {
        return store.Value(QStringLiteral("Settings"), QLatin1String(key)).value_or(QString());
    }
};

} // namespace

TEST_F(View, APathWithTheMarkOfWindowTitlesIsNamedInFull) {
    frmView viewer(store);
    viewer.setAttribute(Qt::WA_DeleteOnClose, false);
    viewer.ShowMessage(QString::fromUtf16(u"/x[*]/\u202Ea.eml"), QStringLiteral("text"));
    EXPECT_EQ(viewer.windowHandle()->title().toStdString(), "/x[*]/a.eml");
}

TEST_F(View, ShowsTheWholeFileFromItsStartUnderItsPath) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("RawBody"), QStringLiteral("1"));
    Open(1);
    OpenViewer(0);
    frmView* viewer = Viewer();
    EXPECT_EQ(viewer->windowTitle(), Archive(Name(1)));
    EXPECT_EQ(TextOf(viewer)->Text(), QString::fromLatin1(Mail(1)));
    EXPECT_EQ(TextOf(viewer)->textCursor().position(), 0);
    EXPECT_EQ(Raw()->FileName(), Archive(Name(1)));
    EXPECT_FALSE(viewer->isModal());
    EXPECT_DOUBLE_EQ(TextOf(viewer)->font().pointSizeF(), 8.5);
    EXPECT_EQ(TextOf(viewer)->size(), viewer->size());
}

TEST_F(View, StaysAtTheStartWhateverTheOptionOfItsEndSays) {
    Write(Archive(Name(1)), "Subject: long\r\n\r\n" + QByteArray("line\r\n").repeated(500));
    Open();
    for (const qint16 option : {qint16{0}, qint16{1}}) {
        window->State().RawBody = option;
        OpenViewer(0);
        const RawPane* text = TextOf(Viewer());
        ASSERT_TRUE(QTest::qWaitFor([text] { return text->IsComplete(); }, 60000));
        QCoreApplication::processEvents();
        EXPECT_GT(text->verticalScrollBar()->maximum(), 0);
        EXPECT_EQ(text->verticalScrollBar()->value(), 0) << option;
        EXPECT_EQ(text->textCursor().position(), 0) << option;
        Viewer()->close();
    }
}

TEST_F(View, ReusesItsWindow) {
    Open(2);
    OpenViewer(0);
    frmView* first = Viewer();
    OpenViewer(1);
    EXPECT_EQ(Viewer(), first);
    EXPECT_EQ(first->windowTitle(), Archive(Name(2)));
}

TEST_F(View, OpensByEnterSpaceAndDoubleClick) {
    Open(1);
    Click(0);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyClick(List(), key);
        Settle();
        ASSERT_NE(Viewer(), nullptr);
        Viewer()->close();
    }
    const QPoint point = List()->visualRect(window->Messages().index(0, 0)).center();
    QTest::mouseDClick(List()->viewport(), Qt::LeftButton, {}, point);
    Settle();
    EXPECT_NE(Viewer(), nullptr);
}

TEST_F(View, ClosesByEnterSpaceAndEscape) {
    Open(1);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
        OpenViewer(0);
        QTest::keyClick(TextOf(Viewer()), key);
        EXPECT_EQ(Viewer(), nullptr);
    }
}

TEST_F(View, DiscardsLettersAndMovesByKeys) {
    Open(1);
    OpenViewer(0);
    const QString before = TextOf(Viewer())->toPlainText();
    QTest::keyClicks(TextOf(Viewer()), QStringLiteral("abc"));
    QTest::keyClick(TextOf(Viewer()), Qt::Key_Delete);
    QTest::keyClick(TextOf(Viewer()), Qt::Key_Backspace);
    EXPECT_EQ(TextOf(Viewer())->toPlainText(), before);
    QTest::keyClick(TextOf(Viewer()), Qt::Key_Down);
    EXPECT_GT(TextOf(Viewer())->textCursor().position(), 0);
}

TEST_F(View, AnEmptyListOpensNothing) {
    Open(0);
    Command("mnuMessageView")->setEnabled(true);
    Command("mnuMessageView")->trigger();
    Settle();
    window->State().OutlookExpress = 1;
    Command("mnuMessageView")->trigger();
    Settle();
    EXPECT_EQ(Viewer(), nullptr);
    EXPECT_TRUE(shell.Opened().isEmpty());
}

TEST_F(View, TheExternalViewerLeavesBothPanesAlone) {
    Open(1);
    Click(0);
    Raw()->ShowText(QStringLiteral("before"));
    window->State().OutlookExpress = 1;
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_EQ(shell.Opened(), QStringList({Archive(Name(1))}));
    EXPECT_EQ(Viewer(), nullptr);
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("before"));
}

TEST_F(View, AMissingFileLeavesTheTexts) {
    Open(1);
    OpenViewer(0);
    QFile::remove(Archive(Name(1)));
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_EQ(TextOf(Viewer())->Text(), QString::fromLatin1(Mail(1)));
    EXPECT_EQ(Raw()->Text(), QString::fromLatin1(Mail(1)));
}

TEST_F(View, RemembersItsPlacement) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewLeft"), QStringLiteral("1500"));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewTop"), QStringLiteral("1200"));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewWidth"), QStringLiteral("4500"));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewHeight"), QStringLiteral("3000"));
    Open(1);
    OpenViewer(0);
    EXPECT_EQ(Viewer()->geometry(), QRect(100, 80, 300, 200));
    Viewer()->setGeometry(120, 90, 330, 220);
    Viewer()->close();
    EXPECT_EQ(Stored("ViewLeft"), QStringLiteral("1800"));
    EXPECT_EQ(Stored("ViewWidth"), QStringLiteral("4950"));
    EXPECT_EQ(Stored("ViewWindowState"), QStringLiteral("0"));
}

TEST_F(View, StaysInsideTheWorkArea) {
    Open(1);
    OpenViewer(0);
    const QRect area = Viewer()->screen()->availableGeometry();
    Viewer()->resize(area.width() + 100, area.height() + 100);
    QCoreApplication::processEvents();
    EXPECT_TRUE(area.contains(Viewer()->frameGeometry()));
}

TEST_F(View, IsPulledIntoTheWorkAreaWhenItOpens) {
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewLeft"), QString::number(15 * (area.right() - 50)));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewTop"), QString::number(15 * (area.bottom() - 50)));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewWidth"), QStringLiteral("4500"));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewHeight"), QStringLiteral("3000"));
    Open(1);
    OpenViewer(0);
    EXPECT_TRUE(area.contains(Viewer()->frameGeometry()));
    EXPECT_EQ(Viewer()->size(), QSize(300, 200));
}

TEST_F(View, ASizeBeyondAllScreensIsCut) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewWidth"), QStringLiteral("2147483647"));
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ViewHeight"), QStringLiteral("-2147483648"));
    Open(1);
    OpenViewer(0);
    const QScreen& screen = *QGuiApplication::primaryScreen();
    EXPECT_EQ(Viewer()->frameGeometry().width(), screen.availableSize().width());
    EXPECT_EQ(Viewer()->height(), 2 * screen.size().height() / 3) << "a negative size is computed";
    EXPECT_TRUE(screen.availableGeometry().contains(Viewer()->geometry().center()));
}

TEST_F(View, ClosesByEscapeInTheMainWindow) {
    Open(1);
    OpenViewer(0);
    Activate();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(View, AHeldKeyThatOpenedItDoesNotCloseIt) {
    Open(1);
    OpenViewer(0);
    QTest::simulateEvent(TextOf(Viewer()), true, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    EXPECT_NE(Viewer(), nullptr);
}

TEST_F(View, OpensFromTheContextMenuOfOneRow) {
    Open(2);
    const QPoint point = List()->visualRect(window->Messages().index(0, 0)).center();
    QTest::mouseClick(List()->viewport(), Qt::RightButton, {}, point);
    auto* menu = Find<QMenu>("mnuMessage");
    ASSERT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->defaultAction(), Command("mnuMessageView"));
    ASSERT_TRUE(Command("mnuMessageView")->isEnabled());
    menu->close();
    Command("mnuMessageView")->trigger();
    Settle();
    EXPECT_NE(Viewer(), nullptr);
}

TEST_F(View, ClosesWithTheMainWindow) {
    Open(1);
    OpenViewer(0);
    window->close();
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(View, TheReadableTextIsAPageOfItsOwnWhenItIsWanted) {
    Open(1);
    OpenViewer(0);
    frmView* viewer = Viewer();
    auto* tabs = viewer->findChild<QTabBar*>(QStringLiteral("tabPages"));
    ASSERT_FALSE(tabs->isVisible());
    QTest::keyClick(TextOf(viewer), Qt::Key_R, Qt::ControlModifier);
    Settle();
    const RawPane* readable = ReadableOf(viewer);
    EXPECT_TRUE(readable->isVisible());
    EXPECT_TRUE(readable->hasFocus());
    EXPECT_FALSE(TextOf(viewer)->isVisible());
    EXPECT_TRUE(readable->Text().contains(QStringLiteral("second line"))) << readable->Text().toStdString();
    EXPECT_NE(readable->Text(), TextOf(viewer)->Text());
    ASSERT_TRUE(tabs->isVisible());
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
    EXPECT_TRUE(TextOf(viewer)->isVisible());
    EXPECT_EQ(TextOf(viewer)->Text(), QString::fromLatin1(Mail(1)));
    QTest::keyClick(TextOf(viewer), Qt::Key_Escape);
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(View, ComesWithTheReadableTextWhereThatIsSetAndReadsTheSourceWhenItIsWanted) {
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("ReadableText"), QStringLiteral("True"));
    Open(1);
    OpenViewer(0);
    frmView* viewer = Viewer();
    EXPECT_TRUE(ReadableOf(viewer)->isVisible());
    EXPECT_EQ(ReadableOf(viewer)->Text(), Raw()->Text());
    EXPECT_EQ(TextOf(viewer)->Text(), QString());
    QTest::keyClick(ReadableOf(viewer), Qt::Key_R, Qt::ControlModifier);
    Settle();
    EXPECT_EQ(TextOf(viewer)->Text(), QString::fromLatin1(Mail(1)));
}

TEST_F(View, TheMenuOfTheTextOffersTheReadableText) {
    Open(1);
    OpenViewer(0);
    RawPane* text = TextOf(Viewer());
    QContextMenuEvent click(QContextMenuEvent::Mouse, {20, 20}, text->viewport()->mapToGlobal(QPoint(20, 20)));
    QCoreApplication::sendEvent(text->viewport(), &click);
    auto* menu = text->findChild<QMenu*>(QStringLiteral("mnuText"));
    ASSERT_NE(menu, nullptr);
    QAction* entry = menu->actions().back();
    EXPECT_EQ(entry->text(), QStringLiteral("&Readable text"));
    entry->trigger();
    menu->close();
    Settle();
    EXPECT_TRUE(ReadableOf(Viewer())->isVisible());
}

TEST_F(View, APageOfAFileThatHasGoneSaysSo) {
    Open(1);
    OpenViewer(0);
    QFile::remove(Archive(Name(1)));
    QTest::keyClick(TextOf(Viewer()), Qt::Key_R, Qt::ControlModifier);
    Settle();
    EXPECT_FALSE(ReadableOf(Viewer())->Text().isEmpty());
}

TEST_F(View, ThePageOfAnotherMessageIsReadAnew) {
    Open(2);
    OpenViewer(0);
    QTest::keyClick(TextOf(Viewer()), Qt::Key_R, Qt::ControlModifier);
    Settle();
    OpenViewer(1);
    EXPECT_TRUE(TextOf(Viewer())->isVisible()) << "the form that is set counts, for each message anew";
    EXPECT_EQ(TextOf(Viewer())->Text(), QString::fromLatin1(Mail(2)));
    QTest::keyClick(TextOf(Viewer()), Qt::Key_R, Qt::ControlModifier);
    Settle();
    EXPECT_TRUE(ReadableOf(Viewer())->Text().contains(QStringLiteral("Mail 2")));
}
