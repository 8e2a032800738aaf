#include "archive/MessageReading.h"

#include "archive/LocalTime.h"
#include "archive/MessageHeaders.h"
#include "mail/DisplayText.h"
#include "mail/LoadError.h"

namespace quellbox {

ReadRow ReadMessageRow(const FolderReader& folder, const FileEntry& entry, bool bulk, const ServerProfile& profile) {
    MessageTexts texts;
    bool loaded = false;
    bool isPacked = false;
    bool canHeal = false;
    try {
        if (bulk) {
            texts.subject = CleanseForDisplay(entry.name);
        } else {
            HeaderFields fields = ReadHeaderFields(folder, entry.name, profile);
            isPacked = fields.isPacked;
            canHeal = fields.errorCode == static_cast<int>(LoadError::Unreadable);
            loaded = FillTexts(texts, std::move(fields));
        }
    } catch (const std::exception& error) {
        // One message must not cost the others their rows, not even for a lack of memory.
        texts.subject = QString::fromUtf8(error.what());
    }
    MessageRow row(entry.name, entry.status.size, LocalSeconds(entry.status.modifiedNs), texts);
    return {std::move(row), entry.status, loaded, isPacked, canHeal};
}

} // namespace quellbox
