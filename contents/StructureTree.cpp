#include "contents/StructureTree.h"

#include "mail/DisplayText.h"

#include <functional>

namespace quellbox {

namespace {

QString Label(const QString& name, const QString& value) {
    return name.toUpper() + QStringLiteral(": ") + CleanseForDisplay(value);
}

void AddLeaf(StructureNode& parent, const QString& label, const QString& tag) {
    const bool isAttachment = label.startsWith(QLatin1String("ATTACHMENT:"));
    parent.children.push_back({label, {}, tag, isAttachment, {}});
}

void AddPropertyNode(StructureNode& parent, const QString& name, const QString& value) {
    if (value.isEmpty()) {
        return;
    }
    if (name != QLatin1String("text")) {
        AddLeaf(parent, Label(name, value), value);
        return;
    }
    const qsizetype lineEnd = value.indexOf(QLatin1Char('\r'));
    if (lineEnd >= 0) { // deliberate: a text without a line end has no node
        AddLeaf(parent, Label(name, value.left(lineEnd)), value);
    }
}

StructureNode PartNode(const MessagePart& part, size_t index) {
    const QString number = QString::number(index);
    StructureNode node{
        QStringLiteral("PART") + QString::number(index + 1), QStringLiteral("part") + number, {}, false, {}};
    StructureNode headers{QStringLiteral("HEADERS"), QStringLiteral("header") + number, {}, false, {}};
    headers.children.reserve(part.headers.size());
    for (const auto& [name, value] : part.headers) {
        AddLeaf(headers, Label(name, value), {});
    }
    node.children.push_back(std::move(headers));
    AddPropertyNode(node, QStringLiteral("attachment"), part.attachment);
    AddPropertyNode(node, QStringLiteral("text"), part.text);
    return node;
}

} // namespace

StructureTree BuildStructureTree(const MailMessage& message, const QByteArrayList& reasons) {
    StructureTree tree;
    tree.reserve(message.Parts().size() + 1);
    StructureNode root{QStringLiteral("MESSAGE"), QStringLiteral("message"), {}, false, {}};
    for (const QString& name : {QStringLiteral("DATE"), QStringLiteral("FROM"), QStringLiteral("TO"),
                                QStringLiteral("CC"), QStringLiteral("BCC"), QStringLiteral("Subject")}) {
        AddPropertyNode(root, name, message.Property(name));
    }
    for (const QByteArray& reason : reasons) {
        const QString name = QString::fromLatin1(reason);
        for (const QString& value : message.Headers(name)) {
            AddPropertyNode(root, name, value);
        }
    }
    tree.push_back(std::move(root));
    for (size_t index = 0; index < message.Parts().size(); ++index) {
        tree.push_back(PartNode(message.Parts()[index], index));
    }
    return tree;
}

TogglesResult ApplyContentsToggles(const StructureTree& tree, bool expandAll, ContentsToggles pressed) {
    TogglesResult result;
    result.expanded = expandAll;
    result.firstNode = expandAll ? 0 : 1;
    int number = 0;
    int parentOfLast = -1;
    const std::function<void(const StructureNode&, int)> visit = [&](const StructureNode& node, int parent) {
        const int own = number++;
        if (node.isAttachment) {
            result.bold.push_back(own);
            parentOfLast = parent;
        }
        for (const StructureNode& child : node.children) {
            visit(child, own);
        }
    };
    for (const StructureNode& node : tree) {
        visit(node, -1);
    }
    const int last = result.bold.empty() ? -1 : result.bold.back();
    if (tree.empty()) {
        return result;
    }
    if (pressed.collapse && last >= 0) {
        result.scrollTo = last;
    } else if (pressed.attachment) {
        result.expandAlso = parentOfLast;
        result.scrollTo = last >= 0 ? last : 0;
    }
    return result;
}

std::optional<QString> TextOfClickedNode(bool hasChildren, const QString& text, const QString& tag) {
    if (hasChildren) {
        return std::nullopt;
    }
    return text.startsWith(QLatin1String("TEXT")) ? tag : text;
}

} // namespace quellbox
