#pragma once

#include <QString>

namespace quellbox::bench {

/// What every program that lists messages has to do: one thread names the files of `folder`, looks at each, opens it,
/// reads its first 4 KiB and closes it. Returns the number of files.
int RunFloor(const QString& folder);

/// Empties the system's cache of files; false where that is not allowed.
bool DropFileCache();

} // namespace quellbox::bench
