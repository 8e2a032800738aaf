#pragma once

#include "archive/RefreshTask.h"

#include "tests/messages/ListRows.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace quellbox {

/// An archive in memory, and a task that refreshes the list of it.
class RefreshTaskTest : public testing::Test {
protected:
    RefreshTaskTest() {
        pool.SetMost(8);
        state.ArchiveDir = QStringLiteral("/Archive/");
        state.PickupDir = QStringLiteral("/pickup/");
        files.AddFolder(state.ArchiveDir);
        files.AddFolder(state.PickupDir);
        Make(files);
    }

    // The readers of a test must not outlive its file system.
    ~RefreshTaskTest() override {
        task.reset();
        pool.WaitForDone();
    }

    void Make(FileSystem& system) {
        task = std::make_unique<RefreshTask>(RefreshPorts{system, store, clock, pool}, state, model);
        QObject::connect(task.get(), &RefreshTask::Counted, [this](int value) { maximum = value; });
        QObject::connect(task.get(), &RefreshTask::Progress, [this](int rows) { progress.push_back(rows); });
        QObject::connect(task.get(), &RefreshTask::Ended, [this](const RefreshResult& ended) {
            EXPECT_FALSE(task->IsRunning());
            result = ended;
            ++ends;
        });
    }

    QString InArchive(const QString& name) const { return state.ArchiveDir + name; }

    /// Adds a message to the archive; each arrives a second after the one before.
    void AddMessage(const QString& name, const QByteArray& xSender = "eve@spam.example") {
        const QDateTime arrival = start.addSecs(arrived++);
        files.Add(InArchive(name), "To: t\r\nFrom: f\r\nSubject: s\r\nX-SENDER: " + xSender + "\r\n\r\nbody",
                  arrival.toMSecsSinceEpoch() * 1'000'000);
    }

    /// Adds messages 000.eml, 001.eml and so on.
    void AddMessages(int count) {
        for (int message = 0; message < count; ++message) {
            AddMessage(QStringLiteral("%1.eml").arg(message, 3, 10, QLatin1Char('0')));
        }
    }

    void Tolerate(const QString& entry) { store.SetValue(QStringLiteral("Tolerate"), entry, QStringLiteral("0")); }

    /// A refresh from its start to its end.
    RefreshOutcome Run(bool markNew = false, bool bulk = false) {
        task->Start(markNew, bulk);
        return WaitForEnd();
    }

    RefreshOutcome WaitForEnd() {
        EXPECT_TRUE(RunUntil([this] { return !task->IsRunning(); }));
        return result.outcome;
    }

    QStringList Keys() const { return KeysOf(model); }

    const QDateTime start{QDate(2026, 6, 15), QTime(12, 0)};
    int arrived = 0;
    MemoryFileSystem files;
    MemorySettingsStore store;
    FixedClock clock{start};
    AppState state;
    MessageListModel model;
    ThreadWorkPool pool;
    std::unique_ptr<RefreshTask> task;

    RefreshResult result;
    int ends = 0;
    int maximum = 0; ///< of the progress; 0 while nothing was to be read
    std::vector<int> progress;
};

} // namespace quellbox
