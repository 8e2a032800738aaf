#include "console/ArchiveRows.h"
#include "console/Command.h"
#include "console/Disposal.h"
#include "console/InputNames.h"
#include "console/ListWriter.h"
#include "history/HistoryTexts.h"
#include "messages/DisposalTask.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

struct Disposal {
    qint16 action;
    HistoryAction history;
};

/// The names that the command line or the standard input gives. Throws UsageError.
QStringList ReadNames(Session& session, const QCommandLineParser& parser) {
    QStringList names = parser.positionalArguments();
    const bool endsWithNul = parser.isSet(QStringLiteral("0"));
    if (!names.contains(QStringLiteral("-"))) {
        return names;
    }
    if (names.size() > 1) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "Names come either from the command line or from the input."));
    }
    return InputNames(session, endsWithNul ? '\0' : '\n');
}

/// The messages that the command line names or chooses; what is named and not there is told, and counted as failed.
std::vector<MessageRow> ChosenRows(Session& session, const QCommandLineParser& parser, Handled& handled) {
    const MessageChoice choice = ReadChoice(session, parser);
    const bool wantsAll = parser.isSet(QStringLiteral("all"));
    const bool isChosen = wantsAll || !choice.IsEmpty();
    if (parser.positionalArguments().isEmpty()) {
        if (!isChosen) {
            throw UsageError(QCoreApplication::translate(
                "quellbox", "Name messages, or choose them by options. For all messages there is --all."));
        }
        return RowsOf(session, choice);
    }
    if (isChosen) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "Messages are either named or chosen by options, not both."));
    }
    NamedRows named = RowsOf(session, ReadNames(session, parser));
    session.Tell(named.failures);
    handled.failed = static_cast<qint64>(named.failures.size());
    return std::move(named.rows);
}

ExitCode Run(Session& session, const QCommandLineParser& parser, const Disposal& disposal) {
    const OutputForm form = ReadForm(parser);
    const bool isDry = ReadDryRun(parser);
    const bool hasInput = parser.positionalArguments().contains(QStringLiteral("-"));
    if (parser.isSet(QStringLiteral("0")) && !hasInput) {
        throw UsageError(QCoreApplication::translate("quellbox", "-0 needs \"-\", for names from the input."));
    }
    if (!isDry && disposal.action != Action::remove) {
        session.RequirePickup();
    }
    Handled handled;
    std::vector<MessageRow> rows = ChosenRows(session, parser, handled);
    if (isDry) {
        ListWriter writer(session, parser);
        for (const MessageRow& row : rows) {
            writer.Add(row);
        }
        return handled.failed > 0 ? ExitCode::SomeFailed : ExitCode::Done;
    }
    const Handled disposed = DisposeOf(session, std::move(rows), disposal.action, disposal.history);
    handled.done = disposed.done;
    handled.failed += disposed.failed;
    return TellHandled(session, form, KeyOf(disposal.history), handled);
}

} // namespace

void AddDisposalOptions(QCommandLineParser& parser) {
    AddChoiceOptions(parser);
    parser.addOptions(
        {{QStringLiteral("all"), QCoreApplication::translate("quellbox", "All messages of the archive.")},
         {QStringLiteral("0"),
          QCoreApplication::translate("quellbox", "Names from the input (\"-\") end with a NUL, not with a line.")}});
    AddDryRunOption(parser);
}

ExitCode RunUnblock(Session& session, const QCommandLineParser& parser) {
    return Run(session, parser, {Action::unblock, HistoryAction::Unblock});
}

ExitCode RunDelete(Session& session, const QCommandLineParser& parser) {
    return Run(session, parser, {Action::remove, HistoryAction::Delete});
}

} // namespace quellbox
