#include "app/FindDesk.h"

#include "app/ListDesk.h"
#include "app/MessageListView.h"
#include "app/WindowJobs.h"
#include "dialogs/FindRows.h"
#include "dialogs/frmFind.h"

namespace quellbox {

FindDesk::FindDesk(const WindowParts& parts, ListDesk& list) : parts_(parts), list_(list) {}

FindDesk::~FindDesk() = default;

void FindDesk::mnuEditFind_Click() {
    parts_.state.FindAll = 0;
    ShowFindDialog();
}

void FindDesk::mnuEditFindNext_Click() {
    parts_.state.FindAll = 0;
    FindNext();
}

void FindDesk::mnuEditFindAll_Click() {
    parts_.state.FindAll = -1;
    parts_.state.FindText.isEmpty() ? ShowFindDialog() : FindNext();
}

void FindDesk::mnuMessageFind_Click() {
    parts_.state.HeaderField = static_cast<qint16>(list_.LastColumn());
    mnuEditFind_Click();
}

void FindDesk::btnFind_Click() {
    parts_.state.FindText.isEmpty() ? mnuEditFind_Click() : mnuEditFindNext_Click();
}

void FindDesk::ShowFindDialog() {
    if (find_ && find_->isVisible()) {
        return;
    }
    if (!find_) {
        find_ = std::make_unique<frmFind>(parts_.ports.store, parts_.state, parts_.timer, &parts_.window);
    }
    find_->Prepare();
    const bool accepted = find_->exec() == QDialog::Accepted;
    if (parts_.jobs.IsClosed()) {
        return; // and the dialog has gone
    }
    if (!accepted) {
        // Cancel ends the search whatever other window is open.
        UnloadFind();
        parts_.ports.store.Flush();
        return;
    }
    parts_.state.FindText = find_->Text();
    list_.ClearSelection();
    FindNext();
}

bool FindDesk::UnloadFind() {
    const std::unique_ptr<frmFind> dialog = std::move(find_);
    if (dialog) {
        dialog->History().Save(parts_.ports.store);
    }
    return dialog != nullptr;
}

void FindDesk::FindNext() {
    const FindResult found = FindRows(parts_.model, parts_.state);
    if (found.rows.empty()) {
        parts_.panels.SetInfo(found.missText);
        Q_EMIT NothingFound();
        return;
    }
    parts_.list.AddToSelection(found.rows);
    parts_.list.setFocus();
    list_.UpdateSelectionStatus();
}

} // namespace quellbox
