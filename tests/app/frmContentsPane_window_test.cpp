#include "tests/support/RealFolderWindow.h"

#include <QLocale>
#include <QScrollBar>
#include <QTextBlock>

using namespace quellbox;

namespace {

class Contents : public RealFolderWindowTest {
protected:
    QTreeWidgetItem* Item(const QString& start) {
        for (QTreeWidgetItemIterator item(Tree()); *item != nullptr; ++item) {
            if ((*item)->text(0).startsWith(start)) {
                return *item;
            }
        }
        return nullptr;
    }

    /// A point on the first letter of a node; the column may be wider than the view.
    QPoint BeginOf(const QTreeWidgetItem* item) {
        const QRect place = Tree()->visualItemRect(item);
        return {place.left() + 5, place.center().y()};
    }

    void ClickNode(const QString& start) {
        QTreeWidgetItem* item = Item(start);
        ASSERT_NE(item, nullptr);
        Tree()->scrollToItem(item);
        QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, BeginOf(item));
        Settle();
    }

    void OpenWithAttachment() {
        Write(Archive(Name(1)), "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                                "--b\r\n\r\none\r\ntwo\r\n--b\r\nContent-Type: text/plain\r\n"
                                "Content-Disposition: attachment; filename=a.txt\r\n\r\nx\r\n--b--\r\n");
        Open();
    }
};

} // namespace

TEST_F(Contents, AClickShowsTheFileAndTheTreeWithOnlyTheRootExpanded) {
    Open(2);
    Click(0);
    EXPECT_EQ(Raw()->FileName(), Archive(Name(1)));
    ASSERT_EQ(Tree()->topLevelItemCount(), 2);
    EXPECT_TRUE(Tree()->topLevelItem(0)->isExpanded());
    EXPECT_FALSE(Tree()->topLevelItem(1)->isExpanded());
    EXPECT_NE(Item(QStringLiteral("SUBJECT: Mail 1")), nullptr);
}

TEST_F(Contents, NodesShowTheFileTheTextOrThemselves) {
    Open(1);
    Click(0);
    ClickNode(QStringLiteral("TEXT: first line"));
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("first line\nsecond line\n"));
    EXPECT_TRUE(Raw()->FileName().isEmpty());
    ClickNode(QStringLiteral("SUBJECT:"));
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("SUBJECT: Mail 1"));
    ClickNode(QStringLiteral("PART1"));
    EXPECT_EQ(Raw()->FileName(), Archive(Name(1)));
    EXPECT_TRUE(Raw()->toPlainText().startsWith(QStringLiteral("X-SENDER:")));
}

TEST_F(Contents, KeysInTheTreeShowNodesToo) {
    Open(1);
    Click(0);
    ClickNode(QStringLiteral("MESSAGE"));
    Tree()->setFocus();
    QTest::keyClick(Tree(), Qt::Key_Down);
    Settle();
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("FROM: Someone <f@x.org>"));
}

TEST_F(Contents, AFileThatHasGoneLeavesTheTextWhenAParentNodeIsClicked) {
    Open(1);
    Click(0);
    ClickNode(QStringLiteral("SUBJECT:"));
    QFile::remove(Archive(Name(1)));
    ClickNode(QStringLiteral("MESSAGE"));
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("SUBJECT: Mail 1"));
}

TEST_F(Contents, AClickOnARowWhoseFileHasGoneEmptiesThePanes) {
    Open(2);
    Click(0);
    QFile::remove(Archive(Name(2)));
    Click(1);
    EXPECT_TRUE(Raw()->toPlainText().isEmpty());
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
}

TEST_F(Contents, AnUnreadableMessageEmptiesTheTree) {
    Write(Archive(Name(1)), "");
    Open();
    Click(0);
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
}

TEST_F(Contents, AFileThatIsLoadedIsNotLoadedAgain) {
    Open(1);
    Click(0);
    Write(Archive(Name(1)), "Subject: changed\r\n\r\n");
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().contains(QStringLiteral("Mail 1")));
    Raw()->clear();
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().contains(QStringLiteral("changed")));
}

TEST_F(Contents, AClickWithAModifierEmptiesThePanesAndSoDoesAHiddenPane) {
    Open(2);
    Click(0);
    Click(1, Qt::ControlModifier);
    EXPECT_TRUE(Raw()->toPlainText().isEmpty());
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
    Command("mnuViewContents")->trigger();
    Settle();
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().isEmpty());
    Command("mnuViewContents")->trigger();
    Settle();
    EXPECT_FALSE(Raw()->toPlainText().isEmpty());
    EXPECT_EQ(Tree()->topLevelItemCount(), 2);
}

