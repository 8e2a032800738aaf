#include "app/StructureTreeView.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

/// A tree of its own window, which is smaller than most labels are wide.
class StructureTreeTest : public testing::Test {
protected:
    StructureTreeTest() {
        tree_.resize(200, 150);
        tree_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&tree_));
    }

    static StructureNode Leaf(const QString& text, const QString& tag = {}) {
        StructureNode node;
        node.text = text;
        node.tag = tag;
        return node;
    }

    /// The message with its fields, and a part with its headers.
    static StructureTree Structure(std::vector<StructureNode> fields, std::vector<StructureNode> headers = {}) {
        StructureNode root = Leaf(QStringLiteral("MESSAGE"));
        root.children = std::move(fields);
        StructureNode part = Leaf(QStringLiteral("PART1"));
        part.children = std::move(headers);
        return {root, part};
    }

    static QString LongText(int size) { return QString(size, QLatin1Char('m')); }

    int MostRight() const { return tree_.horizontalScrollBar()->maximum(); }

    /// Whether the end of a node's label is in sight after scrolling to the right.
    bool EndCanBeSeen(const QTreeWidgetItem* item) {
        tree_.horizontalScrollBar()->setValue(MostRight());
        const QRect place = tree_.visualItemRect(item);
        const int text = tree_.fontMetrics().horizontalAdvance(item->text(0));
        return place.width() >= text && place.right() <= tree_.viewport()->rect().right();
    }

    void ClickNode(const QTreeWidgetItem* item, int x) {
        QTest::mouseClick(tree_.viewport(), Qt::LeftButton, {}, {x, tree_.visualItemRect(item).center().y()});
    }

    StructureTreeView tree_{nullptr};
};

TEST_F(StructureTreeTest, ScrollsToTheEndOfItsLongestLabel) {
    tree_.ShowStructure(Structure({Leaf(QStringLiteral("short")), Leaf(LongText(300))}), {});
    EXPECT_GT(MostRight(), 0);
    EXPECT_TRUE(EndCanBeSeen(tree_.topLevelItem(0)->child(1)));
}

TEST_F(StructureTreeTest, ShortLabelsNeedNoScrollingEvenAfterLongOnes) {
    tree_.ShowStructure(Structure({Leaf(QStringLiteral("short"))}), {});
    EXPECT_EQ(MostRight(), 0);
    tree_.ShowStructure(Structure({Leaf(LongText(300))}), {});
    ASSERT_GT(MostRight(), 0);
    tree_.ShowStructure(Structure({Leaf(QStringLiteral("short"))}), {});
    QCoreApplication::processEvents();
    EXPECT_EQ(MostRight(), 0);
    tree_.ShowStructure(Structure({Leaf(LongText(300))}), {});
    ASSERT_GT(MostRight(), 0);
    tree_.ShowStructure({}, {});
    QCoreApplication::processEvents();
    EXPECT_EQ(MostRight(), 0);
    EXPECT_TRUE(tree_.IsEmpty());
}

TEST_F(StructureTreeTest, ANodeThatIsExpandedCanBeReadToItsEnd) {
    tree_.ShowStructure(Structure({}, {Leaf(LongText(300))}), {});
    EXPECT_EQ(MostRight(), 0);
    QTreeWidgetItem* part = tree_.topLevelItem(1);
    part->setExpanded(true);
    EXPECT_GT(MostRight(), 0);
    EXPECT_TRUE(EndCanBeSeen(part->child(0)));
}

TEST_F(StructureTreeTest, OfTenThousandNodesTheLastOneCanBeReadToItsEnd) {
    constexpr int count = 10'000;
    std::vector<StructureNode> headers(count - 1, Leaf(QStringLiteral("header")));
    headers.push_back(Leaf(LongText(1000)));
    tree_.ShowStructure(Structure({}, std::move(headers)), {true, false});
    const QTreeWidgetItem* last = tree_.topLevelItem(1)->child(count - 1);
    tree_.scrollToBottom();
    EXPECT_TRUE(EndCanBeSeen(last));
}

TEST_F(StructureTreeTest, AWiderFontWidensTheTree) {
    tree_.ShowStructure(Structure({Leaf(LongText(300))}), {});
    const int before = MostRight();
    QFont font = tree_.font();
    font.setPointSizeF(2 * font.pointSizeF());
    tree_.setFont(font);
    QCoreApplication::processEvents();
    EXPECT_GT(MostRight(), before);
    EXPECT_TRUE(EndCanBeSeen(tree_.topLevelItem(0)->child(0)));
}

