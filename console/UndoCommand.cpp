#include "console/AskHistory.h"
#include "console/Choices.h"
#include "console/Command.h"
#include "console/Disposal.h"
#include "console/Progress.h"
#include "console/Upkeep.h"
#include "console/WhitelistLock.h"
#include "history/HistoryTexts.h"
#include "history/UndoPlan.h"
#include "messages/PutBackTask.h"
#include "whitelist/UndoneTolerance.h"

#include <QCoreApplication>

#include <algorithm>
#include <deque>

namespace quellbox {

namespace {

/// A number of the history. Throws UsageError.
qint64 ReadId(const QString& text) {
    bool isNumber = false;
    const qint64 id = text.toLongLong(&isNumber);
    if (!isNumber || id <= 0) {
        throw UsageError(QCoreApplication::translate("quellbox", "\"%1\" is no number of the history.").arg(text));
    }
    return id;
}

/// What is to be taken back: entries, an action, or the latest one for the archive.
std::vector<UndoItem> ItemsToUndo(Session& session, const QCommandLineParser& parser) {
    HistoryIds entries;
    for (const QString& text : parser.values(QStringLiteral("entry"))) {
        entries.push_back(ReadId(text));
    }
    const QStringList actions = parser.positionalArguments();
    if (!entries.empty() && !actions.isEmpty()) {
        throw UsageError(QCoreApplication::translate("quellbox", "Give either an action or entries."));
    }
    const qint64 action = actions.isEmpty() ? 0 : ReadId(actions.first());
    return AskHistory(session, [entries, action, archive = QString(session.Archive())](JournalDatabase& database) {
        if (!entries.empty()) {
            return database.ItemsToUndo(entries);
        }
        return action > 0 ? database.ItemsToUndo(action) : LatestItemsToUndo(database, archive);
    });
}

/// Names the entries that were wanted and cannot be taken back, and counts them.
qint64 TellLeftOut(Session& session, const QCommandLineParser& parser, const std::vector<UndoItem>& items) {
    qint64 count = 0;
    for (const QString& text : parser.values(QStringLiteral("entry"))) {
        const qint64 id = text.toLongLong();
        if (std::none_of(items.begin(), items.end(), [id](const UndoItem& item) { return item.id == id; })) {
            session.Tell(QCoreApplication::translate("quellbox", "Entry %1 cannot be taken back.").arg(id));
            ++count;
        }
    }
    return count;
}

Handled PutBackPart(Session& session, const UndoPart& part) {
    session.NoteChanges();
    const ConsolePorts& ports = session.Ports();
    PutBackTask task(ports.files, ports.pool);
    PutBackResult result;
    Progress progress(static_cast<qint64>(part.items.size()));
    QObject::connect(&task, &PutBackTask::Progress, &session, [&progress](int done) { progress.Show(done); });
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&task, &PutBackTask::Ended, &session, [&result, done](const PutBackResult& ended) {
                result = ended;
                done();
            });
            task.Start(FilesToPutBack(part), FoldersEmptiedBy(part), session.History().Begin(SubjectOfUndo(part)));
        },
        [&task] { task.Cancel(); });
    progress.Clear();
    const UndoOutcome outcome = OutcomeOf(part, result);
    session.Tell(outcome.failures);
    if (!outcome.senders.isEmpty()) {
        const WhitelistLock lock(session);
        StopTolerating(ports.store, session.History(), session.Archive(), part.facts, outcome.senders);
    }
    const auto done =
        std::count_if(result.fates.begin(), result.fates.end(), [](const PutBackFate& fate) { return fate.isDone; });
    return {done, static_cast<qint64>(outcome.failures.size())};
}

} // namespace

void AddUndoOptions(QCommandLineParser& parser) {
    parser.addOption(
        {QStringLiteral("entry"),
         QCoreApplication::translate("quellbox", "Take back one entry of the history. May be given several "
                                                 "times."),
         QStringLiteral("N")});
}

ExitCode RunUndo(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 1);
    const OutputForm form = ReadForm(parser);
    TellIfNoHistory(session);
    CompleteHistory(session);
    std::vector<UndoItem> items = ItemsToUndo(session, parser);
    if (items.empty()) {
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "There is nothing that can be taken back."));
    }
    Handled handled;
    handled.failed = TellLeftOut(session, parser, items);
    const std::deque<UndoPart> parts = DivideByAction(std::move(items));
    for (const UndoPart& part : parts) {
        if (session.IsInterrupted()) {
            break;
        }
        const Handled some = PutBackPart(session, part);
        handled.done += some.done;
        handled.failed += some.failed;
    }
    return TellHandled(session, form, KeyOf(HistoryAction::Undo), handled);
}

} // namespace quellbox
