#pragma once

#include "tests/support/MemoryFileSystem.h"

namespace quellbox::bench {

inline const QString archiveFolder = QStringLiteral("/archive/");

/// What such a message is.
QByteArray ArchiveMessage(int number);
QString ArchiveMessageName(int number);

/// Nanoseconds since 1970-01-01 UTC at which it came: each a second after the one before.
qint64 ArchiveMessageTime(int number);

/// Adds messages number `first` to `first + count - 1` to the archive in memory.
void FillArchive(MemoryFileSystem& files, int first, int count);

} // namespace quellbox::bench
