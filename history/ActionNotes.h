#pragma once

#include "history/HistoryTypes.h"
#include "messages/FileFailure.h"
#include "platform/FolderPath.h"

namespace quellbox {

class Journal;

/// What an action on messages, one of Action, is to the history.
HistoryAction HistoryActionOf(qint16 action);

/// Writes into the history, and to the log, that an action has deleted nothing of an archive, because it could not have
/// been kept. Returns what the user is to read.
QString NoteRefusal(Journal& journal, HistoryAction action, const Folder& archive, const FileFailure& refusal);

} // namespace quellbox
