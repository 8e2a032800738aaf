#pragma once

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace quellbox {

/// The modal dialog on top, which blocks every window but those that belong to it; null when there is none.
inline QWindow* ModalWindow() {
    const QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal->windowHandle() : nullptr;
}

} // namespace quellbox
