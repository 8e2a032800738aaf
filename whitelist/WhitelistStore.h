#pragma once

#include "platform/SettingsStore.h"

#include <QStringList>

namespace quellbox {

/// The stored whitelist in the store's own order; empty when none is stored.
QStringList LoadWhitelist(const SettingsStore& store);

/// Replaces the stored whitelist and flushes the store. Throws FileError when the store cannot be written.
void SaveWhitelist(SettingsStore& store, const QStringList& entries);

} // namespace quellbox
