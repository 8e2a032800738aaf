#pragma once

#include <QRect>

#include <algorithm>

namespace quellbox {

/// A window's outer rectangle kept inside the desktop work area: not larger than it, and moved back when its lower or
/// right edge lies beyond. A window beyond the upper or left edge stays where it is.
inline QRect KeepInWorkArea(QRect window, const QRect& workArea) {
    window.setSize(window.size().boundedTo(workArea.size()));
    window.moveLeft(std::min(window.left(), workArea.right() - window.width() + 1));
    window.moveTop(std::min(window.top(), workArea.bottom() - window.height() + 1));
    return window;
}

} // namespace quellbox
