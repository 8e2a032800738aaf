#include "console/Command.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

const std::vector<Command>& Commands() {
    static const std::vector<Command> all{
        {"list", "", QT_TRANSLATE_NOOP("quellbox", "Prints the messages of the archive."),
         "quellboxctl list --days 2 --min-scl 7 --match subject=invoice", AddListOptions, RunList},
        {"show", "NAME", QT_TRANSLATE_NOOP("quellbox", "Prints the header and the text of a message."),
         "quellboxctl show 5d6d9c70.EML", AddShowOptions, RunShow},
        {"unblock", "[NAME... | -]",
         QT_TRANSLATE_NOOP("quellbox", "Lets messages go to those to whom they were written."),
         "quellboxctl unblock --match from=@example.com --dry-run", AddDisposalOptions, RunUnblock},
        {"delete", "[NAME... | -]", QT_TRANSLATE_NOOP("quellbox", "Deletes messages."),
         "quellboxctl list --min-scl 9 --print0 | quellboxctl delete -0 -", AddDisposalOptions, RunDelete},
        {"tolerate", "list | add ENTRY | remove ENTRY | test SENDER",
         QT_TRANSLATE_NOOP("quellbox", "Keeps the whitelist of tolerated senders."),
         "quellboxctl tolerate add @example.com --replace", AddTolerateOptions, RunTolerate},
        {"deliver-tolerated", "",
         QT_TRANSLATE_NOOP("quellbox", "Unblocks the messages of tolerated senders, as an automatic refresh does."),
         "quellboxctl deliver-tolerated --dry-run", AddDeliverOptions, RunDeliverTolerated},
        {"cleanse", "", QT_TRANSLATE_NOOP("quellbox", "Deletes what is older than some days."),
         "quellboxctl cleanse --keep-days 7 --dry-run", AddCleanseOptions, RunCleanse},
        {"stats", "",
         QT_TRANSLATE_NOOP("quellbox", "Counts messages and bytes by day, spam confidence, domain of the sender, "
                                       "recipient and subject."),
         "quellboxctl stats --days 7 --by domain --top 10", AddStatsOptions, RunStats},
        {"history", "", QT_TRANSLATE_NOOP("quellbox", "Prints what was done, the newest first."),
         "quellboxctl history --action delete --limit 20", AddHistoryOptions, RunHistory},
        {"undo", "[ACTION]",
         QT_TRANSLATE_NOOP("quellbox", "Takes back the latest action, or the one with that number in the history."),
         "quellboxctl undo 17", AddUndoOptions, RunUndo},
        {"pickup-test", "", QT_TRANSLATE_NOOP("quellbox", "Sends a test message to the postmaster."),
         "quellboxctl pickup-test --wait 60", AddPickupTestOptions, RunPickupTest},
        {"watch", "", QT_TRANSLATE_NOOP("quellbox", "Prints a line for each new message, until it is interrupted."),
         "quellboxctl watch --json --max-scl 6", AddWatchOptions, RunWatch},
    };
    return all;
}

const Command* FindCommand(const QString& name) {
    const std::vector<Command>& all = Commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const Command& command) { return name == QLatin1String(command.name); });
    return found == all.end() ? nullptr : &*found;
}

} // namespace quellbox
