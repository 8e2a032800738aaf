#include "contents/StructureTree.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quellbox;

namespace {

bool HoldsControlCharacter(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar character) { return character.category() == QChar::Other_Control; });
}

void ExpectSoundLabels(const StructureNode& node) {
    EXPECT_FALSE(node.text.isEmpty());
    EXPECT_FALSE(HoldsControlCharacter(node.text)) << node.text.toStdString();
    EXPECT_EQ(node.isAttachment, node.text.startsWith(QStringLiteral("ATTACHMENT:")));
    for (const StructureNode& child : node.children) {
        ExpectSoundLabels(child);
    }
}

void ExpectSoundPart(const StructureNode& part, size_t index, const MessagePart& source) {
    EXPECT_EQ(part.text, QStringLiteral("PART%1").arg(index + 1));
    EXPECT_EQ(part.key, QStringLiteral("part%1").arg(index));
    ASSERT_FALSE(part.children.empty());
    const StructureNode& headers = part.children.front();
    EXPECT_EQ(headers.text, QStringLiteral("HEADERS"));
    EXPECT_EQ(headers.key, QStringLiteral("header%1").arg(index));
    EXPECT_EQ(headers.children.size(), source.headers.size());
    EXPECT_LE(part.children.size(), 3U); // header fields, attachment, text
    for (size_t child = 1; child < part.children.size(); ++child) {
        EXPECT_TRUE(part.children[child].key.isEmpty());
        EXPECT_TRUE(part.children[child].children.empty());
    }
}

void ExpectSoundTree(const QByteArray& bytes) {
    MailMessage message;
    if (message.LoadBytes(bytes) != 0) {
        return; // the window builds no tree of it
    }
    const StructureTree tree = BuildStructureTree(message);
    ASSERT_EQ(tree.size(), message.Parts().size() + 1);
    EXPECT_EQ(tree.front().text, QStringLiteral("MESSAGE"));
    EXPECT_EQ(tree.front().key, QStringLiteral("message"));
    for (const StructureNode& node : tree) {
        ExpectSoundLabels(node);
    }
    for (size_t index = 0; index < message.Parts().size(); ++index) {
        ExpectSoundPart(tree[index + 1], index, message.Parts()[index]);
    }
}

} // namespace

TEST(CorpusTree, EveryMessageHasASoundTree) {
    const QString folder = QStringLiteral(QUELLBOX_SOURCE_DIR "/../shared/corpus");
    QDirIterator files(folder, {QStringLiteral("*.eml")}, QDir::Files, QDirIterator::Subdirectories);
    if (!files.hasNext()) {
        GTEST_SKIP() << "no corpus";
    }
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        SCOPED_TRACE(file.fileName().toStdString());
        ExpectSoundTree(file.readAll());
    }
}
