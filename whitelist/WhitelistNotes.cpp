#include "whitelist/WhitelistNotes.h"

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

void NoteEach(Journal& journal, const Folder& archive, HistoryAction action, const QStringList& entries) {
    for (const QString& entry : entries) {
        HistoryEntry noted;
        noted.detail = entry;
        journal.Note({action, archive}, noted);
    }
}

} // namespace

QStringList NoteWhitelistChanges(Journal& journal, const SettingsStore& store, const Folder& archive,
                                 const QStringList& before) {
    const QStringList now = LoadWhitelist(store);
    QStringList added = Without(now, before);
    NoteEach(journal, archive, HistoryAction::WhitelistRemove, Without(before, now));
    NoteEach(journal, archive, HistoryAction::WhitelistAdd, added);
    return added;
}

} // namespace quellbox
