#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace quellbox {

/// The per-user store of settings: texts addressed by section and key, under the name of the running executable.
/// Neither a section nor a key is empty: as an entry of the whitelist, an empty key would match every sender. Nothing
/// is ever read there, wherever it may come from, and what is to be stored there is refused as by an unwritable store.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored text; empty when the key is absent (which differs from a stored empty text).
    virtual std::optional<QString> Value(const QString& section, const QString& key) const = 0;

    /// What the store refuses is reported by the next Flush().
    virtual void SetValue(const QString& section, const QString& key, const QString& value) = 0;

    /// The keys of a section in the store's own order; empty when there is no such section.
    virtual QStringList Keys(const QString& section) const = 0;

    /// Does nothing when there is no such section. What the store refuses is reported by the next Flush().
    virtual void RemoveSection(const QString& section) = 0;

    /// Writes what is pending. Throws FileError when the store cannot be written, or has refused something since the
    /// last call. What was refused is lost, and not reported again.
    virtual void Flush() = 0;

    /// What the user must be told of the stored settings although nothing failed, one text for each, such as lines of
    /// the file that cannot be understood. Something may be there as soon as the store is open, and after each
    /// Flush(). Each text is given once, to whoever shows it.
    virtual QStringList TakeWarnings() { return {}; }
};

/// The store that the desktop provides: the registry key `HKEY_CURRENT_USER\Software\<name>` on Windows,
/// `$XDG_CONFIG_HOME/<name>/settings.ini` elsewhere. The registry takes neither a text or name with a NUL nor a section
/// with a backslash, and it does not tell keys apart that differ in case only. `applicationName` is the base name of
/// the running executable, so that a renamed one starts afresh.
std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName);

} // namespace quellbox
