#include "whitelist/WhitelistStore.h"

#include "platform/RuntimeError.h"

namespace quellbox {
namespace {

QString WhitelistSection() {
    return QStringLiteral("Tolerate");
}

void Replace(SettingsStore& store, const QStringList& entries) {
    // The dummy value makes sure that there is a section to remove, since a store may refuse to remove a missing one.
    store.SetValue(WhitelistSection(), QStringLiteral("0"), QString());
    store.RemoveSection(WhitelistSection());
    for (const QString& entry : entries) {
        // Only the key counts; what is stored under it is never read.
        store.SetValue(WhitelistSection(), entry, QStringLiteral("0"));
    }
}

} // namespace

QStringList LoadWhitelist(const SettingsStore& store) {
    return store.Keys(WhitelistSection());
}

void SaveWhitelist(SettingsStore& store, const QStringList& entries) {
    const QStringList before = LoadWhitelist(store);
    Replace(store, entries);
    try {
        store.Flush();
    } catch (...) {
        // What is pending is in force already, and a later flush would store it: the user was told that it is not.
        Replace(store, before);
        try {
            store.Flush(); // or the next one would report the failure once more
        } catch (const FileError&) {
            // It is reported already.
        }
        throw;
    }
}

} // namespace quellbox
