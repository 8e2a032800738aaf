#pragma once

#include "archive/RefreshPass.h"

#include "tests/messages/ListRows.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemorySettingsStore.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace quellbox {

/// An archive in memory, with a window that only notes what a pass asks of it.
class RefreshPassTest : public testing::Test {
protected:
    RefreshPassTest() {
        pool.setMaxThreadCount(8);
        state.ArchiveDir = QStringLiteral("/Archive/");
        state.PickupDir = QStringLiteral("/pickup/");
        files.AddFolder(state.ArchiveDir);
        files.AddFolder(state.PickupDir);
        callbacks.clearView = [this] {
            ++viewsCleared;
            model.Clear();
        };
        callbacks.enterBusy = [this](int value) { maximum = value; };
        callbacks.showProgress = [this](int value) { progress.push_back(value); };
        callbacks.runEvents = [this] { ++eventRuns; };
    }

    // The readers of a test must not outlive its file system.
    ~RefreshPassTest() override { pool.waitForDone(); }

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

    RefreshPass Pass() { return {{files, store, clock, pool}, state, model, panels, callbacks}; }

    RefreshOutcome Run(bool markNew = false, bool bulk = false) { return Pass().Run(markNew, bulk); }

    QStringList Keys() const { return KeysOf(model); }

    const QDateTime start{QDate(2026, 6, 15), QTime(12, 0)};
    int arrived = 0;
    MemoryFileSystem files;
    MemorySettingsStore store;
    FixedClock clock{start};
    QThreadPool pool;
    AppState state;
    MessageListModel model;
    StatusPanels panels;
    RefreshCallbacks callbacks;

    int viewsCleared = 0;
    int maximum = 0; ///< of the progress; 0 while the busy state was not entered
    std::vector<int> progress;
    int eventRuns = 0;
};

} // namespace quellbox
