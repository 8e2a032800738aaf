#pragma once

#include "tests/support/MemoryFileSystem.h"

namespace quellbox::bench {

inline const QString archiveFolder = QStringLiteral("/archive/");

/// Adds messages number `first` to `first + count - 1` to the archive in memory, each a second after the last.
void FillArchive(MemoryFileSystem& files, int first, int count);

} // namespace quellbox::bench
