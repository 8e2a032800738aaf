#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "dialogs/FindRows.h"
#include "dialogs/frmFind.h"

namespace quellbox {

void frmMain::mnuEditFind_Click() {
    state_.FindAll = 0;
    ShowFindDialog();
}

void frmMain::mnuEditFindNext_Click() {
    state_.FindAll = 0;
    FindNext();
}

void frmMain::mnuEditFindAll_Click() {
    state_.FindAll = -1;
    state_.FindText.isEmpty() ? ShowFindDialog() : FindNext();
}

void frmMain::mnuMessageFind_Click() {
    state_.HeaderField = static_cast<qint16>(ClickedColumn);
    mnuEditFind_Click();
}

void frmMain::ShowFindDialog() {
    if (find_ && find_->isVisible()) {
        return;
    }
    if (!find_) {
        find_ = std::make_unique<frmFind>(ports_.store, state_, timer_, this);
    }
    find_->Prepare();
    const bool accepted = find_->exec() == QDialog::Accepted;
    if (closing_) {
        return; // and the dialog has gone
    }
    if (!accepted) {
        // Cancel ends the search whatever other window is open.
        UnloadFind();
        ports_.store.Flush();
        return;
    }
    state_.FindText = find_->Text();
    ClearSelection();
    FindNext();
}

// True when there was a dialog, whose history is now to be flushed.
bool frmMain::UnloadFind() {
    const std::unique_ptr<frmFind> dialog = std::move(find_);
    if (dialog) {
        dialog->History().Save(ports_.store);
    }
    return dialog != nullptr;
}

void frmMain::FindNext() {
    const FindResult found = FindRows(model_, state_);
    if (found.rows.empty()) {
        panels_.SetInfo(found.missText);
        Q_EMIT NothingFound();
        return;
    }
    lvwMessages->AddToSelection(found.rows);
    lvwMessages->setFocus();
    UpdateSelectionStatus();
}

} // namespace quellbox
