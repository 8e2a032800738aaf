#include "whitelist/UndoneTolerance.h"

#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistNotes.h"
#include "whitelist/WhitelistStore.h"

#include <algorithm>

namespace quellbox {

QStringList EntriesLeftByUndo(QStringList entries, const HistoryActionFacts& facts, const QSet<QString>& senders) {
    const QStringList added = facts.detail.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const auto matches = [&senders](const QString& entry) {
        const WhitelistMatcher matcher{QStringList(entry)};
        return std::any_of(senders.begin(), senders.end(),
                           [&matcher](const QString& sender) { return matcher.TolerableSender(sender); });
    };
    if (facts.action == HistoryAction::Tolerate) {
        entries.removeIf([&added](const QString& entry) { return added.contains(entry); });
    } else if (facts.action == HistoryAction::AutoTolerate) {
        entries.removeIf(matches);
    }
    return entries;
}

void StopTolerating(SettingsStore& store, Journal& journal, const Folder& archive, const HistoryActionFacts& facts,
                    const QSet<QString>& senders) {
    const QStringList before = LoadWhitelist(store);
    const QStringList entries = EntriesLeftByUndo(before, facts, senders);
    if (entries != before) {
        [[maybe_unused]] const QStringList leftOut = SaveWhitelist(store, entries);
        NoteWhitelistChanges(journal, store, archive, before);
    }
}

} // namespace quellbox
