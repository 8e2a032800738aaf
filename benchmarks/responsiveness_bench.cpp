// How long the window does not answer while a pass runs, also while a reader is stuck.
#include "benchmarks/Bench.h"
#include "benchmarks/MemoryArchive.h"
#include "benchmarks/ProgramWindow.h"
#include "benchmarks/TurnWatch.h"
#include "platform/LocalFileSystem.h"

#include <QApplication>

#include <atomic>
#include <cstdio>
#include <thread>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

/// The longest gap of a pass, what follows in the event loop included.
double LongestGapMs(ProgramWindow& window) {
    const TurnWatch watch;
    window.Refresh();
    for (const int turns = watch.Turns(); watch.Turns() < turns + 5;) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return watch.LongestMs();
}

void MeasureFiles(FileSystem& files, const QString& folder) {
    Best first;
    Best again;
    for (int round = 0; round < 5; ++round) {
        ProgramWindow window(files, folder);
        first.Add(LongestGapMs(window) / 1e3);
        again.Add(LongestGapMs(window) / 1e3);
        window.RequireWholeList();
    }
    Report("longest gap between turns, first pass", first.seconds * 1e3, "ms", "< 50");
    Report("longest gap between turns, next full pass", again.seconds * 1e3, "ms", "< 50");
}

void MeasureStuckReader() {
    constexpr int count = 4000;
    MemoryFileSystem files;
    FillArchive(files, 0, count);
    std::atomic<int> reads = 0;
    files.SetReadHook([&reads](const QString&) {
        if (++reads == count / 2) {
            std::this_thread::sleep_for(std::chrono::seconds(2));
        }
    });
    ProgramWindow window(files, archiveFolder);
    double gap = 0;
    const double seconds = Time([&] { gap = LongestGapMs(window); });
    Require(seconds >= 2, "the reader was not stuck");
    files.SetReadHook({});
    window.RequireWholeList();
    Report("longest gap between turns, reader stuck for 2 s", gap, "ms", "< 50");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QString folder = FolderArgument(argc, argv, 1);
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    MeasureFiles(*files, folder);
    MeasureStuckReader();
    return 0;
}
