#include "app/KeepDeleted.h"

#include "app/WindowParts.h"

namespace quellbox {

std::shared_ptr<KeptFolder> FolderToKeepIn(const WindowParts& parts) {
    const AppState& state = parts.state;
    if (state.KeepDeletedDays <= 0) {
        return nullptr;
    }
    return std::make_shared<KeptFolder>(parts.ports.files, state.ArchiveDir, state.KeepDeletedDays,
                                        parts.ports.clock.Now());
}

void TellRefusal(const WindowParts& parts, const FileFailure& refusal) {
    LogFailures({refusal});
    parts.errors.Show(TextOfRefusal(parts.state.ArchiveDir, refusal));
}

} // namespace quellbox
