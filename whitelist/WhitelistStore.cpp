#include "whitelist/WhitelistStore.h"

#include "platform/RuntimeError.h"

#include <QSet>

#include <algorithm>
#include <iterator>

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

QStringList Missing(const SettingsStore& store, const QStringList& entries) {
    const QStringList stored = LoadWhitelist(store);
    const QSet<QString> known(stored.begin(), stored.end());
    QStringList missing;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(missing),
                 [&known](const QString& entry) { return !known.contains(entry); });
    return missing;
}

/// Stores the entries; returns those that are not in the store then.
QStringList Store(SettingsStore& store, QStringList entries) {
    Replace(store, entries);
    if (Missing(store, entries).isEmpty()) {
        return {};
    }
    // The store does not tell keys apart that differ in case only, and keeps the one that it is given first. That must
    // be the one in lower case: senders are compared in lower case, so that no other would ever match.
    std::stable_partition(entries.begin(), entries.end(),
                          [](const QString& entry) { return entry == entry.toLower(); });
    Replace(store, entries);
    return Missing(store, entries);
}

} // namespace

QStringList LoadWhitelist(const SettingsStore& store) {
    return store.Keys(WhitelistSection());
}

QStringList SaveWhitelist(SettingsStore& store, const QStringList& entries) {
    const QStringList before = LoadWhitelist(store);
    QStringList leftOut = Store(store, entries);
    try {
        store.Flush();
        return leftOut;
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
