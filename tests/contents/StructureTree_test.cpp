#include "contents/StructureTree.h"

#include "mail/ServerProfile.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

StructureTree TreeOf(const QByteArray& bytes) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(bytes), 0);
    return BuildStructureTree(message);
}

QStringList Texts(const std::vector<StructureNode>& nodes) {
    QStringList texts;
    for (const StructureNode& node : nodes) {
        texts.append(node.text);
    }
    return texts;
}

const QByteArray twoAttachments = "From: a@x.org\r\n"
                                  "Subject: Two\r\n"
                                  "MIME-Version: 1.0\r\n"
                                  "Content-Type: multipart/mixed; boundary=b\r\n"
                                  "\r\n"
                                  "--b\r\n"
                                  "Content-Type: text/plain\r\n"
                                  "\r\n"
                                  "first line\r\nsecond line\r\n"
                                  "--b\r\n"
                                  "Content-Type: application/zip; name=One.zip\r\n"
                                  "Content-Disposition: attachment; filename=One.zip\r\n"
                                  "\r\n"
                                  "x\r\n"
                                  "--b\r\n"
                                  "Content-Type: application/zip; name=Two.zip\r\n"
                                  "Content-Disposition: attachment; filename=Two.zip\r\n"
                                  "\r\n"
                                  "y\r\n"
                                  "--b--\r\n";

StructureNode Leaf(const QString& text) {
    return {text, {}, {}, text.startsWith(QStringLiteral("ATTACHMENT:")), {}};
}

} // namespace

TEST(StructureTree, SaysBelowTheMessageWhyItWasBlocked) {
    MailMessage message;
    ASSERT_EQ(message.LoadBytes("Subject: s\r\nX-Spam-Status: Yes, score=9\r\n\ttests=BAYES_99\r\n\r\nbody"), 0);
    EXPECT_EQ(
        Texts(BuildStructureTree(message, {"X-Amavis-Alert", "X-Spam-Status"}).front().children),
        (QStringList{QStringLiteral("SUBJECT: s"), QStringLiteral("X-SPAM-STATUS: Yes, score=9 tests=BAYES_99")}));
    EXPECT_EQ(Texts(BuildStructureTree(message).front().children), QStringList{QStringLiteral("SUBJECT: s")});
}

TEST(StructureTree, ShowsTheLimitBesideTheScoreWhereTheServerWritesBoth) {
    for (const auto& [profile, field] : std::initializer_list<std::pair<const char*, const char*>>{
             {"rspamd", "X-Spamd-Result: default: True [12.3 / 15.0]"},
             {"rspamd", "X-Spam-Status: Yes, score=12.3"},
             {"spamassassin", "X-Spam-Status: Yes, score=7 required=5"},
             {"amavis", "X-Spam-Status: Yes, score=13.402 tag=2 tag2=6.2 kill=6.9"}}) {
        MailMessage message;
        ASSERT_EQ(message.LoadBytes(QByteArray("Subject: s\r\n") + field + "\r\n\r\nbody"), 0);
        const StructureTree tree = BuildStructureTree(message, ProfileOf(QLatin1String(profile)).reasons);
        const QString text = QLatin1String(field);
        const qsizetype colon = text.indexOf(QLatin1Char(':'));
        EXPECT_EQ(Texts(tree.front().children).last(), text.left(colon).toUpper() + text.mid(colon)) << field;
    }
}

TEST(StructureTree, ShowsTheMessageFieldsInTheirFixedOrder) {
    const StructureTree tree = TreeOf("Subject: Hi There\r\nBcc: d@x.org\r\nCC: c@x.org\r\nTo: b@x.org\r\n"
                                      "From: a@x.org\r\nDate: Mon, 1 Mar 2004 10:00:00 +0100\r\n\r\n");
    ASSERT_EQ(tree.size(), 1U);
    EXPECT_EQ(tree[0].text, QStringLiteral("MESSAGE"));
    EXPECT_EQ(tree[0].key, QStringLiteral("message"));
    const QStringList expected{QStringLiteral("DATE: Mon, 1 Mar 2004 10:00:00 +0100"),
                               QStringLiteral("FROM: a@x.org"),
                               QStringLiteral("TO: b@x.org"),
                               QStringLiteral("CC: c@x.org"),
                               QStringLiteral("BCC: d@x.org"),
                               QStringLiteral("SUBJECT: Hi There")};
    EXPECT_EQ(Texts(tree[0].children), expected);
    EXPECT_EQ(tree[0].children[5].tag, QStringLiteral("Hi There"));
}

TEST(StructureTree, LeavesOutEmptyFields) {
    const StructureTree tree = TreeOf("X-Other: 1\r\nSubject:\r\nTo: \r\n\r\n");
    ASSERT_EQ(tree.size(), 1U);
    EXPECT_TRUE(tree[0].children.empty());
}

TEST(StructureTree, CountsCaptionsFromOneAndKeysFromZero) {
    const StructureTree tree = TreeOf(twoAttachments);
    ASSERT_EQ(tree.size(), 4U);
    EXPECT_EQ(tree[1].text, QStringLiteral("PART1"));
    EXPECT_EQ(tree[1].key, QStringLiteral("part0"));
    EXPECT_EQ(tree[3].text, QStringLiteral("PART3"));
    EXPECT_EQ(tree[3].key, QStringLiteral("part2"));
    EXPECT_EQ(tree[1].children[0].text, QStringLiteral("HEADERS"));
    EXPECT_EQ(tree[1].children[0].key, QStringLiteral("header0"));
}

