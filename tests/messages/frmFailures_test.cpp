#include "messages/frmFailures.h"

#include "tests/support/DialogVisit.h"
#include "tests/support/MainWindowFixture.h"

#include <QClipboard>
#include <QPushButton>
#include <QToolButton>

namespace quellbox {
namespace {

class Failures : public MainWindowTest {
protected:
    void SetUp() override {
        AddThree();
        OpenRefreshed();
    }

    /// Unblocks two messages of which the pickup directory holds one already.
    void UnblockTwoOfWhichOneFails() {
        files_.Add(QStringLiteral("/pickup/a.eml"), "somebody else's", 1);
        ClickRow(0);
        ClickRow(1, Qt::ControlModifier);
        Action("mnuActionsUnblock")->trigger();
        Settle();
    }

    QToolButton* Mark() const { return Find<QToolButton>("btnFailures"); }

    static std::string Cell(const QDialog& dialog, int row, int column) {
        const auto* list = dialog.findChild<QTreeWidget*>(QStringLiteral("lvwFailures"));
        return list->topLevelItem(row)->text(column).toStdString();
    }
};

TEST_F(Failures, AreCountedInTheStatusBarWhileTheRestStaysAsItIs) {
    EXPECT_FALSE(Mark()->isVisible());
    UnblockTwoOfWhichOneFails();
    EXPECT_TRUE(Mark()->isVisible());
    EXPECT_EQ(Mark()->text().toStdString(), "1 failed");
    EXPECT_EQ(Keys(), "c.eml") << "the rows go whatever becomes of the files";
    EXPECT_EQ(Panel("info"), "c.eml");
    EXPECT_TRUE(errors_.isEmpty());
    EXPECT_TRUE(files_.Paths().contains(QStringLiteral("/archive/a.eml")));
}

TEST_F(Failures, AreShownWithReasonAndAdviceByTheMarkOrItsKey) {
    UnblockTwoOfWhichOneFails();
    DialogVisit byMouse("frmFailures", [](const QDialog& dialog) {
        EXPECT_EQ(Cell(dialog, 0, 0), "a.eml");
        EXPECT_EQ(Cell(dialog, 0, 1), "The pickup directory holds a message of this name already.");
        EXPECT_NE(Cell(dialog, 0, 2), "");
    });
    QTest::mouseClick(Mark(), Qt::LeftButton);
    EXPECT_TRUE(byMouse.Happened());
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window_.get(); }, patience));
    DialogVisit byKey("frmFailures", [](const QDialog&) {});
    QTest::keyClick(List(), Qt::Key_F8);
    EXPECT_TRUE(QTest::qWaitFor([&] { return byKey.Happened(); }, patience));
    EXPECT_TRUE(Mark()->isVisible()) << "having looked changes nothing";
}

TEST_F(Failures, AreGoneAfterAnActionThatWentWellButNotAfterARefresh) {
    UnblockTwoOfWhichOneFails();
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Keys(), "a.eml c.eml");
    EXPECT_TRUE(Mark()->isVisible());
    ClickRow(1);
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_FALSE(Mark()->isVisible());
}

TEST_F(Failures, OfACleansingAreToldToo) {
    files_.SetReadOnly(QStringLiteral("/archive/c.eml"));
    window_->Jobs().Cleanse(QStringLiteral("/archive/"), 0);
    Settle();
    EXPECT_EQ(Mark()->text().toStdString(), "1 failed");
}

TEST_F(Failures, OfAutomaticTolerationAreToldToo) {
    const qint64 modified = noon_.toMSecsSinceEpoch() * 1'000'000;
    files_.Add(QStringLiteral("/archive/good.eml"), "X-Sender: friend@good.example\nSubject: x\n\n", modified);
    files_.Add(QStringLiteral("/pickup/good.eml"), "somebody else's", 1);
    store_.SetValue(QStringLiteral("Tolerate"), QStringLiteral("good.example"), QStringLiteral("0"));
    window_->State().TolerationLevel = 2;
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Mark()->text().toStdString(), "1 failed");
}

TEST_F(Failures, CanBeCopiedAsText) {
    UnblockTwoOfWhichOneFails();
    DialogVisit visit("frmFailures", [](const QDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("btnCopy")), Qt::LeftButton);
    });
    Mark()->click();
    ASSERT_TRUE(visit.Happened());
    const QString copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.startsWith(QStringLiteral("a.eml\tThe pickup directory holds"))) << copied.toStdString();
    EXPECT_EQ(copied.count(QLatin1Char('\n')), 1);
}

TEST_F(Failures, AreMarkedWithoutMovingAnything) {
    window_->resize(window_->minimumSizeHint());
    QCoreApplication::processEvents();
    const QSize window = window_->size();
    const QRect size = PanelView("size")->geometry();
    const QRect info = PanelView("info")->geometry();
    UnblockTwoOfWhichOneFails();
    QCoreApplication::processEvents();
    EXPECT_EQ(window_->size(), window);
    EXPECT_EQ(PanelView("size")->geometry(), size);
    EXPECT_EQ(PanelView("info")->geometry(), info);
    EXPECT_TRUE(info.contains(Mark()->geometry().center()));
    EXPECT_LE(PanelView("info")->contentsRect().right() + info.left(), Mark()->geometry().left());
}

} // namespace
} // namespace quellbox
