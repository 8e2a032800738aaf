#pragma once

#include "platform/FolderPath.h"
#include "platform/SettingsStore.h"

#include <QStringList>

namespace quellbox {

class Journal;

/// Writes into the history how the stored whitelist has changed since it had the entries `before`, for whoever works on
/// that archive. Returns what was added.
QStringList NoteWhitelistChanges(Journal& journal, const SettingsStore& store, const Folder& archive,
                                 const QStringList& before);

} // namespace quellbox
