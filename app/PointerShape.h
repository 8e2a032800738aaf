#pragma once

#include <QApplication>

namespace quellbox {

/// The mouse pointer of the whole program, for as long as this lives.
class PointerShape {
public:
    explicit PointerShape(Qt::CursorShape shape) { QApplication::setOverrideCursor(shape); }
    ~PointerShape() { QApplication::restoreOverrideCursor(); }
    PointerShape(const PointerShape&) = delete;
    PointerShape& operator=(const PointerShape&) = delete;
};

} // namespace quellbox
