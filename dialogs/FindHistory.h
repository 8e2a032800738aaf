#pragma once

#include "platform/SettingsStore.h"

#include <QStringList>

namespace quellbox {

/// The texts searched for so far, oldest first, without limit. They are kept in the section "Find" of the settings,
/// under their indices.
class FindHistory {
public:
    FindHistory() = default;

    /// Reads the stored texts up to the first index that is missing or holds an empty text.
    explicit FindHistory(const SettingsStore& store);

    const QStringList& Texts() const { return texts_; }

    /// Appends a text, unless one equals it ignoring case, which then stays as it was written. True when appended.
    bool Add(const QString& text);

    /// Removes the text at an index; an index outside of the history does nothing.
    void Remove(int index);

    void Clear() { texts_.clear(); }

    /// Replaces what is stored, which may stay pending until the store is flushed.
    void Save(SettingsStore& store) const;

private:
    QStringList texts_;
};

} // namespace quellbox
