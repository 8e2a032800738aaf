#include "app/frmMain.h"

namespace quellbox {

void frmMain::mnuToolsOptions_Click() {}

void frmMain::stbBottom_PanelClick(const QString& /*key*/) {}

} // namespace quellbox
