#include "contents/ExternalViewer.h"

#include "mail/ServerProfile.h"

namespace quellbox {

bool UsesExternalViewer(const AppState& state) {
    return state.OutlookExpress == 1;
}

bool SuitsExternalViewer(const AppState& state, const QString& messagePath) {
    return ProfileOf(state.ServerProfile).packing == Packing::Never ||
           !messagePath.endsWith(QLatin1String(".gz"), Qt::CaseInsensitive);
}

void ShowInExternalViewer(const Shell& shell, const QString& messagePath) {
    static_cast<void>(shell.OpenMessage(messagePath));
}

} // namespace quellbox
