#include "app/WhitelistNotes.h"

#include "app/WindowParts.h"
#include "history/Journal.h"
#include "whitelist/WhitelistStore.h"

#include <QSet>

namespace quellbox {

namespace {

QStringList Without(QStringList entries, const QStringList& others) {
    const QSet<QString> known(others.begin(), others.end());
    entries.removeIf([&known](const QString& entry) { return known.contains(entry); });
    return entries;
}

void Note(const WindowParts& parts, HistoryAction action, const QStringList& entries) {
    for (const QString& entry : entries) {
        HistoryEntry noted;
        noted.detail = entry;
        parts.journal.Note({action, parts.state.ArchiveDir}, noted);
    }
}

} // namespace

QStringList NoteWhitelistChanges(const WindowParts& parts, const QStringList& before) {
    const QStringList now = LoadWhitelist(parts.ports.store);
    QStringList added = Without(now, before);
    Note(parts, HistoryAction::WhitelistRemove, Without(before, now));
    Note(parts, HistoryAction::WhitelistAdd, added);
    return added;
}

} // namespace quellbox
