#include "messages/CommandStates.h"

namespace quellbox {

CommandStates ComputeCommandStates(const CommandConditions& now) {
    const bool isIdle = now.activity == Activity::Idle;
    CommandStates can;
    can.refresh = isIdle || now.activity == Activity::Refreshing;
    can.filter = isIdle || (can.refresh && now.filterDays != 0);
    if (!isIdle) {
        return can;
    }
    const bool usesWhitelist = now.tolerationLevel >= 1;
    can.undo = now.undoable;
    can.edit = now.rows > 0 || now.narrows || (can.undo && now.keepsDeleted);
    can.exportList = now.rows > 0;
    can.list = true;
    can.onSelected = now.selected > 0;
    can.view = now.offersView;
    can.tolerate = now.selected == 1 && usesWhitelist;
    can.tolerateMenu = usesWhitelist;
    can.find = now.rows > 0;
    can.whitelist = usesWhitelist;
    return can;
}

} // namespace quellbox
