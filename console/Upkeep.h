#pragma once

#include "console/Session.h"

namespace quellbox {

/// What the window does once a day beside its work, for those who never open it: deletes for good what was kept of
/// deleted messages for long enough, completes the history of programs that ended in the middle of an action, forgets
/// what is older than the settings say, and BringBackLeftBehind(). What fails is told.
void KeepUp(Session& session);

/// Completes the history, and forgets what is old.
void CompleteHistory(Session& session);

/// Brings back into the archive what was being sent when a program ended, and tells of each such message.
void BringBackLeftBehind(Session& session);

} // namespace quellbox
