#pragma once

#include "contents/StructureTree.h"

#include <QTreeWidget>

namespace quellbox {

/// The structure of a message as a tree of plain texts. A label that is too long for any screen is shortened; the tree
/// scrolls to the end of every other one.
class StructureTreeView : public QTreeWidget {
    Q_OBJECT

public:
    explicit StructureTreeView(QWidget* parent);

    /// Shows a structure, expanded as the toggles say; an empty one leaves nothing.
    void ShowStructure(const StructureTree& structure, ContentsToggles pressed);

    /// Expands, collapses and scrolls what is shown as the toggles say.
    void ApplyToggles(ContentsToggles pressed);

    /// True when there is no structure to show.
    bool IsEmpty() const { return structure_.empty(); }

Q_SIGNALS:
    /// A node was clicked, or reached with the keyboard. `text` is its label in full, `tag` the value behind the label.
    void NodeClick(bool hasChildren, const QString& text, const QString& tag);

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void ConnectNodes();
    void FillTree();
    void Reveal(const QTreeWidgetItem* node);
    void WidenToLabels();

    StructureTree structure_;
    int widest_ = 0; // pixels; of the labels that have been in sight
};

} // namespace quellbox
