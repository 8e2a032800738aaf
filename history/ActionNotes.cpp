#include "history/ActionNotes.h"

#include "history/Journal.h"
#include "messages/DisposalTask.h"
#include "messages/KeptFolder.h"

namespace quellbox {

HistoryAction HistoryActionOf(qint16 action) {
    if (action == Action::remove) {
        return HistoryAction::Delete;
    }
    return action == Action::unblockTolerated ? HistoryAction::Tolerate : HistoryAction::Unblock;
}

QString NoteRefusal(Journal& journal, HistoryAction action, const Folder& archive, const FileFailure& refusal) {
    HistoryEntry entry;
    entry.result = HistoryResult::Failed;
    entry.reason = TextOfRefusal(archive, refusal);
    journal.Note({action, archive}, entry);
    LogFailures({refusal});
    return entry.reason;
}

} // namespace quellbox
