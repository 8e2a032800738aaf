// A share on which every call takes a millisecond; and a pass that finds one new message among many.
#include "benchmarks/Bench.h"
#include "benchmarks/MemoryArchive.h"
#include "benchmarks/ProgramWindow.h"
#include "mail/HeaderFields.h"
#include "tests/support/FileNames.h"

#include <QApplication>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

/// What the pass does, one call after the other. Returns the number of messages that could be read.
int ReadOneByOne(const FileSystem& files, const QString& folder) {
    int read = 0;
    for (const QString& name : FileNames(files, folder)) {
        const bool regular = files.Status(folder + name).has_value();
        read += regular && ReadHeaderFields(files, folder + name, ServerProfiles().front()).errorCode == 0 ? 1 : 0;
    }
    return read;
}

void CompareSlowShare() {
    constexpr int count = 2000;
    MemoryFileSystem files;
    FillArchive(files, 0, count);
    files.SetLatency(std::chrono::milliseconds(1));
    const double single = Time([&] { Require(ReadOneByOne(files, archiveFolder) == count, "a message is unread"); });
    Best pass;
    for (int round = 0; round < 3; ++round) {
        files.SetLatency(std::chrono::milliseconds(1));
        ProgramWindow window(files, archiveFolder);
        pass.Add(Time([&] { window.Refresh(); }));
        files.SetLatency(std::chrono::microseconds(0));
        window.RequireWholeList();
    }
    Report("share of 1 ms a call: one file at a time", single * 1e3, "ms");
    Report("share of 1 ms a call: pass", pass.seconds * 1e3, "ms");
    Report("share of 1 ms a call: one at a time / pass", single / pass.seconds, "times", ">= 20");
}

void CountIncrementalOpens() {
    constexpr int count = 32000;
    MemoryFileSystem files;
    FillArchive(files, 0, count);
    ProgramWindow window(files, archiveFolder);
    window.Refresh();
    FillArchive(files, count, 1);
    const int before = files.OpenCount();
    const double seconds = Time([&] { window.RefreshIncrementally(); });
    const int opened = files.OpenCount() - before;
    Report("one new file among 32,000: files opened", opened, "", "1");
    Report("one new file among 32,000: pass", seconds * 1e3, "ms");
    Require(opened == 1, "another number of files than the new one was opened");
    window.RequireWholeList();
    Require(window.Form().Messages().Row(0).IsUnread(), "the new message is not marked as unread");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    CompareSlowShare();
    CountIncrementalOpens();
    return 0;
}
