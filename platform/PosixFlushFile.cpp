#ifndef _WIN32

#include "platform/FlushFile.h"

#include "platform/PosixFile.h"

#include <unistd.h>

namespace quellbox {

void FlushToDisk(int number, const QString& path) {
    if (::fsync(number) != 0 && errno != EINVAL) { // what cannot be flushed at all has no disk
        ThrowFileError(path, errno);
    }
}

} // namespace quellbox

#endif
