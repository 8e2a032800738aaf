#pragma once

#ifdef _WIN32

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <type_traits>
#include <windows.h>

namespace quellbox {

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};

/// Owns an open key.
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

/// What the value `name` says, of whatever type somebody has made it by hand: a number as the decimal one that the
/// registry editor shows, a text with variables of the environment as the text with their contents, and several texts
/// with commas between them. Empty for a value that is absent or cannot be read, and for one that is neither text nor
/// number.
std::optional<QString> ReadText(HKEY key, const QString& name);

/// Stores a text (REG_SZ); returns the system's error or ERROR_SUCCESS.
LSTATUS WriteText(HKEY key, const QString& name, const QString& text);

/// The names of all values in the registry's own order; that of the unnamed value is empty.
QStringList ValueNames(HKEY key);

} // namespace quellbox

#endif
