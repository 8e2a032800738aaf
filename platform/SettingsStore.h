#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace quellbox {

/// The per-user store of settings: texts addressed by section and key, under the name of the running executable.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored text; empty when the key is absent (which differs from a stored empty text).
    virtual std::optional<QString> Value(const QString& section, const QString& key) const = 0;

    virtual void SetValue(const QString& section, const QString& key, const QString& value) = 0;

    /// The keys of a section in the store's own order; empty when there is no such section.
    virtual QStringList Keys(const QString& section) const = 0;

    virtual void RemoveSection(const QString& section) = 0;

    /// Writes what is pending. Throws FileError when the store cannot be written.
    virtual void Flush() = 0;
};

/// The store that the desktop provides: the registry on Windows, `$XDG_CONFIG_HOME/<name>/settings.ini` elsewhere.
/// `applicationName` is the base name of the running executable, so that a renamed one starts afresh.
std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName);

} // namespace quellbox
