#include "settings/frmPlacement.h"

#include "settings/Placement.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace quellbox {

void RestoreWindowPlacement(QWidget& form, const SettingsStore& store) {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    // The place may lie off every screen, but a size that no screens together could show only costs memory.
    Placement stored = ReadPlacement(store, form.objectName());
    stored.width = std::clamp(stored.width, 0, ToTwips(screen.virtualSize().width()));
    stored.height = std::clamp(stored.height, 0, ToTwips(screen.virtualSize().height()));
    const Placement placement =
        ComputePlacement(stored, ToTwips(screen.size().width()), ToTwips(screen.size().height()));
    form.setGeometry(ToPixels(placement.left), ToPixels(placement.top), ToPixels(placement.width),
                     ToPixels(placement.height));
    if (placement.windowState == 1) {
        form.setWindowState(Qt::WindowMinimized);
    } else if (placement.windowState == 2) {
        form.setWindowState(Qt::WindowMaximized);
    }
}

void SaveWindowPlacement(const QWidget& form, SettingsStore& store) {
    const int windowState = form.isMinimized() ? 1 : form.isMaximized() ? 2 : 0;
    const QRect rectangle = form.geometry();
    WritePlacement(store, form.objectName(),
                   {windowState, ToTwips(rectangle.left()), ToTwips(rectangle.top()), ToTwips(rectangle.width()),
                    ToTwips(rectangle.height())});
}

} // namespace quellbox
