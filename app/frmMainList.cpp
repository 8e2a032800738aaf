#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "app/TrayPresence.h"
#include "archive/MessageHeaders.h"
#include "messages/CommandStates.h"

#include <QApplication>
#include <QHeaderView>
#include <QIcon>
#include <QMenu>

#include <algorithm>
#include <limits>
#include <numeric>

namespace quellbox {

namespace {

int CountOf(const std::vector<RowRange>& ranges) {
    return std::accumulate(ranges.begin(), ranges.end(), 0,
                           [](int count, const RowRange& range) { return count + range.last - range.first + 1; });
}

} // namespace

void frmMain::ConnectList() {
    const auto guarded = [this](auto method) {
        return [this, method](auto... arguments) { Guarded([&] { (this->*method)(arguments...); }); };
    };
    connect(lvwMessages->header(), &QHeaderView::sectionClicked, this, guarded(&frmMain::lvwMessages_ColumnClick));
    connect(lvwMessages, &MessageListView::ItemClick, this, guarded(&frmMain::lvwMessages_ItemClick));
    connect(lvwMessages, &MessageListView::KeyDown, this, [this] { lvwMessages_KeyDown(); });
    connect(lvwMessages, &MessageListView::ViewRequested, this, guarded(&frmMain::lvwMessages_KeyPress));
    connect(lvwMessages, &MessageListView::DblClick, this, guarded(&frmMain::lvwMessages_DblClick));
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
    if (model_.Count() == 0) {
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
    if (model_.Row(row).Cell(ColumnTo).isEmpty() && mnuViewBulk->isChecked()) {
        contents_->ReadHeaders(MessagePath(row));
    }
    if (LoadOnItemClick) {
        UpdateSelectionStatus();
    }
    ShowMessage(row);
    if (LastMouseButton == Qt::RightButton) {
        PopUpMessageMenu(QCursor::pos());
    }
}

void frmMain::TakeHeaders(const QString& path, const HeaderFields& headers) {
    const int place = RowOfPath(path);
    if (place < 0) {
        return; // the list has changed since
    }
    const MessageRow& row = model_.Row(place);
    MessageTexts texts = row.Texts();
    FillTexts(texts, headers);
    state_.strXSender = texts.tag;
    model_.Update(place, row.WithTexts(texts));
}

void frmMain::PopUpMessageMenu(QPoint screen) {
    // The press that selected the row came after the commands were enabled for what was selected before.
    OfferView();
    mnuMessageTolerate->setEnabled(buttons_[QStringLiteral("tolerate")]->isEnabled());
    mnuMessage->popup(screen);
}

// View is for one message. What is selected when a mouse button goes down, or the menu pops up, decides.
void frmMain::OfferView() {
    offersView_ = UpdateSelectionStatus() == 1;
    ShowCommands();
}

void frmMain::lvwMessages_KeyDown() {
    MayChange();
    LoadOnItemClick = true;
    LastMouseButton = Qt::NoButton;
}

void frmMain::lvwMessages_KeyPress() {
    mnuMessageView_Click();
}

void frmMain::lvwMessages_DblClick() {
    mnuMessageView_Click();
}

void frmMain::lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x) {
    MayChange();
    constexpr auto modifierKeys = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    LastMouseButton = button;
    LoadOnItemClick = (modifiers & modifierKeys) == Qt::NoModifier;
    OfferView();
    ClickedColumn = lvwMessages->ColumnAt(x);
}

// Not only after a click with a modifier key: dragging selects too, and a click beside the rows deselects.
void frmMain::lvwMessages_MouseUp() {
    UpdateSelectionStatus();
}

qint16 frmMain::UpdateSelectionStatus() {
    const std::vector<RowRange> selected = lvwMessages->SelectedRanges();
    const int count = CountOf(selected);
    // Should adding up the sizes fail, there still is a selection: it holds the periodic refresh back, and can be
    // disposed of.
    state_.SelectedCount = static_cast<qint16>(std::min<int>(count, std::numeric_limits<qint16>::max()));
    selectedRows_ = count;
    ShowCommands();
    const SelectionStatus status =
        ComputeSelectionStatus(model_, selected, state_, buttons_[QStringLiteral("filter")]->isChecked());
    state_.SelectedCount = status.SelectedCount;
    if (status.hasRows) {
        panels_.SetInfo(status.info.text);
        panels_.SetSize(status.size.text, status.size.toolTip);
        panels_.SetCount(status.count);
        tray_->ShowCount(status.count);
    }
    return state_.SelectedCount;
}

// A short job is not to be seen as one: until it is shown, the commands look as before, and are held back.
void frmMain::ShowCommands() {
    const Activity shown = busyIsShown_ ? jobs_.Now() : Activity::Idle;
    const CommandStates can = ComputeCommandStates({shown, model_.Count(), selectedRows_, state_.TolerationLevel});
    for (QAction* entry : listCommands_) {
        entry->setEnabled(can.list);
    }
    mnuEdit->menuAction()->setEnabled(can.edit);
    mnuMessageView->setEnabled(can.list && offersView_);
    for (const char* key : {"delete", "unblock", "collapse", "attachment"}) {
        buttons_[QLatin1String(key)]->setEnabled(can.onSelected);
    }
    buttons_[QStringLiteral("tolerate")]->setEnabled(can.tolerate);
    buttons_[QStringLiteral("find")]->setEnabled(can.find);
    buttons_[QStringLiteral("filter")]->setEnabled(can.refresh);
    buttons_[QStringLiteral("cleansing")]->setEnabled(can.list);
    buttons_[QStringLiteral("whitelist")]->setEnabled(can.whitelist);
    for (QAction* entry : {mnuActionsDelete, mnuActionsUnblock}) {
        entry->setEnabled(can.onSelected);
    }
    mnuActionsTolerate->setEnabled(can.tolerate);
    mnuMessageTolerate->setEnabled(can.tolerateMenu);
    for (QAction* entry : {mnuAcRefresh, mnuViewBulk}) {
        entry->setEnabled(can.refresh);
    }
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
    if (model_.Count() == 0) {
        return;
    }
    SetBusy(true, model_.Count());
    lvwMessages->selectAll();
    SetBusy(false, 0);
    contents_->ClearText();
    UpdateSelectionStatus();
}

void frmMain::mnuEditSelectNone_Click() {
    ClearSelection();
}

void frmMain::mnuEditMarkRead_Click() {
    MarkSelected(false);
}

void frmMain::mnuEditMarkUnread_Click() {
    MarkSelected(true);
}

void frmMain::MarkItemBold(int row, bool bold) {
    model_.MarkRows(row, row, bold);
}

void frmMain::MarkSelected(bool unread) {
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
