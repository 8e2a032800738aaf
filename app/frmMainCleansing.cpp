#include "app/frmMain.h"

namespace quellbox {

void frmMain::CleanseArchive() {}

} // namespace quellbox
