#include "app/frmMain.h"

namespace quellbox {

void frmMain::SendPickupTest() {}

} // namespace quellbox
