#include "app/ListDesk.h"

#include "app/BusyDisplay.h"
#include "app/ContentsPane.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/WindowJobs.h"
#include "archive/MessageHeaders.h"
#include "contents/ExternalViewer.h"
#include "messages/CommandStates.h"

#include <QHeaderView>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>

namespace quellbox {

namespace {

int CountOf(const std::vector<RowRange>& ranges) {
    return std::accumulate(ranges.begin(), ranges.end(), 0,
                           [](int count, const RowRange& range) { return count + range.last - range.first + 1; });
}

} // namespace

ListDesk::ListDesk(const WindowParts& parts, BusyDisplay& busy) : parts_(parts), busy_(busy) {
    ConnectList();
    ConnectContents();
    connect(&busy_, &BusyDisplay::Changed, this, &ListDesk::ShowCommands);
}

void ListDesk::ConnectList() {
    const MessageListView* list = &parts_.list;
    const ErrorReport& errors = parts_.errors;
    connect(list->header(), &QHeaderView::sectionClicked, &parts_.list,
            errors.Guarded(&parts_.list, &MessageListView::lvwMessages_ColumnClick));
    connect(list, &MessageListView::ItemClick, this, errors.Guarded(this, &ListDesk::lvwMessages_ItemClick));
    connect(list, &MessageListView::KeyDown, this, &ListDesk::lvwMessages_KeyDown);
    connect(list, &MessageListView::ViewRequested, this, errors.Guarded(this, &ListDesk::lvwMessages_KeyPress));
    connect(list, &MessageListView::DblClick, this, errors.Guarded(this, &ListDesk::lvwMessages_DblClick));
    connect(list, &MessageListView::MouseDown, this, errors.Guarded(this, &ListDesk::lvwMessages_MouseDown));
    connect(list, &MessageListView::MouseUp, this, errors.Guarded(this, &ListDesk::lvwMessages_MouseUp));
    connect(list, &MessageListView::SelectedByKey, this, errors.Guarded(this, &ListDesk::UpdateSelectionStatus));
    connect(list, &MessageListView::ContextMenuByKey, this, errors.Guarded(this, &ListDesk::PopUpMessageMenu));
}

void ListDesk::ConnectContents() {
    const ContentsPane* contents = &parts_.contents;
    const ErrorReport& errors = parts_.errors;
    connect(contents, &ContentsPane::MessageSeen, this, &ListDesk::MarkAsRead);
    connect(contents, &ContentsPane::HeadersRead, this, &ListDesk::TakeHeaders);
    connect(contents, &ContentsPane::WholeMessageWanted, this, errors.Guarded(this, &ListDesk::ShowWholeText));
    connect(contents, &ContentsPane::Failed, this, [&errors](const QString& text) { errors.Show(text); });
}

void ListDesk::lvwMessages_ItemClick(int row) {
    const bool isInBulkMode = parts_.menus.Entry("mnuViewBulk").isChecked();
    if (isInBulkMode && parts_.model.Row(row).Cell(ColumnTo).isEmpty()) {
        parts_.contents.ReadHeaders(MessagePath(row));
    }
    if (LoadOnItemClick) {
        UpdateSelectionStatus();
    }
    ShowMessage(row);
    if (LastMouseButton == Qt::RightButton) {
        PopUpMessageMenu(QCursor::pos());
    }
}

void ListDesk::ClickRow(int row) {
    parts_.list.SelectOnly(row);
    LoadOnItemClick = true;
    lvwMessages_ItemClick(row);
}

void ListDesk::ShowSelected() {
    const int row = parts_.list.SelectedRow();
    if (row < 0) {
        return;
    }
    parts_.list.scrollTo(parts_.model.index(row, 0));
    // As after a plain click, whatever the last real one was.
    LoadOnItemClick = true;
    LastMouseButton = Qt::NoButton;
    lvwMessages_ItemClick(row);
}

void ListDesk::TakeHeaders(const QString& path, const HeaderFields& headers) {
    const MessageRow* row = parts_.model.Find(KeyOfPath(path));
    if (row == nullptr) {
        return;
    }
    MessageTexts texts = row->Texts();
    FillTexts(texts, headers);
    parts_.state.strXSender = texts.tag;
    parts_.model.Replace(row->WithTexts(texts));
}

void ListDesk::PopUpMessageMenu(QPoint screen) {
    // The press that selected the row came after the commands were enabled for what was selected before.
    OfferView();
    parts_.menus.Entry("mnuMessageTolerate").setEnabled(parts_.menus.Button("tolerate").isEnabled());
    parts_.menus.Menu("mnuMessage").popup(screen);
}

// View is for one message. What is selected when a mouse button goes down, or the menu pops up, decides.
void ListDesk::OfferView() {
    offersView_ = UpdateSelectionStatus() == 1;
    ShowCommands();
}

void ListDesk::lvwMessages_KeyDown() {
    parts_.jobs.MakeWay();
    LoadOnItemClick = true;
    LastMouseButton = Qt::NoButton;
}

void ListDesk::lvwMessages_KeyPress() {
    mnuMessageView_Click();
}

void ListDesk::lvwMessages_DblClick() {
    mnuMessageView_Click();
}

void ListDesk::lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x) {
    parts_.jobs.MakeWay();
    constexpr auto modifierKeys = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    LastMouseButton = button;
    LoadOnItemClick = (modifiers & modifierKeys) == Qt::NoModifier;
    OfferView();
    ClickedColumn = parts_.list.ColumnAt(x);
}

// Not only after a click with a modifier key: dragging selects too, and a click beside the rows deselects.
void ListDesk::lvwMessages_MouseUp() {
    UpdateSelectionStatus();
}

