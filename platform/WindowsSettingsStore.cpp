#ifdef _WIN32

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"
#include "platform/WideText.h"
#include "platform/WindowsRegistry.h"

#include <QCoreApplication>

#include <utility>

namespace quellbox {

namespace {

/// The calls would take a text with a NUL for a shorter one.
bool HasNul(const QString& text) {
    return text.contains(QChar(QChar::Null));
}

/// Without text the name would mean the key above, and with a separator one below another.
bool IsNameOfOneKey(const QString& name) {
    return !name.isEmpty() && !name.contains(QLatin1Char('\\')) && !HasNul(name);
}

/// The unnamed value of a registry key ("(Default)" in the registry editor) is no value of a store. It is there for
/// other uses, anybody may have given it data, and as an entry of the whitelist it would match every sender.
bool IsNameOfValue(const QString& name) {
    return !name.isEmpty() && !HasNul(name);
}

/// Every section is a key of the registry, and every key of a section a value there, named as it is. The registry
/// takes names that differ in case only for the same, and keeps the case in which one was written first.
class RegistryStore : public SettingsStore {
public:
    explicit RegistryStore(const QString& applicationName) : applicationName_(applicationName) {}

    std::optional<QString> Value(const QString& section, const QString& key) const override {
        const RegistryKey place = Open(section);
        return place != nullptr && IsNameOfValue(key) ? ReadText(place.get(), key) : std::nullopt;
    }

    void SetValue(const QString& section, const QString& key, const QString& value) override {
        Remember(section, Write(section, key, value));
    }

    QStringList Keys(const QString& section) const override {
        const RegistryKey place = Open(section);
        QStringList keys = place != nullptr ? ValueNames(place.get()) : QStringList();
        keys.removeIf([](const QString& key) { return !IsNameOfValue(key); });
        return keys;
    }

    void RemoveSection(const QString& section) override {
        const QString path = Path(section);
        const LSTATUS status = path.isEmpty() ? ERROR_INVALID_NAME : RegDeleteTreeW(HKEY_CURRENT_USER, Wide(path));
        const bool isAbsent = status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
        Remember(section, isAbsent ? ERROR_SUCCESS : status);
    }

    /// Only reports: every program sees a value as soon as it is set, and the system brings it to the disk by itself,
    /// at the latest when it shuts down. To wait for the disk would cost much, for the case of a power failure only.
    void Flush() override {
        const Failure failure = std::exchange(failure_, Failure());
        if (failure.status != ERROR_SUCCESS) {
            throw FileError(QLatin1String("HKEY_CURRENT_USER\\") + KeyPath(failure.section),
                            QCoreApplication::translate("quellbox",
                                                        "The settings cannot be written. Make sure that you may change "
                                                        "this key of the registry. The system says: %1")
                                .arg(qt_error_string(static_cast<int>(failure.status))));
        }
    }

private:
    struct Failure {
        LSTATUS status = ERROR_SUCCESS;
        QString section;
    };

    QString KeyPath(const QString& section) const {
        return QLatin1String("Software\\") + applicationName_ + QLatin1Char('\\') + section;
    }

    /// The place of a section under HKEY_CURRENT_USER. Empty for a section that would be a key elsewhere: the program
    /// names none so, and to remove such a one could remove all of the settings.
    QString Path(const QString& section) const {
        return IsNameOfOneKey(applicationName_) && IsNameOfOneKey(section) ? KeyPath(section) : QString();
    }

    /// Null also for a section that may not be read: as with one that is absent, the program has its defaults.
    RegistryKey Open(const QString& section) const {
        const QString path = Path(section);
        HKEY key = nullptr;
        const bool isOpen =
            !path.isEmpty() && RegOpenKeyExW(HKEY_CURRENT_USER, Wide(path), 0, KEY_QUERY_VALUE, &key) == ERROR_SUCCESS;
        return RegistryKey(isOpen ? key : nullptr);
    }

    LSTATUS Write(const QString& section, const QString& key, const QString& value) const {
        const QString path = Path(section);
        if (path.isEmpty() || !IsNameOfValue(key) || HasNul(value)) {
            return ERROR_INVALID_NAME;
        }
        HKEY created = nullptr;
        const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                               KEY_SET_VALUE, nullptr, &created, nullptr);
        if (status != ERROR_SUCCESS) {
            return status;
        }
        const RegistryKey place(created);
        return WriteText(place.get(), key, value);
    }

    /// What was refused first is what the user reads.
    void Remember(const QString& section, LSTATUS status) {
        if (failure_.status == ERROR_SUCCESS) {
            failure_ = {status, section};
        }
    }

    QString applicationName_;
    Failure failure_;
};

} // namespace

std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName) {
    return std::make_unique<RegistryStore>(applicationName);
}

} // namespace quellbox

#endif
