// Unblock and Delete of many messages on a share, against the same number of calls one after the other; and how long
// the window does not answer meanwhile, also when one call hangs.
#include "benchmarks/Bench.h"
#include "benchmarks/MemoryArchive.h"
#include "benchmarks/ProgramWindow.h"
#include "tests/support/FileNames.h"

#include <QApplication>

#include <atomic>
#include <cstdio>
#include <thread>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int count = 500;
constexpr int rounds = 3;
constexpr std::chrono::seconds hanging(2);
const QString pickupFolder = QStringLiteral("/pickup/");

struct Command {
    const char* name;
    const char* action;
    int inPickup; ///< messages afterwards
};

constexpr std::array<Command, 2> commands{{{"unblock", "mnuActionsUnblock", count}, {"delete", "mnuActionsDelete", 0}}};

/// So many calls of this latency, one after the other.
double TimeOneByOne(int calls, std::chrono::milliseconds latency) {
    MemoryFileSystem files;
    files.SetLatency(latency);
    return Time([&files, calls] {
        for (int call = 0; call < calls; ++call) {
            files.FileExists(archiveFolder);
        }
    });
}

struct Measured {
    ProgramWindow::Emptying emptying;
    int calls = 0;
};

/// The command on a full archive. `hook` runs before each call that changes something.
Measured Run(const Command& command, std::chrono::milliseconds latency,
             const std::function<void(const QString&)>& hook = {}) {
    MemoryFileSystem files;
    FillArchive(files, 0, count);
    files.AddFolder(pickupFolder);
    ProgramWindow window(files, archiveFolder, pickupFolder);
    window.Refresh();
    window.RequireWholeList();
    files.SetLatency(latency);
    files.SetChangeHook(hook);
    const int before = files.CallCount();
    Measured measured;
    measured.emptying = window.EmptyList(command.action);
    measured.calls = files.CallCount() - before;
    files.SetLatency({});
    Require(FileNames(files, archiveFolder).isEmpty(), "messages are left in the archive");
    Require(FileNames(files, pickupFolder).size() == command.inPickup, "the pickup folder holds something else");
    return measured;
}

void Compare(const Command& command, std::chrono::milliseconds latency) {
    Best whole;
    Best gap;
    int calls = 0;
    for (int round = 0; round < rounds; ++round) {
        const Measured measured = Run(command, latency);
        whole.Add(measured.emptying.seconds);
        gap.Add(measured.emptying.longestGapMs / 1e3);
        calls = measured.calls;
    }
    const double single = TimeOneByOne(calls, latency);
    std::printf("%s of %d messages, share of %d ms a call\n", command.name, count, static_cast<int>(latency.count()));
    Report("  calls a message", static_cast<double>(calls) / count, "");
    Report("  as many calls one after the other", single * 1e3, "ms");
    Report("  the command", whole.seconds * 1e3, "ms");
    Report("  one after the other / command", single / whole.seconds, "times", ">= 24");
    Report("  longest gap between turns", gap.seconds * 1e3, "ms", "< 50");
}

void MeasureHangingCall(const Command& command) {
    std::atomic<int> calls = 0;
    const Measured measured = Run(command, std::chrono::milliseconds(1), [&calls](const QString&) {
        if (++calls == count / 2) {
            std::this_thread::sleep_for(hanging);
        }
    });
    Require(measured.emptying.seconds >= 2, "no call hung");
    std::printf("%s of %d messages, one call hangs for 2 s\n", command.name, count);
    Report("  the command", measured.emptying.seconds * 1e3, "ms");
    Report("  longest gap between turns", measured.emptying.longestGapMs, "ms", "< 50");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    for (const Command& command : commands) {
        Compare(command, std::chrono::milliseconds(1));
        Compare(command, std::chrono::milliseconds(20));
        MeasureHangingCall(command);
    }
    return 0;
}
