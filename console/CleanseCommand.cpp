#include "archive/DayWindow.h"
#include "console/ArchiveRows.h"
#include "console/Aside.h"
#include "console/Command.h"
#include "console/Disposal.h"
#include "console/ListWriter.h"
#include "console/Progress.h"
#include "console/Upkeep.h"
#include "dialogs/CleansingTask.h"
#include "history/ActionNotes.h"
#include "history/HistoryTexts.h"
#include "messages/KeptFolder.h"
#include "platform/EntryNames.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>
#include <QSet>

#include <limits>

namespace quellbox {

namespace {

/// Prints what a cleansing would delete.
void PrintCleansing(Session& session, const QCommandLineParser& parser, const QString& days) {
    const QDate today = session.Ports().clock.Now().date();
    const QStringList names = CallAside(
        session, [&files = session.Ports().files, archive = session.Archive(),
                  places = ChosenProfile(session.State()).places] { return CleansingNames(files, archive, places); });
    MessageChoice choice;
    choice.alsoWants = [days, today, found = QSet<QString>(names.begin(), names.end())](const FileEntry& file) {
        const bool isKept = days != QLatin1String("0") && IsRecentFile(days, file.status.modifiedNs, today);
        return !isKept && found.contains(file.name);
    };
    ListWriter writer(session, parser);
    ForEachRow(session, choice, [&writer](const ReadRow& row) {
        writer.Add(row.row);
        return true;
    });
}

CleansingResult Cleanse(Session& session, qint16 days) {
    session.NoteChanges();
    const ConsolePorts& ports = session.Ports();
    const AppState& state = session.State();
    const std::shared_ptr<KeptFolder> kept = FolderToKeepIn(ports.files, state, ports.clock.Now());
    CleansingTask task(ports.files, ports.pool);
    CleansingResult result;
    Progress progress;
    QObject::connect(&task, &CleansingTask::Counted, &session, [&progress](int files) { progress.SetMaximum(files); });
    QObject::connect(&task, &CleansingTask::Progress, &session, [&progress](int done) { progress.Show(done); });
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&task, &CleansingTask::Ended, &session, [&result, done](const CleansingResult& ended) {
                result = ended;
                done();
            });
            const HistorySubject subject{
                HistoryAction::Cleanse, state.ArchiveDir, {}, kept ? QString(kept->Path()) : QString()};
            task.Start(state.ArchiveDir, days, ports.clock.Now().date(), kept, session.History().Begin(subject), {},
                       ChosenProfile(state).places);
        },
        [&task] { task.Cancel(); });
    return result;
}

} // namespace

void AddCleanseOptions(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("keep-days"),
                      QCoreApplication::translate("quellbox", "Keep the messages of that many calendar days, today "
                                                              "being the first; 0 keeps none."),
                      QStringLiteral("N")});
    AddDryRunOption(parser);
}

ExitCode RunCleanse(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const OutputForm form = ReadForm(parser);
    const QString option = QStringLiteral("keep-days");
    if (!parser.isSet(option)) {
        throw UsageError(QCoreApplication::translate("quellbox", "--keep-days is missing: how many days to keep."));
    }
    const int days = ReadNumber(parser, option, 0, std::numeric_limits<qint16>::max());
    RequireArchive(session);
    if (ReadDryRun(parser)) {
        PrintCleansing(session, parser, QString::number(days));
        return ExitCode::Done;
    }
    const CleansingResult result = Cleanse(session, static_cast<qint16>(days));
    session.Tell(result.failures);
    if (result.count == 0 && !result.failures.empty()) {
        throw CommandError(ExitCode::Unreachable, {}); // no file failed, so the listing did
    }
    if (result.refused) {
        throw CommandError(ExitCode::SomeFailed,
                           NoteRefusal(session.History(), HistoryAction::Cleanse, session.Archive(), *result.refused));
    }
    KeepUp(session);
    const auto failed = static_cast<qint64>(result.failures.size());
    return TellHandled(session, form, KeyOf(HistoryAction::Cleanse), {result.count - failed, failed});
}

} // namespace quellbox
