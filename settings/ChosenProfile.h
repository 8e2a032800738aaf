#pragma once

#include "mail/ServerProfile.h"
#include "settings/AppState.h"

namespace quellbox {

/// The profile of the server that blocks the messages, as the settings say. It stays where it is until the program
/// ends; another address is another profile.
const ServerProfile& ChosenProfile(const AppState& state);

} // namespace quellbox
