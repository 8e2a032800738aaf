#pragma once

#include "delivery/AwaitedPassword.h"
#include "delivery/ReleaseWay.h"
#include "delivery/Transmitter.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/PasswordStore.h"
#include "settings/AppState.h"

#include <memory>

namespace quellbox {

/// Whether the way on which messages are unblocked, as the settings have it, takes a password.
bool NeedsPassword(const AppState& state);

/// Asks at once for the password that the settings are about; whoever sends a message waits for the answer, which is
/// never there once `receiver` has died. Called on the thread of the application object.
std::shared_ptr<const AwaitedPassword> AskForPassword(PasswordStore& passwords, const AppState& state,
                                                      QObject& receiver);

/// Who hands messages to the other side, as the settings have it; null where they go into the pickup directory.
/// `password` is null where none is needed. `files` has to outlive the transmitter.
std::unique_ptr<Transmitter> MakeTransmitter(const AppState& state, FileSystem& files,
                                             std::shared_ptr<const AwaitedPassword> password);

/// The way for the messages of the archive in the settings, with a transmitter that MakeTransmitter() has made; null
/// where there is none. What is lent has to outlive it.
std::unique_ptr<ReleaseWay> MakeReleaseWay(const AppState& state, FileSystem& files, const Clock& clock,
                                           std::unique_ptr<Transmitter> transmitter);

/// Where unblocked messages go, for the history; without a way into the pickup directory.
QString TargetOf(const ReleaseWay* way, const AppState& state);

} // namespace quellbox
