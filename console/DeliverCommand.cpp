#include "console/ArchiveRows.h"
#include "console/Command.h"
#include "console/Disposal.h"
#include "console/ListWriter.h"
#include "console/Upkeep.h"
#include "delivery/SendingFolder.h"
#include "history/HistoryTexts.h"
#include "messages/DisposalTask.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

/// The day filter that a refresh of the window has.
QString DaysOfWindow(const AppState& state) {
    const bool filters = state.FilterDays != 0 && state.FilterMessages != 0;
    return filters ? QString::number(state.FilterDays) : QString();
}

/// What an automatic refresh would deliver. A message that may have been delivered before is not sent again by itself.
std::vector<MessageRow> ToleratedRows(Session& session, const QString& days) {
    MessageChoice choice;
    choice.days = days;
    choice.tolerated = std::make_shared<const WhitelistMatcher>(LoadWhitelist(session.Ports().store));
    std::vector<MessageRow> rows = RowsOf(session, choice);
    std::erase_if(rows, [](const MessageRow& row) { return IsUncertainName(row.Key()); });
    return rows;
}

} // namespace

void AddDryRunOption(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("dry-run"),
                      QCoreApplication::translate("quellbox", "Print the messages, and do nothing with them.")});
    AddListFormOptions(parser);
}

bool ReadDryRun(const QCommandLineParser& parser) {
    const bool isDry = parser.isSet(QStringLiteral("dry-run"));
    if (!isDry && (parser.isSet(QStringLiteral("names")) || parser.isSet(QStringLiteral("print0")))) {
        throw UsageError(QCoreApplication::translate("quellbox", "--names and --print0 need --dry-run."));
    }
    return isDry;
}

void AddDeliverOptions(QCommandLineParser& parser) {
    parser.addOption(DaysOption());
    AddDryRunOption(parser);
}

ExitCode RunDeliverTolerated(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const OutputForm form = ReadForm(parser);
    const bool isDry = ReadDryRun(parser);
    const std::optional<QString> days = ReadDays(parser);
    if (session.State().TolerationLevel == 0) {
        throw UsageError(QCoreApplication::translate(
            "quellbox", "The whitelist is disabled in the options, so no message is delivered by it."));
    }
    if (!isDry) {
        session.RequirePickup();
    }
    std::vector<MessageRow> rows = ToleratedRows(session, days.value_or(DaysOfWindow(session.State())));
    if (isDry) {
        ListWriter writer(session, parser);
        for (const MessageRow& row : rows) {
            writer.Add(row);
        }
        return ExitCode::Done;
    }
    const Handled handled = DisposeOf(session, std::move(rows), Action::unblockTolerated, HistoryAction::AutoTolerate);
    BringBackLeftBehind(session);
    return TellHandled(session, form, KeyOf(HistoryAction::AutoTolerate), handled);
}

} // namespace quellbox
