#include "app/ActionDesk.h"

#include "app/ContentsPane.h"
#include "app/DeliveryDesk.h"
#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "delivery/ChosenDelivery.h"
#include "history/ActionNotes.h"
#include "history/Journal.h"
#include "mail/DisplayText.h"
#include "messages/FailureList.h"
#include "messages/FormatSize.h"
#include "messages/KeptFolder.h"
#include "messages/frmFailures.h"
#include "settings/ChosenProfile.h"
#include "whitelist/WhitelistNotes.h"
#include "whitelist/WhitelistStore.h"
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

ActionDesk::ActionDesk(const WindowParts& parts, ListDesk& list, DeliveryDesk& delivery)
    : parts_(parts), list_(list), delivery_(delivery) {
    connect(&parts_.jobs, &WindowJobs::DisposalEnded, this,
            parts_.errors.Guarded(this, &ActionDesk::jobs_DisposalEnded));
}

void ActionDesk::ProcessSelectedMessages(qint16 action, const QStringList& toleratedNow) {
    const std::shared_ptr<ReleaseWay> way =
        action == Action::remove ? nullptr : delivery_.NewWay(DeliveryDesk::Starter::User);
    const DisposalFolders folders{parts_.state.ArchiveDir, parts_.state.PickupDir, way,
                                  ChosenProfile(parts_.state).packing};
    const std::shared_ptr<KeptFolder> kept =
        action == Action::remove ? FolderToKeepIn(parts_.ports.files, parts_.state, parts_.ports.clock.Now()) : nullptr;
    const auto record =
        parts_.journal.Begin({HistoryActionOf(action), folders.archive, TargetOf(way.get(), parts_.state),
                              kept ? QString(kept->Path()) : QString(), 0, toleratedNow.join(QLatin1Char('\n'))});
    parts_.jobs.Dispose(action, folders, RowsOf(parts_.list.SelectedRanges()), kept, record);
}

void ActionDesk::jobs_DisposalEnded(const DisposalResult& result) {
    parts_.failures.TakeAction(result.failures, parts_.ports.clock.Now());
    if (parts_.jobs.IsClosed()) {
        return;
    }
    if (result.rowsGone > 0 || parts_.model.Count() == 0) {
        ShowNextMessage(result.nextRow < 0 ? -1 : parts_.model.RowOfKey(result.nextKey));
    } else {
        list_.UpdateSelectionStatus();
    }
    parts_.list.SortList();
    if (result.refused) {
        parts_.errors.Show(
            NoteRefusal(parts_.journal, HistoryAction::Delete, parts_.state.ArchiveDir, *result.refused));
    }
}

void ActionDesk::ShowNextMessage(int row) {
    if (row < 0) {
        ShowNoMessage();
        return;
    }
    const QString path = list_.MessagePath(row);
    parts_.list.SelectOnly(row);
    try {
        list_.UpdateSelectionStatus();
    } catch (const RuntimeError& error) {
        // A size that cannot be counted must not keep the message from being shown.
        LogFailures({{path, error.Text()}});
    }
    parts_.contents.ShowNext(path);
    const MessageRow& next = parts_.model.Row(row);
    StatusPanels& panels = parts_.panels;
    panels.SetInfo(next.Key());
    panels.SetSize(FormatSize(next.Size()), panels.Size().toolTip);
    panels.SetCount(tr("%n messages", nullptr, parts_.model.TotalCount()));
}

void ActionDesk::ShowNoMessage() {
    parts_.contents.Clear();
    list_.UpdateSelectionStatus();
    parts_.panels.SetInfo({});
    parts_.panels.SetSize({}, {});
    parts_.panels.SetCount(tr("%n messages", nullptr, parts_.model.TotalCount()));
}

void ActionDesk::mnuActionsDelete_Click() {
    ProcessSelectedMessages(Action::remove);
}

void ActionDesk::mnuActionsUnblock_Click() {
    ProcessSelectedMessages(Action::unblock);
}

