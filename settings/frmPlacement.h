#pragma once

#include "platform/SettingsStore.h"

#include <QWidget>

namespace quellbox {

/// Gives a form (by its object name) its stored state, position and size.
void RestoreWindowPlacement(QWidget& form, const SettingsStore& store);

/// Stores them.
void SaveWindowPlacement(const QWidget& form, SettingsStore& store);

} // namespace quellbox
