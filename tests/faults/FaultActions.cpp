#ifdef __linux__

#include "tests/faults/FaultActions.h"

#include "archive/RefreshTask.h"
#include "dialogs/CleansingTask.h"
#include "messages/DisposalTask.h"
#include "messages/PutBackTask.h"
#include "tests/messages/ListRows.h"
#include "tests/support/FileNames.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/RunUntil.h"

#include <numeric>
#include <stdexcept>

namespace quellbox {

namespace {

constexpr int daysToKeep = 7;
constexpr auto longestAction = std::chrono::minutes(1);

void AddFailures(Told& told, const std::vector<FileFailure>& failures) {
    for (const FileFailure& failure : failures) {
        told.failed.insert(failure.path.mid(failure.path.lastIndexOf(QLatin1Char('/')) + 1));
    }
}

/// Runs events until the task has ended. A server that has died meanwhile comes back a moment later.
template <class Task>
void WaitForEnd(FaultScene& scene, const Task& task) {
    const auto hasEnded = [&] {
        if (scene.Mount().HasEnded()) {
            scene.Mount().MountAgain();
        }
        return !task.IsRunning();
    };
    if (!RunUntil(hasEnded, longestAction)) {
        throw std::runtime_error("the task does not end");
    }
}

std::shared_ptr<KeptFolder> NewKept(const FaultScene& scene, FileSystem& files) {
    return std::make_shared<KeptFolder>(files, scene.Archive(), 30, QDateTime::currentDateTime());
}

Told Dispose(qint16 action, FaultScene& scene, FileSystem& files, const std::function<void()>& begin,
             const std::shared_ptr<KeptFolder>& kept = nullptr) {
    ThreadWorkPool pool;
    MessageListModel model;
    for (const QString& name : FaultScene::Names()) {
        model.Append({RowWith(name)});
    }
    FileNames(files, scene.Archive()); // the list has come from somewhere
    std::vector<int> rows(static_cast<size_t>(model.Count()));
    std::iota(rows.begin(), rows.end(), 0);
    Told told;
    DisposalTask task(files, pool, model);
    QObject::connect(&task, &DisposalTask::Ended, [&told](const DisposalResult& result) {
        AddFailures(told, result.failures);
        told.wasComplete = result.rowsGone == FaultScene::count;
    });
    begin();
    task.Start(action, {scene.Archive(), scene.Pickup()}, rows, kept);
    WaitForEnd(scene, task);
    pool.WaitForDone();
    return told;
}

Told Tolerate(FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
    ThreadWorkPool pool;
    MessageListModel model;
    MemorySettingsStore store;
    store.SetValue(QStringLiteral("Tolerate"), QStringLiteral("@tolerated.example"), QStringLiteral("0"));
    const FixedClock clock(QDateTime::currentDateTime());
    AppState state;
    state.ArchiveDir = scene.Archive();
    state.PickupDir = scene.Pickup();
    state.TolerationLevel = 2;
    Told told;
    RefreshTask task({files, store, clock, pool}, state, model);
    QObject::connect(&task, &RefreshTask::Ended, [&told](const RefreshResult& result) {
        AddFailures(told, result.failures);
        told.wasComplete = result.outcome == RefreshOutcome::Completed;
    });
    begin();
    task.Start(false, false);
    WaitForEnd(scene, task);
    pool.WaitForDone();
    for (const QString& key : KeysOf(model)) {
        told.listed.insert(key);
    }
    return told;
}

Told Cleanse(FaultScene& scene, FileSystem& files, const std::function<void()>& begin,
             const std::shared_ptr<KeptFolder>& kept) {
    ThreadWorkPool pool;
    CleansingTask task(files, pool);
    Told told;
    QObject::connect(&task, &CleansingTask::Ended, [&told](const CleansingResult& result) {
        AddFailures(told, result.failures);
        // What could not be listed is told of as a failure of the folder.
        told.wasComplete = told.failed.erase(QString()) == 0 && !result.refused;
    });
    begin();
    task.Start(scene.Archive(), daysToKeep, QDate::currentDate(), kept);
    WaitForEnd(scene, task);
    pool.WaitForDone();
    return told;
}

/// Puts back what was deleted in another session.
Told PutBackAll(FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
    const std::shared_ptr<KeptFolder> kept = NewKept(scene, files);
    kept->Make();
    scene.MoveAllTo(kept->Path());
    ThreadWorkPool pool;
    PutBackTask task(files, pool);
    std::vector<PutBack> items;
    for (const QString& name : FaultScene::Names()) {
        items.push_back({kept->PathOf(name), scene.Archive() + name});
    }
    Told told;
    QObject::connect(&task, &PutBackTask::Ended, [&told](const PutBackResult& result) {
        for (const PutBackFate& fate : result.fates) {
            told.wasComplete = told.wasComplete && (fate.isDone || fate.failure);
            AddFailures(told, fate.failure ? std::vector{*fate.failure} : std::vector<FileFailure>());
        }
    });
    begin();
    task.Start(items, {kept->Path()});
    WaitForEnd(scene, task);
    pool.WaitForDone();
    return told;
}

} // namespace

const std::vector<FaultAction>& FaultActions() {
    static const std::vector<FaultAction> actions{
        {"unblock", Wanted::InPickup,
         [](FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
             return Dispose(Action::unblock, scene, files, begin);
         }},
        {"delete", Wanted::Deleted,
         [](FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
             return Dispose(Action::remove, scene, files, begin);
         }},
        {"toleration", Wanted::InPickup, Tolerate},
        {"cleansing", Wanted::Deleted,
         [](FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
             return Cleanse(scene, files, begin, nullptr);
         }},
        {"delete_keeping", Wanted::Kept,
         [](FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
             return Dispose(Action::remove, scene, files, begin, NewKept(scene, files));
         }},
        {"cleansing_keeping", Wanted::Kept,
         [](FaultScene& scene, FileSystem& files, const std::function<void()>& begin) {
             return Cleanse(scene, files, begin, NewKept(scene, files));
         }},
        {"put_back", Wanted::PutBack, PutBackAll}};
    return actions;
}

} // namespace quellbox

#endif
