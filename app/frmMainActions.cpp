#include "app/frmMain.h"

#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "mail/DisplayText.h"
#include "messages/FormatSize.h"
#include "whitelist/frmTolerate.h"

#include <QApplication>

#include <memory>
#include <numeric>

namespace quellbox {

namespace {

std::vector<int> RowsOf(const std::vector<RowRange>& ranges) {
    std::vector<int> rows;
    for (const RowRange& range : ranges) {
        const size_t before = rows.size();
        rows.resize(before + static_cast<size_t>(range.last - range.first + 1));
        std::iota(rows.begin() + static_cast<std::ptrdiff_t>(before), rows.end(), range.first);
    }
    return rows;
}

} // namespace

void frmMain::ProcessSelectedMessages(qint16 action) {
    jobs_.Dispose(action, {state_.ArchiveDir, state_.PickupDir}, RowsOf(lvwMessages->SelectedRanges()));
}

void frmMain::jobs_DisposalEnded(const DisposalResult& result) {
    LogFailures(result.failures);
    if (closing_) {
        return;
    }
    if (result.rowsGone > 0 || model_.Count() == 0) {
        ShowNextMessage(result.nextRow < 0 ? -1 : model_.RowOfKey(result.nextKey));
    } else {
        UpdateSelectionStatus();
    }
    SortList();
}

void frmMain::ShowNextMessage(int row) {
    if (row < 0) {
        ClearContents();
        UpdateSelectionStatus();
        panels_.SetInfo({});
        panels_.SetSize({}, {});
        panels_.SetCount(tr("%n messages", nullptr, 0));
        return;
    }
    lvwMessages->SelectOnly(row);
    try {
        UpdateSelectionStatus();
    } catch (const RuntimeError& error) {
        // A size that cannot be counted must not keep the message from being shown.
        LogFailures({{MessagePath(row), error.Text()}});
    }
    contents_->ShowNext(MessagePath(row));
    const MessageRow& next = model_.Row(row);
    panels_.SetInfo(next.Key());
    panels_.SetSize(FormatSize(next.Size()), panels_.Size().toolTip);
    panels_.SetCount(tr("%n messages", nullptr, model_.Count()));
}

// While the menu is open its entries are for the current row; the keys are for the selection.
void frmMain::mnuActions_Click() {
    const QModelIndex current = lvwMessages->currentIndex();
    const bool isSelected = current.isValid() && lvwMessages->selectionModel()->isRowSelected(current.row());
    mnuActionsDelete->setEnabled(isSelected && mnuActionsDelete->isEnabled());
    mnuActionsUnblock->setEnabled(isSelected && mnuActionsUnblock->isEnabled());
}

void frmMain::mnuActionsDelete_Click() {
    ProcessSelectedMessages(Action::remove);
}

void frmMain::mnuActionsUnblock_Click() {
    ProcessSelectedMessages(Action::unblock);
}

void frmMain::mnuMessageDelete_Click() {
    mnuActionsDelete_Click();
}

void frmMain::mnuMessageUnblock_Click() {
    mnuActionsUnblock_Click();
}

void frmMain::TolerateSelectedSender() {
    const int row = SelectedRow();
    if (row < 0) {
        return;
    }
    const bool knowsSender = !mnuViewBulk->isChecked() || !model_.Row(row).Cell(ColumnTo).isEmpty();
    if (knowsSender) {
        OfferToTolerate(row);
        return;
    }
    // A message that bulk mode has not opened has a sender all the same.
    const QString path = MessagePath(row);
    const auto read = std::make_shared<HeaderFields>();
    jobs_.Call(
        [&files = ports_.files, path, read]() -> WindowJobs::Error {
            *read = ReadHeaderFields(files, path);
            return std::nullopt;
        },
        [this, path, read](const WindowJobs::Error&) {
            Guarded([&] {
                TakeHeaders(path, *read);
                OfferToTolerate(RowOfPath(path));
            });
        });
}

// The result of the dialog is deliberately not reset before: closing it by its frame leaves the earlier one in force.
void frmMain::OfferToTolerate(int row) {
    {
        const MessageRow& message = model_.Row(row);
        const RefreshTimer::Hold rest(timer_);
        frmTolerate dialog(ports_.store, state_, this);
        dialog.SetMode(ToleranceWord::tolerate);
        dialog.SetSender(message.Tag());
        dialog.SetStatus(ShownText(message.Cell(ColumnFrom)));
        dialog.exec();
    }
    if (!closing_ && state_.ToleranceResult == ToleranceWord::ok) {
        ProcessSelectedMessages(Action::unblockTolerated);
    }
}

void frmMain::MaintainWhitelist() {
    QWidget* above = QApplication::activeModalWidget(); // the options dialog has a button for it
    const RefreshTimer::Hold rest(timer_);
    frmTolerate dialog(ports_.store, state_, above != nullptr ? above : this);
    dialog.SetMode(ToleranceWord::whitelist);
    dialog.exec();
}

void frmMain::tlbMessages_ButtonClick(const QString& key) {
    if (key == QLatin1String("unblock")) {
        ProcessSelectedMessages(Action::unblock);
    } else if (key == QLatin1String("delete")) {
        ProcessSelectedMessages(Action::remove);
    } else if (key == QLatin1String("tolerate")) {
        TolerateSelectedSender();
    } else if (key == QLatin1String("find")) {
        state_.FindText.isEmpty() ? mnuEditFind_Click() : mnuEditFindNext_Click();
    } else if (key == QLatin1String("filter")) {
        ToggleFilter();
    } else if (key == QLatin1String("cleansing")) {
        CleanseArchive();
    } else if (key == QLatin1String("whitelist")) {
        MaintainWhitelist();
    }
}

} // namespace quellbox
