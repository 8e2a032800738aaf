#pragma once

#include "console/Session.h"
#include "console/TableWriter.h"
#include "history/HistoryTypes.h"
#include "messages/MessageRow.h"

#include <vector>

namespace quellbox {

/// What became of the messages that a command dealt with.
struct Handled {
    qint64 done = 0;
    qint64 failed = 0;
};

/// Deals with messages as the window does, and names those that failed. `action` is one of Action, `history` what it is
/// in the history. Throws CommandError when nothing can be kept of what is to be deleted.
Handled DisposeOf(Session& session, std::vector<MessageRow> rows, qint16 action, HistoryAction history);

/// Prints how many messages were dealt with, and answers what the program ends with.
ExitCode TellHandled(Session& session, OutputForm form, const QString& action, const Handled& handled);

} // namespace quellbox
