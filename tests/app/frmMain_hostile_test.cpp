#include "tests/support/RealFolderWindow.h"

#include <QTextBlock>
#include <QTimer>

using namespace quellbox;

namespace {

class Hostile : public RealFolderWindowTest {
protected:
    /// Selects all of `count` messages, whatever happens to their files afterwards.
    void OpenAndSelectAll(int count) {
        Open(count);
        ASSERT_EQ(window->Messages().Count(), count);
        List()->selectAll();
        window->UpdateSelectionStatus();
    }

    void ExpectOnly(const QString& folder, const QList<int>& numbers) {
        QStringList names;
        for (const int number : numbers) {
            names.append(Name(number));
            EXPECT_EQ(Read(folder + Name(number)), Mail(number));
        }
        EXPECT_EQ(QDir(folder).entryList(QDir::Files, QDir::Name), names);
    }

    void ExpectEmptyList() {
        EXPECT_EQ(window->Messages().Count(), 0);
        EXPECT_EQ(window->Panels().Count().text, QStringLiteral("0 messages"));
    }
};

} // namespace

TEST_F(Hostile, AMessageThatSomebodyElseDeletedGoesAndTheOthersAreUnblocked) {
    OpenAndSelectAll(3);
    ASSERT_TRUE(QFile::remove(Archive(Name(2))));
    Command("mnuActionsUnblock")->trigger();
    ExpectEmptyList();
    ExpectOnly(Archive(), {});
    ExpectOnly(Pickup(), {1, 3});
}

TEST_F(Hostile, AMessageThatSomebodyElseDeletedGoesAndOnlyTheSelectedOnesAreDeleted) {
    Open(4);
    Click(0);
    Click(1, Qt::ControlModifier);
    ASSERT_TRUE(QFile::remove(Archive(Name(1))));
    Command("mnuActionsDelete")->trigger();
    EXPECT_EQ(Keys(), QStringList({Name(3), Name(4)}));
    ExpectOnly(Archive(), {3, 4});
    ExpectOnly(Pickup(), {});
}

TEST_F(Hostile, AMissingPickupFolderKeepsTheArchiveFiles) {
    OpenAndSelectAll(2);
    ASSERT_TRUE(QDir(Pickup()).removeRecursively());
    Command("mnuActionsUnblock")->trigger();
    ExpectEmptyList();
    ExpectOnly(Archive(), {1, 2});
    window->mnuAcRefresh_Click();
    EXPECT_EQ(window->Messages().Count(), 2);
}

TEST_F(Hostile, ANameThatIsTakenStopsNoOtherMessage) {
    OpenAndSelectAll(3);
    Write(Pickup(Name(2)), "other");
    Command("mnuActionsUnblock")->trigger();
    ExpectEmptyList();
    ExpectOnly(Archive(), {2});
    EXPECT_EQ(Read(Pickup(Name(1))), Mail(1));
    EXPECT_EQ(Read(Pickup(Name(2))), QByteArray("other"));
    EXPECT_EQ(Read(Pickup(Name(3))), Mail(3));
}

TEST_F(Hostile, AnAttachmentNameIsOneHarmlessLine) {
    Write(Archive(Name(1)), "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                            "--b\r\nContent-Type: application/octet-stream\r\nContent-Disposition: attachment;\r\n"
                            " filename*=utf-8''..%2F..%5Cc:%5Ca%0D%0A%E2%80%AEgpj%E2%81%A6.exe\r\n\r\nx\r\n--b--\r\n");
    Open();
    Click(0);
    const QList<QTreeWidgetItem*> found =
        Tree()->findItems(QStringLiteral("ATTACHMENT:"), Qt::MatchStartsWith | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1);
    const QString label = found.first()->text(0);
    EXPECT_TRUE(label.endsWith(QStringLiteral("gpj.exe"))) << label.toStdString();
    for (const QChar character : label) {
        EXPECT_NE(character.category(), QChar::Other_Control) << label.toStdString();
        EXPECT_NE(character.category(), QChar::Other_Format) << label.toStdString();
    }
    Tree()->scrollToItem(found.first());
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, Tree()->visualItemRect(found.first()).center());
    // A name is only shown: nothing is written by it, neither here nor further up.
    EXPECT_EQ(QDir(root.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
              QStringList({QStringLiteral("archive"), QStringLiteral("pickup")}));
    EXPECT_EQ(QDir(Archive()).entryList(QDir::Files), QStringList({Name(1)}));
    EXPECT_TRUE(QDir(Pickup()).isEmpty());
}

TEST_F(Hostile, ALargeMessageShowsItsFirstScreenAndTheWindowKeepsRunning) {
    constexpr qsizetype size = 25 * 1024 * 1024;
    QByteArray large = Mail(1);
    large.reserve(size + 100);
    const QByteArray line = QByteArray(98, 'x') + "\r\n";
    while (large.size() < size) {
        large += line;
    }
    large += "the end\r\n";
    Write(Archive(Name(1)), large);
    loadPatience = std::chrono::milliseconds(24); // as in the program
    Open();
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, window.get(), [&] { ticks += Raw()->IsComplete() ? 0 : 1; });
    ticker.start(5);
    Click(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Raw()->Text().isEmpty(); }, 60000));
    ASSERT_FALSE(Raw()->IsComplete());
    const int linesOfAScreen = Raw()->viewport()->height() / Raw()->fontMetrics().lineSpacing();
    EXPECT_GT(Raw()->document()->blockCount(), linesOfAScreen);
    EXPECT_TRUE(Raw()->document()->firstBlock().text().startsWith(QStringLiteral("X-SENDER:")));
    ASSERT_TRUE(QTest::qWaitFor([this] { return Raw()->IsComplete(); }, 120000));
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(Raw()->document()->blockCount(), large.count('\n') + 1);
    EXPECT_EQ(Raw()->document()->lastBlock().previous().text(), QStringLiteral("the end"));
    EXPECT_EQ(Raw()->textCursor().position(), 0);
}
