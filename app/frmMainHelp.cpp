#include "app/frmMain.h"

namespace quellbox {

void frmMain::mnuHelpStarting_Click(qint16 /*index*/) {}

void frmMain::mnuHelpCheck_Click() {}

void frmMain::mnuHelpFeedback_Click() {}

void frmMain::mnuHelpAbout_Click() {}

} // namespace quellbox
