#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "app/TrayIcon.h"
#include "archive/MessageHeaders.h"

#include <QApplication>
#include <QHeaderView>
#include <QIcon>
#include <QMenu>

namespace quellbox {

void frmMain::ConnectList() {
    const auto guarded = [this](auto method) {
        return [this, method](auto... arguments) { Guarded([&] { (this->*method)(arguments...); }); };
    };
    connect(lvwMessages->header(), &QHeaderView::sectionClicked, this, guarded(&frmMain::lvwMessages_ColumnClick));
    connect(lvwMessages, &MessageListView::ItemClick, this, guarded(&frmMain::lvwMessages_ItemClick));
    connect(lvwMessages, &MessageListView::KeyDown, this, [this] { lvwMessages_KeyDown(); });
    connect(lvwMessages, &MessageListView::ViewRequested, this, guarded(&frmMain::lvwMessages_KeyPress));
    connect(lvwMessages, &MessageListView::MouseDown, this, guarded(&frmMain::lvwMessages_MouseDown));
    connect(lvwMessages, &MessageListView::MouseUp, this, guarded(&frmMain::lvwMessages_MouseUp));
    connect(lvwMessages, &MessageListView::SelectedByKey, this,
            [this] { Guarded([this] { UpdateSelectionStatus(); }); });
    connect(lvwMessages, &MessageListView::ContextMenuByKey, this, &frmMain::PopUpMessageMenu);
}

void frmMain::ShowSortArrow() {
    for (int column = 0; column < ColumnCount; ++column) {
        const QString picture = column == sort_.SortColumn ? sort_.ArrowKey() : QStringLiteral("blank");
        const QIcon icon(QStringLiteral(":/icons/%1.svg").arg(picture));
        model_.setHeaderData(column, Qt::Horizontal, icon, Qt::DecorationRole);
    }
}

void frmMain::SortList() {
    model_.sort(sort_.SortKey(), sort_.order);
}

void frmMain::lvwMessages_ColumnClick(int column) {
    if (model_.Count() == 0 || busy_) {
        return;
    }
    sort_.Click(column);
    ShowSortArrow();
    SortList();
    const QModelIndex current = lvwMessages->currentIndex();
    if (!current.isValid() || !lvwMessages->selectionModel()->isRowSelected(current.row())) {
        lvwMessages->selectionModel()->setCurrentIndex(model_.index(0, 0), QItemSelectionModel::NoUpdate);
    }
    lvwMessages->scrollTo(lvwMessages->currentIndex());
}

void frmMain::lvwMessages_ItemClick(int row) {
    if (model_.Row(row).cells[ColumnTo].isEmpty() && mnuViewBulk->isChecked()) {
        ReadMessageHeaders(row);
    }
    if (LoadOnItemClick) {
        UpdateSelectionStatus();
    }
    ShowMessage(row);
    AwaitMessage();
    if (LastMouseButton == Qt::RightButton) {
        PopUpMessageMenu(QCursor::pos());
    }
}

void frmMain::ReadMessageHeaders(int row) {
    const QPersistentModelIndex place(model_.index(row, 0)); // the list may change before the answer comes
    loader_->LoadHeaders(MessagePath(row), [this, place](const MessageAnswer& answer) {
        if (answer.kind != MessageAnswer::Kind::Headers || !place.isValid()) {
            return;
        }
        MessageRow contents = model_.Row(place.row());
        FillRow(contents, answer.headers);
        state_.strXSender = contents.tag;
        model_.Update(place.row(), std::move(contents));
    });
}

void frmMain::PopUpMessageMenu(QPoint screen) {
    // The press that selected the row came after the commands were enabled for what was selected before.
    mnuMessageView->setEnabled(UpdateSelectionStatus() == 1);
    mnuMessageTolerate->setEnabled(buttons_[QStringLiteral("tolerate")]->isEnabled());
    mnuMessage->popup(screen);
}

void frmMain::lvwMessages_KeyDown() {
    LoadOnItemClick = true;
    LastMouseButton = Qt::NoButton;
}

void frmMain::lvwMessages_KeyPress() {
    mnuMessageView_Click();
}

void frmMain::lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x) {
    constexpr auto modifierKeys = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    LastMouseButton = button;
    LoadOnItemClick = (modifiers & modifierKeys) == Qt::NoModifier;
    mnuMessageView->setEnabled(UpdateSelectionStatus() == 1);
    ClickedColumn = lvwMessages->ColumnAt(x);
}

// Not only after a click with a modifier key: dragging selects too, and a click beside the rows deselects.
void frmMain::lvwMessages_MouseUp() {
    UpdateSelectionStatus();
}

qint16 frmMain::UpdateSelectionStatus() {
    const QAction* filter = buttons_[QStringLiteral("filter")];
    const std::vector<RowRange> selected = lvwMessages->SelectedRanges();
    // Should adding up the sizes fail, there still is a selection, which holds the periodic refresh back.
    state_.SelectedCount = selected.empty() ? 0 : 1;
    const SelectionStatus status = ComputeSelectionStatus(model_, selected, state_, filter->isChecked());
    state_.SelectedCount = status.SelectedCount;
    mnuEdit->menuAction()->setEnabled(status.hasRows);
    if (status.hasRows) {
        panels_.SetInfo(status.info.text);
        panels_.SetSize(status.size.text, status.size.toolTip);
        panels_.SetCount(status.count);
        if (ports_.tray != nullptr) {
            ports_.tray->SetTip(ports_.program.Title + QStringLiteral(": ") + status.count);
        }
    }
    for (auto button = buttons_.cbegin(); button != buttons_.cend(); ++button) {
        button.value()->setEnabled(status.hasSelection);
    }
    buttons_[QStringLiteral("find")]->setEnabled(status.hasRows);
    buttons_[QStringLiteral("filter")]->setEnabled(true);
    buttons_[QStringLiteral("cleansing")]->setEnabled(true);
    buttons_[QStringLiteral("whitelist")]->setEnabled(status.usesWhitelist);
    buttons_[QStringLiteral("tolerate")]->setEnabled(status.canTolerate);
    mnuMessageTolerate->setEnabled(status.usesWhitelist);
    mnuActions_Click(); // a shortcut works without the menu having been opened
    return state_.SelectedCount;
}

void frmMain::ClearSelection() {
    state_.FindPosition = 0;
    lvwMessages->clearSelection();
    UpdateSelectionStatus();
    ClearContents();
    if (!isMinimized()) {
        lvwMessages->setFocus();
    }
}

void frmMain::mnuEdit_Click() {
    mnuEditFindNext->setEnabled(!state_.FindText.isEmpty());
}

void frmMain::mnuEditSelectAll_Click() {
    if (busy_ || model_.Count() == 0) {
        return;
    }
    SetBusy(true, model_.Count());
    lvwMessages->selectAll();
    SetBusy(false, 0);
    CancelLoading();
    rtfRaw->clear();
    UpdateSelectionStatus();
}

void frmMain::MarkSelected(bool unread) {
    if (busy_) {
        return;
    }
    SetBusy(true, model_.Count());
    for (const RowRange& range : lvwMessages->SelectedRanges()) {
        model_.MarkRows(range.first, range.last, unread);
    }
    SetBusy(false, 0);
}

void frmMain::mnuEditMarkAllRead_Click() {
    model_.MarkRows(0, model_.Count() - 1, false);
}

} // namespace quellbox