TEST_F(Contents, TheTogglesExpandAndRevealWithoutRebuilding) {
    OpenWithAttachment();
    Click(0);
    QTreeWidgetItem* attachment = Item(QStringLiteral("ATTACHMENT: a.txt"));
    ASSERT_NE(attachment, nullptr);
    EXPECT_TRUE(attachment->font(0).bold());
    EXPECT_FALSE(attachment->parent()->isExpanded());
    Command("tlbContents_attachment")->trigger();
    Settle();
    EXPECT_TRUE(attachment->parent()->isExpanded());
    EXPECT_FALSE(Tree()->topLevelItem(1)->isExpanded());
    Command("tlbContents_collapse")->trigger();
    Settle();
    EXPECT_TRUE(Tree()->topLevelItem(1)->isExpanded());
    EXPECT_TRUE(Tree()->topLevelItem(1)->child(0)->isExpanded() ||
                Tree()->topLevelItem(1)->child(0)->childCount() == 0);
    Tree()->topLevelItem(0)->setExpanded(false);
    Command("tlbContents_attachment")->trigger();
    Settle();
    EXPECT_TRUE(Tree()->topLevelItem(0)->isExpanded());
    Command("tlbContents_collapse")->trigger();
    Settle();
    EXPECT_TRUE(Tree()->topLevelItem(0)->isExpanded());
    EXPECT_FALSE(Tree()->topLevelItem(1)->isExpanded());
    EXPECT_EQ(Item(QStringLiteral("ATTACHMENT: a.txt")), attachment);
}

TEST_F(Contents, AMessageWithoutPartsShowsItsFieldsOnly) {
    Write(Archive(Name(1)), "To: b@x.org\r\nSubject: Header only\r\nDate:\r\n");
    Write(Archive(Name(2)), "X-Other: 1\r\n");
    Open();
    window->Messages().sort(ColumnTo, Qt::DescendingOrder);
    ASSERT_EQ(Keys(), QStringList({Name(1), Name(2)}));
    Click(0);
    ASSERT_EQ(Tree()->topLevelItemCount(), 1);
    QTreeWidgetItem* message = Tree()->topLevelItem(0);
    EXPECT_EQ(message->text(0), QStringLiteral("MESSAGE"));
    EXPECT_TRUE(message->isExpanded());
    ASSERT_EQ(message->childCount(), 2);
    EXPECT_EQ(message->child(0)->text(0), QStringLiteral("TO: b@x.org"));
    EXPECT_EQ(message->child(1)->text(0), QStringLiteral("SUBJECT: Header only"));
    Click(1);
    ASSERT_EQ(Tree()->topLevelItemCount(), 1);
    EXPECT_EQ(Tree()->topLevelItem(0)->childCount(), 0);
}

TEST_F(Contents, RevealScrollsToTheSecondOfTwoAttachments) {
    QByteArray parts;
    const auto addTexts = [&parts] {
        for (int number = 0; number < 40; ++number) {
            parts += "--b\r\n\r\none\r\ntwo\r\n";
        }
    };
    addTexts();
    for (const char* name : {"One.zip", "Two.zip"}) {
        parts += QByteArray("--b\r\nContent-Disposition: attachment; filename=") + name + "\r\n\r\nx\r\n";
        addTexts();
    }
    Write(Archive(Name(1)),
          "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n" + parts + "--b--\r\n");
    Open();
    Click(0);
    QTreeWidgetItem* one = Item(QStringLiteral("ATTACHMENT: One.zip"));
    QTreeWidgetItem* two = Item(QStringLiteral("ATTACHMENT: Two.zip"));
    ASSERT_TRUE(one != nullptr && two != nullptr);
    EXPECT_TRUE(one->font(0).bold());
    EXPECT_TRUE(two->font(0).bold());
    EXPECT_FALSE(one->parent()->font(0).bold());
    const auto isInSight = [this](QTreeWidgetItem* item) {
        return Tree()->visualItemRect(item).isValid() && Tree()->viewport()->rect().contains(BeginOf(item));
    };
    EXPECT_FALSE(isInSight(two));
    Command("tlbContents_attachment")->trigger();
    Settle();
    EXPECT_TRUE(isInSight(two));
    EXPECT_FALSE(isInSight(one));
    EXPECT_FALSE(one->parent()->isExpanded());
    Tree()->scrollToTop();
    ASSERT_FALSE(isInSight(two));
    Command("tlbContents_collapse")->trigger();
    Settle();
    EXPECT_TRUE(one->parent()->isExpanded());
    EXPECT_TRUE(isInSight(two));
}

