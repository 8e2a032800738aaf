#include "messages/StatusPanels.h"

namespace quellbox {

void StatusPanels::SetInfo(const QString& text) {
    Set(info_, {text, info_.toolTip});
}

void StatusPanels::SetSize(const QString& text, const QString& toolTip) {
    Set(size_, {text, toolTip});
}

void StatusPanels::SetCount(const QString& text) {
    Set(count_, {text, count_.toolTip});
}

void StatusPanels::Set(StatusPanel& panel, const StatusPanel& value) {
    if (panel == value) {
        return;
    }
    panel = value;
    Q_EMIT Changed();
}

} // namespace quellbox
