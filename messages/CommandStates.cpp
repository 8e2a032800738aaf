#include "messages/CommandStates.h"

namespace quellbox {

CommandStates ComputeCommandStates(const CommandConditions& now) {
    const bool isIdle = now.activity == Activity::Idle;
    CommandStates can;
    can.refresh = isIdle || now.activity == Activity::Refreshing;
    if (!isIdle) {
        return can;
    }
    const bool usesWhitelist = now.tolerationLevel >= 1;
    can.edit = now.rows > 0;
    can.list = true;
    can.onSelected = now.selected > 0;
    can.onOne = now.selected == 1;
    can.tolerate = can.onOne && usesWhitelist;
    can.tolerateMenu = usesWhitelist;
    can.find = now.rows > 0;
    can.whitelist = usesWhitelist;
    return can;
}

} // namespace quellbox
