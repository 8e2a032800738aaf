#include "contents/ExternalViewer.h"

#include "settings/ChosenProfile.h"

namespace quellbox {

bool UsesExternalViewer(const AppState& state) {
    return state.OutlookExpress == 1;
}

bool SuitsExternalViewer(const AppState& state, const QString& messagePath) {
    return ChosenProfile(state).packing == Packing::Never ||
           !messagePath.endsWith(QLatin1String(".gz"), Qt::CaseInsensitive);
}

void ShowInExternalViewer(const Shell& shell, const QString& messagePath) {
    static_cast<void>(shell.OpenMessage(messagePath));
}

} // namespace quellbox