qint16 ListDesk::UpdateSelectionStatus() {
    AppState& state = parts_.state;
    const std::vector<RowRange> selected = parts_.list.SelectedRanges();
    const int count = CountOf(selected);
    // Should adding up the sizes fail, there still is a selection: it holds the periodic refresh back, and can be
    // disposed of.
    state.SelectedCount = static_cast<qint16>(std::min<int>(count, std::numeric_limits<qint16>::max()));
    selectedRows_ = count;
    ShowCommands();
    const bool filtered = parts_.menus.Button("filter").isChecked();
    const SelectionStatus status = ComputeSelectionStatus(parts_.model, selected, state, filtered);
    state.SelectedCount = status.SelectedCount;
    if (status.hasRows) {
        parts_.panels.SetInfo(status.info.text);
        parts_.panels.SetSize(status.size.text, status.size.toolTip);
        parts_.panels.SetCount(status.count);
        Q_EMIT Counted(status.count);
    }
    return state.SelectedCount;
}

// A short job is not to be seen as one: until it is shown, the commands look as before, and are held back.
void ListDesk::ShowCommands() {
    const AppState& state = parts_.state;
    const Activity shown = busy_.IsShown() ? parts_.jobs.Now() : Activity::Idle;
    parts_.menus.Show(ComputeCommandStates({shown, parts_.model.Count(), selectedRows_, state.TolerationLevel,
                                            state.FilterDays, offersView_, isUndoable_, state.KeepDeletedDays > 0,
                                            parts_.menus.Entry("mnuEditQuick").isChecked()}));
}

void ListDesk::SetUndoable(bool isUndoable) {
    isUndoable_ = isUndoable;
    ShowCommands();
}

void ListDesk::ClearSelection() {
    parts_.state.FindPosition = 0;
    parts_.list.clearSelection();
    UpdateSelectionStatus();
    parts_.contents.Clear();
    if (!parts_.window.isMinimized()) {
        parts_.list.TakeFocus();
    }
}

void ListDesk::ClearMessageView() {
    parts_.model.Clear();
    parts_.contents.Clear();
}

QString ListDesk::MessagePath(int row) const {
    return parts_.state.ArchiveDir + parts_.model.Row(row).Key();
}

int ListDesk::RowOfPath(const QString& path) const {
    return parts_.model.RowOfKey(KeyOfPath(path));
}

/// The key that the message has, or none where it lies elsewhere.
QString ListDesk::KeyOfPath(const QString& path) const {
    const Folder& archive = parts_.state.ArchiveDir;
    return path.startsWith(archive) ? path.mid(archive.Text().size()) : QString();
}

void ListDesk::ShowMessage(int row) {
    if (LoadOnItemClick && parts_.menus.Entry("mnuViewContents").isChecked()) {
        parts_.contents.Show(MessagePath(row));
    } else {
        parts_.contents.Clear();
    }
}

void ListDesk::ShowWholeText() {
    if (const int row = parts_.list.SelectedRow(); row >= 0) {
        parts_.contents.ShowText(MessagePath(row));
    }
}

void ListDesk::mnuMessageView_Click() {
    const int row = parts_.list.SelectedRow();
    if (row < 0) {
        return;
    }
    const QString path = MessagePath(row);
    if (UsesExternalViewer(parts_.state) && SuitsExternalViewer(parts_.state, path)) {
        ShowElsewhere(path);
    } else {
        parts_.contents.ShowInViewer(path);
    }
}

// To find out where a share is mounted may take its time.
void ListDesk::ShowElsewhere(const QString& path) {
    const auto mounted = std::make_shared<QString>();
    const auto resolve = [&volumes = parts_.ports.volumes, path, mounted]() -> WindowJobs::Error {
        *mounted = volumes.Resolve(path);
        return std::nullopt;
    };
    const auto show = [this, mounted] { ShowInExternalViewer(parts_.ports.shell, *mounted); };
    parts_.jobs.Call(WindowJobs::Effect::Reads, resolve,
                     [this, show](const WindowJobs::Error&) { parts_.errors.Guard(show); });
}

void ListDesk::MarkAsRead(const QString& path) {
    parts_.model.MarkKey(KeyOfPath(path), false);
}

void ListDesk::MarkSelected(bool unread) {
    busy_.SetBusy(true, parts_.model.Count());
    for (const RowRange& range : parts_.list.SelectedRanges()) {
        parts_.model.MarkRows(range.first, range.last, unread);
    }
    busy_.SetBusy(false, 0);
}

void ListDesk::mnuEdit_Click() {
    parts_.menus.mnuEdit_Click(!parts_.state.FindText.isEmpty());
}

void ListDesk::mnuActions_Click() {
    const QModelIndex current = parts_.list.currentIndex();
    parts_.menus.mnuActions_Click(current.isValid() && parts_.list.IsSelected(current.row()));
}

void ListDesk::mnuEditSelectAll_Click() {
    if (parts_.model.Count() == 0) {
        return;
    }
    busy_.SetBusy(true, parts_.model.Count());
    parts_.list.selectAll();
    busy_.SetBusy(false, 0);
    parts_.contents.ClearText();
    UpdateSelectionStatus();
}

void ListDesk::mnuEditSelectNone_Click() {
    ClearSelection();
}

void ListDesk::mnuEditMarkRead_Click() {
    MarkSelected(false);
}

void ListDesk::mnuEditMarkUnread_Click() {
    MarkSelected(true);
}

void ListDesk::mnuEditMarkAllRead_Click() {
    parts_.model.MarkRows(0, parts_.model.Count() - 1, false);
}

} // namespace quellbox
