// A whole refresh of real files, as the user sees it, against what no program can avoid, and against mutt.
#include "benchmarks/Bench.h"
#include "benchmarks/Floor.h"
#include "benchmarks/Mutt.h"
#include "benchmarks/ProgramWindow.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int rounds = 7;

/// A pass in a window of its own; the window's creation does not count.
double TimePass(FileSystem& files, const QString& folder) {
    ProgramWindow window(files, folder);
    const double seconds = Time([&] { window.Refresh(); });
    window.RequireWholeList();
    return seconds;
}

double TimeFloor(const QString& folder, int count) {
    return Time([&] { Require(RunFloor(folder) == count, "the floor saw another number of files"); });
}

/// Passes and floors take turns, so that both meet the same disturbances.
struct Comparison {
    Best pass;
    Best floor;
};

Comparison Compare(FileSystem& files, const QString& folder, int count, int times) {
    Comparison result;
    TimeFloor(folder, count);
    for (int round = 0; round < times; ++round) {
        result.pass.Add(TimePass(files, folder));
        result.floor.Add(TimeFloor(folder, count));
    }
    return result;
}

void CompareCold(FileSystem& files, const QString& folder, int count) {
    if (!DropFileCache()) {
        std::puts("The system's cache of files cannot be emptied here: no cold figures.");
        return;
    }
    Best pass;
    Best floor;
    for (int round = 0; round < 3; ++round) {
        DropFileCache();
        pass.Add(TimePass(files, folder));
        DropFileCache();
        floor.Add(TimeFloor(folder, count));
    }
    Report("refresh, cold cache: pass", pass.seconds * 1e3, "ms");
    Report("refresh, cold cache: floor, one thread", floor.seconds * 1e3, "ms");
    Report("refresh, cold cache: pass / floor", pass.seconds / floor.seconds, "times", "<= 1");
}

void CompareWithMutt(const QString& folder, double passSeconds) {
    if (!Mutt::IsInstalled()) {
        std::puts("mutt is not installed: no comparison with it.");
        return;
    }
    const QTemporaryDir place;
    const Mutt mutt(folder, place.path());
    Best plain;
    Best cached;
    mutt.Open(true);
    for (int round = 0; round < 3; ++round) {
        plain.Add(mutt.Open(false));
        cached.Add(mutt.Open(true));
    }
    Report("mutt, no header cache", plain.seconds * 1e3, "ms");
    Report("mutt, warm header cache", cached.seconds * 1e3, "ms");
    Report("mutt without header cache / pass", plain.seconds / passSeconds, "times", "> 1");
    Report("mutt with warm header cache / pass", cached.seconds / passSeconds, "times", "> 1");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QString many = FolderArgument(argc, argv, 1);
    const QString few = FolderArgument(argc, argv, 2);
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    const auto manyCount = static_cast<int>(FileNames(*files, many).size());
    const auto fewCount = static_cast<int>(FileNames(*files, few).size());

    const Comparison large = Compare(*files, many, manyCount, rounds);
    const Comparison small = Compare(*files, few, fewCount, 3 * rounds);
    Report("refresh, files", manyCount, "");
    Report("refresh, warm cache: pass", large.pass.seconds * 1e3, "ms");
    Report("refresh, warm cache: floor, one thread", large.floor.seconds * 1e3, "ms");
    Report("refresh, warm cache: pass / floor", large.pass.seconds / large.floor.seconds, "times", "<= 1.3");
    const double manyEach = large.pass.seconds / manyCount * 1e6;
    const double fewEach = small.pass.seconds / fewCount * 1e6;
    Report("refresh, each of many files", manyEach, "us");
    Report("refresh, each of few files", fewEach, "us");
    Report("refresh, each of many / each of few", manyEach / fewEach, "times", "<= 1.2");
    CompareWithMutt(many, large.pass.seconds);
    CompareCold(*files, many, manyCount);
    return 0;
}
