#pragma once

#include "platform/SettingsStore.h"

#include <QStringList>

namespace quellbox {

/// The stored whitelist in the store's own order; empty when none is stored.
QStringList LoadWhitelist(const SettingsStore& store);

/// Replaces the stored whitelist and flushes the store. Throws FileError when the store cannot be written.
/// Returns the entries that the store did not keep, for the user to be told. There are some only where a store does not
/// tell keys apart that differ in case only, as the registry of Windows: of such entries the one in lower case is kept,
/// which is the one that matches senders, or else the first. To refuse the whole list would be worse: whoever adds
/// "joe@example.com" beside a "Joe@example.com" that was made by hand wants the new one, and the old never matched.
[[nodiscard]] QStringList SaveWhitelist(SettingsStore& store, const QStringList& entries);

} // namespace quellbox
