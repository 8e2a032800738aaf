#pragma once

#include "history/HistoryTypes.h"
#include "platform/FolderPath.h"
#include "platform/SettingsStore.h"

#include <QSet>
#include <QStringList>

namespace quellbox {

class Journal;

/// The entries of a whitelist that stay when messages of these senders (lower case) have been put back that an action
/// had delivered. Left on the whitelist, a sender would be tolerated again by the next refresh: what the user has added
/// goes as it came; of what a refresh has tolerated, whatever had matched. Other actions change nothing.
QStringList EntriesLeftByUndo(QStringList entries, const HistoryActionFacts& facts, const QSet<QString>& senders);

/// Takes the others off the stored whitelist, and writes that into the history, for whoever works on `archive`. Throws
/// FileError when the store cannot be written.
void StopTolerating(SettingsStore& store, Journal& journal, const Folder& archive, const HistoryActionFacts& facts,
                    const QSet<QString>& senders);

} // namespace quellbox
