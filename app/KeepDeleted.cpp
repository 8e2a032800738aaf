#include "app/KeepDeleted.h"

#include "app/WindowParts.h"
#include "history/Journal.h"

namespace quellbox {

std::shared_ptr<KeptFolder> FolderToKeepIn(const WindowParts& parts) {
    const AppState& state = parts.state;
    if (state.KeepDeletedDays <= 0) {
        return nullptr;
    }
    return std::make_shared<KeptFolder>(parts.ports.files, state.ArchiveDir, state.KeepDeletedDays,
                                        parts.ports.clock.Now());
}

void TellRefusal(const WindowParts& parts, HistoryAction action, const FileFailure& refusal) {
    HistoryEntry entry;
    entry.result = HistoryResult::Failed;
    entry.reason = TextOfRefusal(parts.state.ArchiveDir, refusal);
    parts.journal.Note({action, parts.state.ArchiveDir}, entry);
    LogFailures({refusal});
    parts.errors.Show(entry.reason);
}

} // namespace quellbox