void ActionDesk::mnuMessageDelete_Click() {
    mnuActionsDelete_Click();
}

void ActionDesk::mnuMessageUnblock_Click() {
    mnuActionsUnblock_Click();
}

void ActionDesk::TolerateSelectedSender() {
    const int row = parts_.list.SelectedRow();
    if (row < 0) {
        return;
    }
    const bool isInBulkMode = parts_.menus.Entry("mnuViewBulk").isChecked();
    if (!isInBulkMode || !parts_.model.Row(row).Cell(ColumnTo).isEmpty()) {
        OfferToTolerate(row);
        return;
    }
    // A message that bulk mode has not opened has a sender all the same.
    const QString path = list_.MessagePath(row);
    const auto read = std::make_shared<HeaderFields>();
    const ServerProfile& profile = ChosenProfile(parts_.state);
    const auto readSender = [&files = parts_.ports.files, &profile, path, read]() -> WindowJobs::Error {
        *read = ReadHeaderFields(files, path, profile);
        return std::nullopt;
    };
    const auto offer = [this, path, read] {
        list_.TakeHeaders(path, *read);
        OfferToTolerate(list_.RowOfPath(path));
    };
    parts_.jobs.Call(WindowJobs::Effect::Reads, readSender,
                     [this, offer](const WindowJobs::Error&) { parts_.errors.Guard(offer); });
}

// The result of the dialog is deliberately not reset before: closing it by its frame leaves the earlier one in force.
void ActionDesk::OfferToTolerate(int row) {
    QStringList added;
    {
        const MessageRow& message = parts_.model.Row(row);
        const QStringList before = LoadWhitelist(parts_.ports.store);
        const RefreshTimer::Hold rest(parts_.timer);
        frmTolerate dialog(parts_.ports.store, parts_.state, &parts_.window);
        dialog.SetMode(ToleranceWord::tolerate);
        dialog.SetSender(message.Tag());
        dialog.SetStatus(ShownText(message.Cell(ColumnFrom)));
        dialog.exec();
        added = NoteWhitelistChanges(parts_.journal, parts_.ports.store, parts_.state.ArchiveDir, before);
    }
    if (!parts_.jobs.IsClosed() && parts_.state.ToleranceResult == ToleranceWord::ok) {
        ProcessSelectedMessages(Action::unblockTolerated, added);
    }
}

// The result of the dialog belongs to who has asked for messages to be unblocked, and stays theirs.
void ActionDesk::TolerateSenders(const QStringList& senders, QWidget& above) {
    const QString result = parts_.state.ToleranceResult;
    const QStringList before = LoadWhitelist(parts_.ports.store);
    const RefreshTimer::Hold rest(parts_.timer);
    for (const QString& sender : senders) {
        frmTolerate dialog(parts_.ports.store, parts_.state, &above);
        dialog.SetMode(ToleranceWord::tolerate);
        dialog.SetSender(sender);
        if (dialog.exec() != QDialog::Accepted) {
            break;
        }
    }
    parts_.state.ToleranceResult = result;
    NoteWhitelistChanges(parts_.journal, parts_.ports.store, parts_.state.ArchiveDir, before);
}

void ActionDesk::btnFailures_Click() {
    const RefreshTimer::Hold rest(parts_.timer);
    frmFailures(parts_.failures, &parts_.window).exec();
}

void ActionDesk::MaintainWhitelist() {
    QWidget* above = QApplication::activeModalWidget(); // the options dialog has a button for it
    const QStringList before = LoadWhitelist(parts_.ports.store);
    const RefreshTimer::Hold rest(parts_.timer);
    frmTolerate dialog(parts_.ports.store, parts_.state, above != nullptr ? above : &parts_.window);
    dialog.SetMode(ToleranceWord::whitelist);
    dialog.exec();
    NoteWhitelistChanges(parts_.journal, parts_.ports.store, parts_.state.ArchiveDir, before);
}

} // namespace quellbox
