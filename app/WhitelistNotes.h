#pragma once

#include <QStringList>

namespace quellbox {

struct WindowParts;

/// Writes into the history how the whitelist has changed since it had the entries `before`. Returns what was added.
QStringList NoteWhitelistChanges(const WindowParts& parts, const QStringList& before);

} // namespace quellbox
