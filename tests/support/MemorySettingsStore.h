#pragma once

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"

#include <map>
#include <utility>

namespace quellbox {

/// A store in memory, which keeps the keys of a section in the order in which they were first set.
class MemorySettingsStore : public SettingsStore {
public:
    /// Lets Flush() throw from now on; what was set can still be read, as in the real store.
    void SetUnwritable(bool unwritable = true) { unwritable_ = unwritable; }

    int FlushCount() const { return flushes_; }

    /// Lets TakeWarnings() give this text, once.
    void Warn(const QString& text) { warnings_ += text; }

    /// Lets the store take keys for the same that differ in case only, and keep the case in which one was written
    /// first, as the registry of Windows does.
    void SetIgnoresCase() { ignoresCase_ = true; }

    std::optional<QString> Value(const QString& section, const QString& key) const override {
        const auto found = sections_.find(section);
        if (found == sections_.end() || !found->second.values.contains(Identity(key))) {
            return std::nullopt;
        }
        return found->second.values.at(Identity(key));
    }

    void SetValue(const QString& section, const QString& key, const QString& value) override {
        Section& entries = sections_[section];
        if (!entries.values.contains(Identity(key))) {
            entries.keys += key;
        }
        entries.values[Identity(key)] = value;
    }

    QStringList Keys(const QString& section) const override {
        const auto found = sections_.find(section);
        return found == sections_.end() ? QStringList() : found->second.keys;
    }

    void RemoveSection(const QString& section) override { sections_.erase(section); }

    void Flush() override {
        ++flushes_;
        if (unwritable_) {
            throw FileError(QStringLiteral("settings.ini"), QStringLiteral("The settings cannot be written."));
        }
    }

    QStringList TakeWarnings() override { return std::exchange(warnings_, {}); }

private:
    struct Section {
        QStringList keys;
        std::map<QString, QString> values;
    };

    /// What the store tells keys apart by.
    QString Identity(const QString& key) const { return ignoresCase_ ? key.toUpper() : key; }

    std::map<QString, Section> sections_;
    QStringList warnings_;
    bool ignoresCase_ = false;
    bool unwritable_ = false;
    int flushes_ = 0;
};

} // namespace quellbox