TEST_F(Contents, AHugeMessageComesInPiecesAndAnotherOneCancelsTheRest) {
    QByteArray huge = Mail(1);
    while (huge.size() < 3 * 1024 * 1024) {
        huge += QByteArray(70, 'x') + "\r\n";
    }
    huge += "the end\r\n";
    Write(Archive(Name(1)), huge);
    Write(Archive(Name(2)), Mail(2));
    Open();
    Click(0);
    EXPECT_FALSE(Raw()->IsComplete());
    EXPECT_EQ(Raw()->Text().size(), huge.size());
    Click(1);
    EXPECT_TRUE(Raw()->IsComplete());
    EXPECT_EQ(Raw()->toPlainText(), QString::fromLatin1(Mail(2)).remove(QLatin1Char('\r')));
    Click(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Raw()->IsComplete(); }, 60000));
    EXPECT_EQ(Raw()->toPlainText().size(), QString::fromLatin1(huge).remove(QLatin1Char('\r')).size());
    EXPECT_TRUE(Raw()->toPlainText().endsWith(QStringLiteral("the end\n")));
    EXPECT_EQ(Raw()->textCursor().position(), 0);
}

TEST_F(Contents, ALongLabelIsShortenedAndItsNodeShowsAllOfIt) {
    constexpr int longest = 1000;
    const QString label = QStringLiteral("SUBJECT: ");
    for (const int size : {longest, longest + 1}) {
        const QByteArray subject(size - label.size(), 's');
        Write(Archive(Name(1)), "Subject: " + subject + "\r\n\r\n");
        Open();
        Click(0);
        QTreeWidgetItem* item = Item(label);
        ASSERT_NE(item, nullptr);
        const QString whole = label + QString::fromLatin1(subject);
        EXPECT_EQ(item->text(0), size == longest ? whole : whole.left(longest) + QChar(0x2026));
        ClickNode(label);
        EXPECT_EQ(Raw()->toPlainText(), whole);
    }
}

TEST_F(Contents, TheTreeScrollsToTheEndOfALongLabel) {
    Write(Archive(Name(1)), "Subject: " + QByteArray(900, 's') + "\r\n\r\n");
    Open();
    Click(0);
    QTreeWidgetItem* item = Item(QStringLiteral("SUBJECT: "));
    ASSERT_NE(item, nullptr);
    EXPECT_GE(Tree()->visualItemRect(item).width(), Tree()->fontMetrics().horizontalAdvance(item->text(0)));
    Tree()->horizontalScrollBar()->setValue(Tree()->horizontalScrollBar()->maximum());
    EXPECT_LE(Tree()->visualItemRect(item).right(), Tree()->viewport()->rect().right());
}

TEST_F(Contents, ATextOfTooManyLinesSaysHowMuchIsNotShown) {
    const QByteArray head = "Subject: x\r\n\r\n";
    Write(Archive(Name(1)), head + QByteArray(3 * RawPane::mostLines, '\n'));
    Open();
    Click(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Raw()->IsComplete(); }, 120000));
    const int lines = Raw()->document()->blockCount();
    EXPECT_GE(lines, RawPane::mostLines);
    EXPECT_LE(lines, RawPane::mostLines + RawPane::mostLines / 10);
    const QString last = Raw()->document()->lastBlock().text();
    const QLocale locale;
    // All lines but the two of the head are one character each, and the last one is the notice.
    const qsizetype all = head.size() + 3 * RawPane::mostLines;
    const qsizetype rest = all - (head.size() + lines - 3);
    EXPECT_EQ(last, QStringLiteral("[The rest is not shown: %1 of %2 characters]")
                        .arg(locale.toString(rest), locale.toString(all)));
    EXPECT_EQ(Raw()->Text().size(), all) << "the viewer still gets the whole text";
    Raw()->ShowText(QStringLiteral("short"));
    EXPECT_EQ(Raw()->toPlainText(), QStringLiteral("short"));
    EXPECT_TRUE(Raw()->IsComplete());
}

TEST_F(Contents, HtmlStaysPlainText) {
    Write(Archive(Name(1)), "Subject: <b>x</b>\r\n\r\n<h1>big</h1>\r\n");
    Open();
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().contains(QStringLiteral("<h1>big</h1>")));
}
