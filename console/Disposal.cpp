#include "console/Disposal.h"

#include "console/Progress.h"
#include "delivery/ChosenDelivery.h"
#include "history/ActionNotes.h"
#include "messages/DisposalTask.h"
#include "messages/KeptFolder.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>

#include <numeric>

namespace quellbox {

Handled DisposeOf(Session& session, std::vector<MessageRow> rows, qint16 action, HistoryAction history) {
    if (rows.empty() || session.IsInterrupted()) {
        return {};
    }
    session.NoteChanges();
    const ConsolePorts& ports = session.Ports();
    const AppState& state = session.State();
    const bool deletes = action == Action::remove;
    const std::shared_ptr<ReleaseWay> way = deletes ? nullptr : session.NewWay();
    const DisposalFolders folders{state.ArchiveDir, state.PickupDir, way, ChosenProfile(state).packing};
    const std::shared_ptr<KeptFolder> kept = deletes ? FolderToKeepIn(ports.files, state, ports.clock.Now()) : nullptr;
    const QString target = TargetOf(way.get(), state);
    MessageListModel model;
    model.Append(std::move(rows));
    std::vector<int> all(static_cast<size_t>(model.Count()));
    std::iota(all.begin(), all.end(), 0);
    DisposalTask task(ports.files, ports.pool, model);
    DisposalResult result;
    Progress progress(model.Count());
    QObject::connect(&task, &DisposalTask::Progress, &session, [&progress](int done) { progress.Show(done); });
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&task, &DisposalTask::Ended, &session, [&result, done](const DisposalResult& ended) {
                result = ended;
                done();
            });
            task.Start(
                action, folders, all, kept,
                session.History().Begin({history, folders.archive, target, kept ? QString(kept->Path()) : QString()}));
        },
        [&task] { task.Cancel(); });
    progress.Clear();
    session.Tell(result.failures);
    if (result.refused) {
        throw CommandError(ExitCode::SomeFailed,
                           NoteRefusal(session.History(), history, state.ArchiveDir, *result.refused));
    }
    const auto failed = static_cast<qint64>(result.failures.size());
    return {result.rowsGone - failed, failed};
}

ExitCode TellHandled(Session& session, OutputForm form, const QString& action, const Handled& handled) {
    TableWriter table(session, form,
                      {{QStringLiteral("action"), QCoreApplication::translate("quellbox", "Action")},
                       {QStringLiteral("done"), QCoreApplication::translate("quellbox", "Done"), true},
                       {QStringLiteral("failed"), QCoreApplication::translate("quellbox", "Failed"), true}});
    table.Add({action, QString::number(handled.done), QString::number(handled.failed)});
    return handled.failed > 0 ? ExitCode::SomeFailed : ExitCode::Done;
}

} // namespace quellbox
