#pragma once

#include "mail/MailMessage.h"

#include <QByteArrayList>
#include <QString>

#include <optional>
#include <vector>

namespace quellbox {

/// One node of the structure tree.
struct StructureNode {
    QString text;              ///< the label, fit for display
    QString key;               ///< "message", "part0", "header0"; empty for the others
    QString tag;               ///< the full value behind a label that may be shortened; empty for the others
    bool isAttachment = false; ///< the label begins with "ATTACHMENT:", whatever made it so
    std::vector<StructureNode> children;

    bool operator==(const StructureNode&) const = default;
};

/// The top level: the message itself, then one node for each part.
using StructureTree = std::vector<StructureNode>;

/// The tree of a loaded message. Captions count parts from 1, keys from 0. A text without a carriage return
/// deliberately gives no node. The header fields `reasons`, which say why it was blocked, stand below the message.
StructureTree BuildStructureTree(const MailMessage& message, const QByteArrayList& reasons = {});

/// What the two toggles do to a finished tree. Nodes are numbered from 0 in tree order, parents before children.
struct TogglesResult {
    bool expanded = false; ///< the new state of the nodes
    int firstNode = 0;     ///< the first node that gets it; 1 leaves the root as it is
    std::vector<int> bold; ///< the attachments
    int expandAlso = -1;   ///< a node to expand in any case; -1 for none
    int scrollTo = -1;     ///< the node to bring into view; -1 leaves the view
};

/// The buttons "collapse" and "attachment", true when pressed.
struct ContentsToggles {
    bool collapse = false;
    bool attachment = false;
};

/// Computes what the toggles do. Of several attachments the last is brought into view.
TogglesResult ApplyContentsToggles(const StructureTree& tree, bool expandAll, ContentsToggles pressed);

/// What a click on a node shows in the raw pane; empty when that is the whole message file.
std::optional<QString> TextOfClickedNode(bool hasChildren, const QString& text, const QString& tag);

} // namespace quellbox
