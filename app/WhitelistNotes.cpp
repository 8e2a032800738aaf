#include "app/WhitelistNotes.h"

#include "app/WindowParts.h"
#include "history/Journal.h"
#include "whitelist/WhitelistStore.h"

#include <QSet>

namespace quellbox {

namespace {

void Note(const WindowParts& parts, HistoryAction action, const QStringList& entries, const QStringList& others) {
    const QSet<QString> known(others.begin(), others.end());
    for (const QString& entry : entries) {
        if (!known.contains(entry)) {
            HistoryEntry noted;
            noted.detail = entry;
            parts.journal.Note({action, parts.state.ArchiveDir}, noted);
        }
    }
}

} // namespace

void NoteWhitelistChanges(const WindowParts& parts, const QStringList& before) {
    const QStringList now = LoadWhitelist(parts.ports.store);
    Note(parts, HistoryAction::WhitelistRemove, before, now);
    Note(parts, HistoryAction::WhitelistAdd, now, before);
}

} // namespace quellbox
