#pragma once

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"

#include <map>

namespace quellbox {

/// A store in memory, which keeps the keys of a section in the order in which they were first set.
class MemorySettingsStore : public SettingsStore {
public:
    /// Lets Flush() throw from now on; what was set can still be read, as in the real store.
    void SetUnwritable(bool unwritable = true) { unwritable_ = unwritable; }

    int FlushCount() const { return flushes_; }

    std::optional<QString> Value(const QString& section, const QString& key) const override {
        const auto found = sections_.find(section);
        if (found == sections_.end() || !found->second.values.contains(key)) {
            return std::nullopt;
        }
        return found->second.values.at(key);
    }

    void SetValue(const QString& section, const QString& key, const QString& value) override {
        Section& entries = sections_[section];
        if (!entries.values.contains(key)) {
            entries.keys += key;
        }
        entries.values[key] = value;
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

private:
    struct Section {
        QStringList keys;
        std::map<QString, QString> values;
    };

    std::map<QString, Section> sections_;
    bool unwritable_ = false;
    int flushes_ = 0;
};

} // namespace quellbox
