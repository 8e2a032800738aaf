#pragma once

#include "history/HistoryTypes.h"
#include "messages/KeptFolder.h"

#include <memory>

namespace quellbox {

struct WindowParts;

/// Where the messages that are deleted now are to be kept; null where the user wants none to be kept.
std::shared_ptr<KeptFolder> FolderToKeepIn(const WindowParts& parts);

/// Tells the user, and the history, that an action has deleted nothing, because it could not have been kept.
void TellRefusal(const WindowParts& parts, HistoryAction action, const FileFailure& refusal);

} // namespace quellbox
