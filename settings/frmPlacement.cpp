#include "settings/frmPlacement.h"

#include "settings/Placement.h"

#include <QScreen>

namespace quellbox {

void RestoreWindowPlacement(QWidget& form, const SettingsStore& store) {
    const QSize available = form.screen()->size();
    const Placement placement = ComputePlacement(ReadPlacement(store, form.objectName()), ToTwips(available.width()),
                                                 ToTwips(available.height()));
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
