#include "app/StructureTreeView.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int labelRole = Qt::UserRole;   // in full
constexpr int tagRole = Qt::UserRole + 1; // the value behind the label

// Laying out a label of megabytes would freeze the window; no screen shows this much of one.
constexpr qsizetype longestLabel = 1000;

QTreeWidgetItem* MakeItem(const StructureNode& node) {
    auto* item = new QTreeWidgetItem;
    const bool isLong = node.text.size() > longestLabel;
    item->setText(0, isLong ? node.text.left(longestLabel) + QChar(0x2026) : node.text);
    item->setData(0, labelRole, node.text);
    item->setData(0, tagRole, node.tag);
    for (const StructureNode& child : node.children) {
        item->addChild(MakeItem(child));
    }
    return item;
}

std::vector<QTreeWidgetItem*> ItemsInOrder(QTreeWidget* tree) {
    std::vector<QTreeWidgetItem*> items;
    for (QTreeWidgetItemIterator item(tree); *item != nullptr; ++item) {
        items.push_back(*item);
    }
    return items;
}

} // namespace

StructureTreeView::StructureTreeView(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setResizeContentsPrecision(0); // only what is in sight is measured
    ConnectNodes();
    connect(this, &QTreeView::expanded, this, &StructureTreeView::WidenToLabels);
    connect(this, &QTreeView::collapsed, this, &StructureTreeView::WidenToLabels);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &StructureTreeView::WidenToLabels);
}

void StructureTreeView::ConnectNodes() {
    const auto click = [this](const QTreeWidgetItem* node) {
        Q_EMIT NodeClick(node->childCount() > 0, node->data(0, labelRole).toString(),
                         node->data(0, tagRole).toString());
    };
    connect(this, &QTreeWidget::itemClicked, this, click);
    // A node reached with the keyboard counts as clicked; one reached with the mouse has its own signal.
    connect(this, &QTreeWidget::currentItemChanged, this, [this, click](const QTreeWidgetItem* node) {
        if (node != nullptr && hasFocus() && QGuiApplication::mouseButtons() == Qt::NoButton) {
            click(node);
        }
    });
}

void StructureTreeView::ShowStructure(const StructureTree& structure, ContentsToggles pressed) {
    structure_ = structure;
    setUpdatesEnabled(false);
    const auto showAgain = qScopeGuard([this] { setUpdatesEnabled(true); });
    FillTree();
    ApplyToggles(pressed);
}

void StructureTreeView::FillTree() {
    clear();
    widest_ = 0;
    header()->setMinimumSectionSize(0);
    QList<QTreeWidgetItem*> top;
    for (const StructureNode& node : structure_) {
        top.append(MakeItem(node));
    }
    addTopLevelItems(top);
    if (!top.empty()) {
        top.front()->setExpanded(true);
    }
}

void StructureTreeView::ApplyToggles(ContentsToggles pressed) {
    const std::vector<QTreeWidgetItem*> items = ItemsInOrder(this);
    if (items.empty()) {
        return;
    }
    const TogglesResult result = ApplyContentsToggles(structure_, pressed.collapse, pressed);
    const auto item = [&items](int number) { return items[static_cast<size_t>(number)]; };
    // All at once, because the view lays itself out for each single node.
    const bool rootWasExpanded = item(0)->isExpanded();
    result.expanded ? expandAll() : collapseAll();
    if (result.firstNode > 0) {
        item(0)->setExpanded(rootWasExpanded);
    }
    for (const int number : result.bold) {
        QFont bold = font();
        bold.setBold(true);
        item(number)->setFont(0, bold);
    }
    if (result.expandAlso >= 0) {
        item(result.expandAlso)->setExpanded(true);
    }
    WidenToLabels();
    if (result.scrollTo >= 0) {
        Reveal(item(result.scrollTo));
    }
}

// A label that comes into sight may bring a scroll bar, which comes with the next events and may cover the node.
void StructureTreeView::Reveal(const QTreeWidgetItem* node) {
    scrollToItem(node);
    const QPersistentModelIndex index = indexFromItem(node);
    QMetaObject::invokeMethod(
        this, [this, index] { scrollTo(index); }, Qt::QueuedConnection);
}

// The one column fills the view, and is as wide as the widest label that has been in sight since the tree was filled.
// Measuring them all at once would take long in a tree of many nodes.
void StructureTreeView::WidenToLabels() {
    const int width = sizeHintForColumn(0);
    if (width > widest_) {
        widest_ = width;
        header()->setMinimumSectionSize(widest_);
        header()->resizeSection(0, std::max(widest_, header()->sectionSize(0))); // at once, and so its scroll bar
        updateGeometries(); // not before long: a scroll bar may have come, which takes a row's place
    }
}

void StructureTreeView::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        widest_ = 0;
        WidenToLabels();
    }
}

void StructureTreeView::resizeEvent(QResizeEvent* event) {
    QTreeWidget::resizeEvent(event);
    WidenToLabels();
}

} // namespace quellbox
