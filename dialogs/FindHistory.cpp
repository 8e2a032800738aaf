#include "dialogs/FindHistory.h"

namespace quellbox {
namespace {

QString FindSection() {
    return QStringLiteral("Find");
}

} // namespace

FindHistory::FindHistory(const SettingsStore& store) {
    while (true) {
        const QString text = store.Value(FindSection(), QString::number(texts_.size())).value_or(QString());
        if (text.isEmpty()) {
            return;
        }
        texts_.append(text);
    }
}

bool FindHistory::Add(const QString& text) {
    if (texts_.contains(text, Qt::CaseInsensitive)) {
        return false;
    }
    texts_.append(text);
    return true;
}

void FindHistory::Remove(int index) {
    if (index >= 0 && index < texts_.size()) {
        texts_.removeAt(index);
    }
}

void FindHistory::Save(SettingsStore& store) const {
    // The first value makes sure that there is a section to remove, since a store may refuse to remove a missing one.
    store.SetValue(FindSection(), QStringLiteral("0"), QString());
    store.RemoveSection(FindSection());
    for (int index = 0; index < texts_.size(); ++index) {
        store.SetValue(FindSection(), QString::number(index), texts_[index]);
    }
}

} // namespace quellbox
