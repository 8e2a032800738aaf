#include "settings/ChosenProfile.h"

namespace quellbox {

const ServerProfile& ChosenProfile(const AppState& state) {
    return state.ServerProfile == QLatin1String(ownServerKey) ? OwnProfile(state.Own) : ProfileOf(state.ServerProfile);
}

} // namespace quellbox
