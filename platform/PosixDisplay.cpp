#ifndef _WIN32

#include "platform/Display.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace quellbox {

bool HasDisplay() {
    constexpr std::array names{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(names.begin(), names.end(), [](const char* name) { return !qEnvironmentVariableIsEmpty(name); });
}

void DrawNowhere() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME"); // some themes look for a display of their own
}

} // namespace quellbox

#endif
