#include "app/ExpiryDesk.h"

#include "app/RefreshDesk.h"
#include "app/WindowJobs.h"

namespace quellbox {

ExpiryDesk::ExpiryDesk(const WindowParts& parts, RefreshDesk& refresh)
    : parts_(parts), expiry_(parts.ports.files, parts.ports.pool) {
    connect(&refresh, &RefreshDesk::DailyRefreshed, this, &ExpiryDesk::refresh_DailyRefreshed);
    connect(&expiry_, &KeptExpiry::Ended, this, &LogFailures);
}

void ExpiryDesk::refresh_DailyRefreshed(const RefreshResult& result) {
    if (result.mayHoldKept && !parts_.jobs.IsClosed()) {
        expiry_.Start(parts_.state.ArchiveDir, parts_.ports.clock.Now().date());
    }
}

void ExpiryDesk::Close() {
    expiry_.GiveUp();
}

} // namespace quellbox
