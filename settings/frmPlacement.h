#pragma once

#include "platform/SettingsStore.h"

#include <QWidget>

namespace quellbox {

/// Gives a form (by its object name) its stored state, position and size. What is to be computed is computed for the
/// primary screen; a size beyond that of all screens together is cut, and a negative one is computed, too.
void RestoreWindowPlacement(QWidget& form, const SettingsStore& store);

/// Stores them.
void SaveWindowPlacement(const QWidget& form, SettingsStore& store);

} // namespace quellbox
