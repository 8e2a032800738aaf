#include "app/frmMain.h"

namespace quellbox {

QString frmMain::SelectDirectory(qint16 index) {
    return index == 0 ? state_.ArchiveDir : state_.PickupDir;
}

void frmMain::mnuOpenFolderSelect_Click(qint16 /*index*/) {}

} // namespace quellbox
