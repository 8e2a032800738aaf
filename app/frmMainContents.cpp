#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "contents/ExternalViewer.h"

namespace quellbox {

void frmMain::CreateContents() {
    contents_ =
        std::make_unique<ContentsPane>(ContentsPorts{ports_.files, ports_.store, ports_.pool, ports_.patience}, this);
    connect(contents_.get(), &ContentsPane::MessageSeen, this, &frmMain::MarkAsRead);
    connect(contents_.get(), &ContentsPane::HeadersRead, this, &frmMain::TakeHeaders);
    connect(contents_.get(), &ContentsPane::WholeMessageWanted, this, [this] { Guarded([this] { ShowWholeText(); }); });
    connect(contents_.get(), &ContentsPane::Failed, this, &frmMain::ReportError);
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
    return state_.ArchiveDir + model_.Row(row).Key();
}

// The list may have changed since the path was asked for.
int frmMain::RowOfPath(const QString& path) const {
    return path.startsWith(state_.ArchiveDir) ? model_.RowOfKey(path.mid(state_.ArchiveDir.Text().size())) : -1;
}

void frmMain::ShowMessage(int row) {
    if (LoadOnItemClick && mnuViewContents->isChecked()) {
        contents_->Show(MessagePath(row));
    } else {
        contents_->Clear();
    }
}

void frmMain::ShowWholeText() {
    if (const int row = SelectedRow(); row >= 0) {
        contents_->ShowText(MessagePath(row));
    }
}

void frmMain::MarkAsRead(const QString& path) {
    if (const int row = RowOfPath(path); row >= 0) {
        MarkItemBold(row, false);
    }
}

void frmMain::mnuMessageView_Click() {
    const int row = SelectedRow();
    if (row < 0) {
        return;
    }
    if (UsesExternalViewer(state_)) {
        ShowInExternalViewer(ports_.shell, ports_.volumes.Resolve(MessagePath(row)));
    } else {
        contents_->ShowInViewer(MessagePath(row));
    }
}

} // namespace quellbox
