#include "archive/MessageReading.h"

#include "archive/LocalTime.h"
#include "archive/MessageHeaders.h"
#include "mail/DisplayText.h"
#include "mail/LoadError.h"

namespace quellbox {

ReadRow ReadMessageRow(const FileSystem& files, const Folder& folder, const FileEntry& entry, bool bulk) {
    ReadRow result;
    result.status = entry.status;
    MessageTexts texts;
    try {
        if (bulk) {
            texts.subject = CleanseForDisplay(entry.name);
        } else {
            const HeaderFields fields = ReadHeaderFields(files, folder.PathOf(entry.name));
            result.loaded = FillTexts(texts, fields);
            result.canHeal = fields.errorCode == static_cast<int>(LoadError::Unreadable);
        }
    } catch (const std::exception& error) {
        // One message must not cost the others their rows, not even for a lack of memory.
        texts.subject = QString::fromUtf8(error.what());
    }
    result.row = MessageRow(entry.name, entry.status.size, LocalSeconds(entry.status.modifiedNs), texts);
    return result;
}

} // namespace quellbox
