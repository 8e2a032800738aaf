#pragma once

#include <QString>

namespace quellbox {

/// Brings what was written to an open file to the disk, or to the server. Some file systems tell only then that there
/// is no room for it. `number` is that of QFileDevice::handle(), `path` is for errors. Throws FileError.
void FlushToDisk(int number, const QString& path);

} // namespace quellbox
