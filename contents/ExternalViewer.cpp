#include "contents/ExternalViewer.h"

namespace quellbox {

bool UsesExternalViewer(const AppState& state) {
    return state.OutlookExpress == 1;
}

void ShowInExternalViewer(const Shell& shell, const QString& messagePath) {
    static_cast<void>(shell.OpenMessage(messagePath));
}

} // namespace quellbox
