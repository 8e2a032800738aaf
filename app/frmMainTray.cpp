#include "app/frmMain.h"

namespace quellbox {

void frmMain::mnuViewHide_Click() {}

void frmMain::mnuTrExit_Click() {
    close();
}

void frmMain::RestoreFromTray() {}

void frmMain::ShowTrayIcon(int /*show*/, const QString& /*tip*/) {}

} // namespace quellbox