TEST(StructureTree, UpperCasesHeaderNamesAndKeepsTheirValues) {
    const StructureTree tree = TreeOf(twoAttachments);
    EXPECT_EQ(tree[1].children[0].children[0].text, QStringLiteral("CONTENT-TYPE: text/plain"));
    EXPECT_TRUE(tree[1].children[0].children[0].tag.isEmpty());
    EXPECT_EQ(Texts(tree[2].children[0].children),
              QStringList({QStringLiteral("CONTENT-TYPE: application/zip; name=One.zip"),
                           QStringLiteral("CONTENT-DISPOSITION: attachment; filename=One.zip")}));
}

TEST(StructureTree, ShowsTheFirstLineOfATextAndKeepsTheWhole) {
    const StructureTree tree = TreeOf(twoAttachments);
    const StructureNode& text = tree[1].children.back();
    EXPECT_EQ(text.text, QStringLiteral("TEXT: first line"));
    EXPECT_TRUE(text.tag.startsWith(QStringLiteral("first line\r\nsecond line")));
    const StructureNode& attachment = tree[2].children[1];
    EXPECT_EQ(attachment.text, QStringLiteral("ATTACHMENT: One.zip"));
    EXPECT_EQ(attachment.tag, QStringLiteral("One.zip"));
    EXPECT_TRUE(attachment.isAttachment);
}

TEST(StructureTree, ATextWithoutALineEndHasNoNode) {
    const StructureTree tree = TreeOf("Subject: x\r\nContent-Type: text/plain; name=note.txt\r\n"
                                      "Content-Disposition: attachment; filename=note.txt\r\n\r\nno line end");
    ASSERT_EQ(tree.size(), 2U);
    EXPECT_EQ(Texts(tree[1].children),
              QStringList({QStringLiteral("HEADERS"), QStringLiteral("ATTACHMENT: note.txt")}));
}

TEST(StructureTree, CleansesLabelsButNotTags) {
    const StructureTree tree = TreeOf("Subject: a\xE2\x80\xAEz\r\n\r\n\xE2\x80\xAEtxt\r\n");
    EXPECT_EQ(tree[0].children[0].text, QStringLiteral("SUBJECT: az"));
    ASSERT_EQ(tree.size(), 2U);
    const StructureNode& text = tree[1].children.back();
    EXPECT_EQ(text.text, QStringLiteral("TEXT: txt"));
    EXPECT_TRUE(text.tag.startsWith(QChar(0x202E)));
}

TEST(ContentsToggles, ReleasedCollapseAllButTheRoot) {
    const TogglesResult result = ApplyContentsToggles(TreeOf(twoAttachments), false, {});
    EXPECT_FALSE(result.expanded);
    EXPECT_EQ(result.firstNode, 1);
    EXPECT_EQ(result.bold.size(), 2U);
    EXPECT_EQ(result.expandAlso, -1);
    EXPECT_EQ(result.scrollTo, -1);
}

TEST(ContentsToggles, CollapsePressedExpandsAllAndShowsTheLastAttachment) {
    const TogglesResult result = ApplyContentsToggles(TreeOf(twoAttachments), true, {true, false});
    EXPECT_TRUE(result.expanded);
    EXPECT_EQ(result.firstNode, 0);
    EXPECT_EQ(result.scrollTo, result.bold.back());
    EXPECT_EQ(result.expandAlso, -1);
}

TEST(ContentsToggles, AttachmentPressedExpandsThePartOfTheLastAttachment) {
    const StructureTree tree{{QStringLiteral("MESSAGE"), {}, {}, false, {Leaf(QStringLiteral("FROM: a"))}},
                             {QStringLiteral("PART1"), {}, {}, false, {Leaf(QStringLiteral("ATTACHMENT: 1"))}},
                             {QStringLiteral("PART2"), {}, {}, false, {Leaf(QStringLiteral("ATTACHMENT: 2"))}}};
    const TogglesResult result = ApplyContentsToggles(tree, false, {false, true});
    EXPECT_EQ(result.bold, std::vector<int>({3, 5}));
    EXPECT_EQ(result.expandAlso, 4);
    EXPECT_EQ(result.scrollTo, 5);
}

TEST(ContentsToggles, WithoutAttachmentsAttachmentPressedShowsTheRoot) {
    const StructureTree tree{{QStringLiteral("MESSAGE"), {}, {}, false, {}}};
    EXPECT_EQ(ApplyContentsToggles(tree, false, {false, true}).scrollTo, 0);
    EXPECT_EQ(ApplyContentsToggles(tree, true, {true, true}).scrollTo, 0);
    EXPECT_EQ(ApplyContentsToggles(tree, true, {true, false}).scrollTo, -1);
    EXPECT_EQ(ApplyContentsToggles({}, true, {true, true}).scrollTo, -1);
}

TEST(ClickedNode, WithChildrenShowsTheFile) {
    EXPECT_EQ(TextOfClickedNode(true, QStringLiteral("MESSAGE"), {}), std::nullopt);
}

TEST(ClickedNode, ATextShowsItsTagAnyOtherLeafItsOwnText) {
    const QString tag = QStringLiteral("whole\r\ntext");
    EXPECT_EQ(TextOfClickedNode(false, QStringLiteral("TEXT: whole"), tag), tag);
    EXPECT_EQ(TextOfClickedNode(false, QStringLiteral("FROM: a@x.org"), QStringLiteral("a@x.org")),
              QStringLiteral("FROM: a@x.org"));
    EXPECT_EQ(TextOfClickedNode(false, QStringLiteral("HEADERS"), {}), QStringLiteral("HEADERS"));
}