TEST_F(StructureTreeTest, AClickBesideAShortLabelIsAClickOnItsNode) {
    tree_.ShowStructure(Structure({Leaf(QStringLiteral("TEXT: a"), QStringLiteral("a\r\nb"))}), {});
    const QSignalSpy clicks(&tree_, &StructureTreeView::NodeClick);
    ClickNode(tree_.topLevelItem(0)->child(0), tree_.viewport()->width() - 2);
    ASSERT_EQ(clicks.count(), 1);
    EXPECT_EQ(clicks[0], QVariantList({false, QStringLiteral("TEXT: a"), QStringLiteral("a\r\nb")}));
    ClickNode(tree_.topLevelItem(0), tree_.viewport()->width() - 2);
    ASSERT_EQ(clicks.count(), 2);
    EXPECT_EQ(clicks[1], QVariantList({true, QStringLiteral("MESSAGE"), QString()}));
}

TEST_F(StructureTreeTest, ANodeReachedWithAKeyIsClickedOnceAndALongLabelIsToldInFull) {
    constexpr int longest = 1000;
    tree_.ShowStructure(Structure({Leaf(LongText(longest)), Leaf(LongText(longest + 1))}), {});
    QTreeWidgetItem* root = tree_.topLevelItem(0);
    EXPECT_EQ(root->child(0)->text(0), LongText(longest));
    EXPECT_EQ(root->child(1)->text(0), LongText(longest) + QChar(0x2026));
    tree_.setCurrentItem(root->child(0));
    tree_.activateWindow();
    tree_.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([this] { return tree_.hasFocus(); }));
    const QSignalSpy clicks(&tree_, &StructureTreeView::NodeClick);
    QTest::keyClick(&tree_, Qt::Key_Down);
    ASSERT_EQ(clicks.count(), 1);
    EXPECT_EQ(clicks[0][1].toString(), LongText(longest + 1));
}

TEST_F(StructureTreeTest, TheTogglesLeaveTheRootAndExpandTheRest) {
    tree_.ShowStructure(Structure({Leaf(QStringLiteral("a"))}, {Leaf(QStringLiteral("b"))}), {});
    EXPECT_TRUE(tree_.topLevelItem(0)->isExpanded());
    EXPECT_FALSE(tree_.topLevelItem(1)->isExpanded());
    tree_.ApplyToggles({true, false});
    EXPECT_TRUE(tree_.topLevelItem(1)->isExpanded());
    tree_.ApplyToggles({false, false});
    EXPECT_TRUE(tree_.topLevelItem(0)->isExpanded());
    EXPECT_FALSE(tree_.topLevelItem(1)->isExpanded());
}

TEST_F(StructureTreeTest, TheScrollBarThatARevealedAttachmentBringsDoesNotHideIt) {
    StructureNode attachment = Leaf(QStringLiteral("ATTACHMENT: ") + LongText(300));
    attachment.isAttachment = true;
    std::vector<StructureNode> headers(100, Leaf(QStringLiteral("header")));
    headers.push_back(attachment);
    headers.insert(headers.end(), 100, Leaf(QStringLiteral("header")));
    const StructureTree structure = Structure({}, std::move(headers));
    for (int height = 150; height < 168; ++height) { // how much of a row is in sight below it differs
        tree_.ShowStructure({}, {});
        tree_.resize(tree_.width(), height);
        QCoreApplication::processEvents();
        ASSERT_EQ(MostRight(), 0);
        tree_.ShowStructure(structure, {true, false});
        const QTreeWidgetItem* item = tree_.topLevelItem(1)->child(100);
        EXPECT_GT(MostRight(), 0);
        EXPECT_LE(tree_.visualItemRect(item).bottom(), tree_.viewport()->rect().bottom()) << height;
        EXPECT_TRUE(item->font(0).bold());
    }
}

TEST_F(StructureTreeTest, NorDoesOneThatComesWhenATreeInSightIsScrolled) {
    StructureNode attachment = Leaf(QStringLiteral("ATTACHMENT: ") + LongText(300));
    attachment.isAttachment = true;
    StructureNode part = Leaf(QStringLiteral("PART"));
    part.children = {Leaf(QStringLiteral("HEADERS")), Leaf(QStringLiteral("TEXT: a"))};
    StructureTree structure(100, part);
    structure[50].children[1] = attachment;
    for (int height = 150; height < 168; ++height) {
        tree_.resize(tree_.width(), height);
        tree_.ShowStructure(structure, {});
        QCoreApplication::processEvents();
        ASSERT_EQ(MostRight(), 0);
        tree_.ApplyToggles({false, true});
        QCoreApplication::processEvents();
        const QRect place = tree_.visualItemRect(tree_.topLevelItem(50)->child(1));
        EXPECT_GT(MostRight(), 0);
        EXPECT_TRUE(tree_.viewport()->rect().contains(place.left(), place.top())) << height;
        EXPECT_LE(place.bottom(), tree_.viewport()->rect().bottom()) << height;
    }
}

} // namespace
} // namespace quellbox
