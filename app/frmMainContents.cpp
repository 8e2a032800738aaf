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

void frmMain::MakeLoader() {
    loading_.reset();
    loader_ = std::make_unique<MessageLoader>(ports_.files, ports_.pool);
    connect(loader_.get(), &MessageLoader::Arrived, this, [this] { Guarded([this] { loader_->Deliver(); }); });
}

void frmMain::ShowMessage(int row) {
    if (!LoadOnItemClick || !mnuViewContents->isChecked()) {
        ClearContents();
        return;
    }
    const QString path = MessagePath(row);
    if (loading_ && loading_->path == path && loading_->structure) {
        return; // it is on its way
    }
    const bool isShown = rtfRaw->FileName() == path && !rtfRaw->Text().isEmpty() && !structure_.empty();
    Loading wanted;
    wanted.ifExists = true;
    wanted.text = !isShown;
    wanted.structure = !isShown;
    wanted.takesPlace = !isShown;
    LoadMessage(row, wanted);
}

// In place of what is being read now. What is still to come of the same message, comes nevertheless.
void frmMain::LoadMessage(int row, Loading wanted) {
    wanted.path = MessagePath(row);
    if (loading_ && loading_->path == wanted.path) {
        wanted.structure = wanted.structure || loading_->structure;
        wanted.ifExists = wanted.ifExists || loading_->ifExists;
        wanted.forViewer = wanted.forViewer || loading_->forViewer;
        wanted.text = wanted.text || loading_->text;
        wanted.takesPlace = wanted.takesPlace || loading_->takesPlace;
    }
    CancelLoading();
    const QPersistentModelIndex place(model_.index(row, 0)); // the list may change before the answer comes
    loader_->Load({wanted.path, wanted.ifExists, wanted.text, wanted.structure},
                  [this, place](const MessageAnswer& answer) { TakeAnswer(answer, place); });
    loading_ = wanted;
}

void frmMain::CancelLoading() {
    loader_->CancelLoad();
    loading_.reset();
}

// An ordinary message is there when this returns. What takes longer comes later, and until then nothing is shown that
// belongs to another message.
void frmMain::AwaitMessage() {
    if (loader_->WaitFor(ports_.patience) || !loading_) {
        return;
    }
    if (loading_->text && loading_->takesPlace) {
        rtfRaw->clear();
    }
    if (loading_->structure) {
        ClearTree();
    }
}

void frmMain::TakeAnswer(const MessageAnswer& answer, const QPersistentModelIndex& row) {
    const Loading wanted = *loading_;
    if (answer.isLast) {
        loading_.reset();
    }
    switch (answer.kind) {
    case MessageAnswer::Kind::Gone:
        ClearContents();
        break;
    case MessageAnswer::Kind::Unreadable:
        DropFailures({{answer.path, answer.reason}});
        if (wanted.takesPlace) {
            rtfRaw->clear();
        }
        if (wanted.structure) {
            MarkAsRead(row);
            ClearTree();
        }
        break;
    case MessageAnswer::Kind::Text:
        if (!answer.isLast) {
            loading_->text = false;
            loading_->forViewer = false;
        }
        rtfRaw->ShowFile(answer.path, answer.text);
        if (wanted.structure) {
            MarkAsRead(row);
        }
        if (wanted.forViewer) {
            ShowViewer();
        }
        break;
    case MessageAnswer::Kind::Structure:
        ShowMessageStructure(answer.structure);
        break;
    default:
        break;
    }
}

void frmMain::MarkAsRead(const QPersistentModelIndex& row) {
    if (row.isValid()) {
        model_.MarkRows(row.row(), row.row(), false);
    }
}

void frmMain::ShowMessageStructure(const StructureTree& structure) {
    structure_ = structure;
    if (structure_.empty()) {
        trvMessage->clear();
    } else {
        FillTree();
    }
}

void frmMain::ClearTree() {
    trvMessage->clear();
    structure_.clear();
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
        CancelLoading();
        rtfRaw->ShowText(*text);
    } else if (const int row = SelectedRow(); row >= 0) {
        Loading wanted;
        wanted.text = true;
        LoadMessage(row, wanted);
        AwaitMessage();
    }
}

void frmMain::mnuMessageView_Click() {
    const int row = SelectedRow();
    if (row < 0) {
        return;
    }
    if (UsesExternalViewer(state_)) {
        ShowInExternalViewer(ports_.shell, ports_.volumes.Resolve(MessagePath(row)));
        return;
    }
    Loading wanted;
    wanted.text = true;
    wanted.forViewer = true;
    LoadMessage(row, wanted);
    AwaitMessage();
}

void frmMain::ShowViewer() {
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
