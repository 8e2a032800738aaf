#ifdef _WIN32

#include "platform/Display.h"

namespace quellbox {

bool HasDisplay() {
    return true;
}

void DrawNowhere() {}

} // namespace quellbox

#endif
