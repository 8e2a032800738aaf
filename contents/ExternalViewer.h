#pragma once

#include "platform/Shell.h"
#include "settings/AppState.h"

namespace quellbox {

/// Whether messages are shown in the external mail program. Only the value 1 says so, as a check box stores it.
bool UsesExternalViewer(const AppState& state);

/// Whether it can show this one. It does not understand packed ones, which are those that are named so where the server
/// packs messages.
bool SuitsExternalViewer(const AppState& state, const QString& messagePath);

/// Hands a message file to the external mail program. A failure is ignored.
void ShowInExternalViewer(const Shell& shell, const QString& messagePath);

} // namespace quellbox
