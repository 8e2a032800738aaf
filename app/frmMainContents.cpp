#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "contents/ExternalViewer.h"
#include "contents/RawText.h"
#include "messages/Disposal.h"

#include <QGuiApplication>
#include <QScopeGuard>
#include <QTreeWidgetItemIterator>

namespace quellbox {

namespace {

constexpr int textRole = Qt::UserRole;    // the label in full
constexpr int tagRole = Qt::UserRole + 1; // the value behind the label

// Laying out a label of megabytes would freeze the window; no screen shows this much of one.
constexpr qsizetype longestLabel = 1000;

QTreeWidgetItem* MakeItem(const StructureNode& node) {
    auto* item = new QTreeWidgetItem;
    const bool isLong = node.text.size() > longestLabel;
    item->setText(0, isLong ? node.text.left(longestLabel) + QChar(0x2026) : node.text);
    item->setData(0, textRole, node.text);
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

void frmMain::ConnectContents() {
    const auto click = [this](const QTreeWidgetItem* node) { Guarded([this, node] { trvMessage_NodeClick(node); }); };
    connect(trvMessage, &QTreeWidget::itemClicked, this, click);
    // A node reached with the keyboard counts as clicked; one reached with the mouse has its own signal.
    connect(trvMessage, &QTreeWidget::currentItemChanged, this, [this, click](const QTreeWidgetItem* node) {
        if (node != nullptr && trvMessage->hasFocus() && QGuiApplication::mouseButtons() == Qt::NoButton) {
            click(node);
        }
    });
}

// The row that a command for one message works on.
int frmMain::SelectedRow() const {
    const QModelIndex current = lvwMessages->currentIndex();
    const std::vector<RowRange> selected = lvwMessages->SelectedRanges();
    if (current.isValid() && (selected.empty() || lvwMessages->selectionModel()->isRowSelected(current.row()))) {
        return current.row();
    }
    return selected.empty() ? -1 : selected.front().first;
}

QString frmMain::MessagePath(int row) const {
    return state_.ArchiveDir + model_.Row(row).key;
}

void frmMain::ShowMessage(int row) {
    const QString path = MessagePath(row);
    if (!LoadOnItemClick || !mnuViewContents->isChecked() || !ports_.files.FileExists(path)) {
        ClearContents();
        return;
    }
    if (rtfRaw->FileName() == path && !rtfRaw->Text().isEmpty() && !structure_.empty()) {
        return;
    }
    if (!LoadRawPane(path)) {
        ClearContents();
    }
    ShowMessageStructure(row);
}

// False when the file cannot be read; the pane then keeps its text.
bool frmMain::LoadRawPane(const QString& path) {
    try {
        rtfRaw->ShowFile(path, RawText(ReadWhole(ports_.files, path)));
        return true;
    } catch (const FileError& error) {
        DropFailures({{error.Path(), error.Reason()}});
        return false;
    }
}

void frmMain::ShowMessageStructure(int row) {
    model_.MarkRows(row, row, false);
    if (maiTree.Load(ports_.files, MessagePath(row)) != 0) {
        trvMessage->clear();
        structure_.clear();
    } else {
        structure_ = BuildStructureTree(maiTree);
        FillTree();
    }
    maiTree.Reset();
}

void frmMain::FillTree() {
    trvMessage->setUpdatesEnabled(false);
    const auto showAgain = qScopeGuard([this] { trvMessage->setUpdatesEnabled(true); });
    trvMessage->clear();
    QList<QTreeWidgetItem*> top;
    for (const StructureNode& node : structure_) {
        top.append(MakeItem(node));
    }
    trvMessage->addTopLevelItems(top);
    top.front()->setExpanded(true);
    ApplyToggles(buttons_[QStringLiteral("collapse")]->isChecked());
}

void frmMain::ApplyToggles(bool expandAll) {
    const std::vector<QTreeWidgetItem*> items = ItemsInOrder(trvMessage);
    if (items.empty()) {
        return;
    }
    const ContentsToggles pressed{buttons_[QStringLiteral("collapse")]->isChecked(),
                                  buttons_[QStringLiteral("attachment")]->isChecked()};
    const TogglesResult result = ApplyContentsToggles(structure_, expandAll, pressed);
    const auto item = [&items](int number) { return items[static_cast<size_t>(number)]; };
    // All at once, because the view lays itself out for each single node.
    const bool rootWasExpanded = item(0)->isExpanded();
    result.expanded ? trvMessage->expandAll() : trvMessage->collapseAll();
    if (result.firstNode > 0) {
        item(0)->setExpanded(rootWasExpanded);
    }
    for (const int number : result.bold) {
        QFont font = trvMessage->font();
        font.setBold(true);
        item(number)->setFont(0, font);
    }
    if (result.expandAlso >= 0) {
        item(result.expandAlso)->setExpanded(true);
    }
    if (result.scrollTo >= 0) {
        trvMessage->scrollToItem(item(result.scrollTo));
    }
}

void frmMain::tlbContents_ButtonClick(const QString& key) {
    if (key == QLatin1String("collapse") || key == QLatin1String("attachment")) {
        ApplyToggles(buttons_[QStringLiteral("collapse")]->isChecked());
    }
}

void frmMain::trvMessage_NodeClick(const QTreeWidgetItem* node) {
    const std::optional<QString> text = TextOfClickedNode(node->childCount() > 0, node->data(0, textRole).toString(),
                                                          node->data(0, tagRole).toString());
    if (text) {
        rtfRaw->ShowText(*text);
    } else if (const int row = SelectedRow(); row >= 0) {
        LoadRawPane(MessagePath(row));
    }
}

void frmMain::mnuMessageView_Click() {
    const int row = SelectedRow();
    if (row < 0) {
        return;
    }
    const QString path = MessagePath(row);
    if (UsesExternalViewer(state_)) {
        ShowInExternalViewer(ports_.shell, ports_.volumes.Resolve(path));
        return;
    }
    if (!LoadRawPane(path)) {
        return;
    }
    if (view_.isNull() || !view_->isVisible()) { // one that was closed is only about to be deleted
        delete view_;
        view_ = new frmView(ports_.store);
    }
    view_->ShowMessage(rtfRaw->FileName(), rtfRaw->Text());
}

void frmMain::CloseViewer() {
    if (!view_.isNull()) {
        view_->close();
    }
}

} // namespace quellbox
