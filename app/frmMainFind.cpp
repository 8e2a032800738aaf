#include "app/frmMain.h"

namespace quellbox {

void frmMain::mnuEditFind_Click() {}

void frmMain::mnuEditFindNext_Click() {}

void frmMain::mnuEditFindAll_Click() {}

void frmMain::mnuMessageFind_Click() {}

void frmMain::ShowFindDialog() {}

void frmMain::FindNext() {}

} // namespace quellbox
