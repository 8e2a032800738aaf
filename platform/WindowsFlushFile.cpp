#ifdef _WIN32

#include "platform/FlushFile.h"

#include "platform/WindowsFile.h"

#include <io.h>

namespace quellbox {

void FlushToDisk(int number, const QString& path) {
    if (FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(number))) == 0) {
        ThrowFileError(path, GetLastError());
    }
}

} // namespace quellbox

#endif
