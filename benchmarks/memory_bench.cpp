// Memory that a row of the list costs at the peak of a pass, above the empty window.
#include "benchmarks/Bench.h"
#include "benchmarks/ProgramWindow.h"
#include "platform/LocalFileSystem.h"

#include <QApplication>

#include <cstdio>

using namespace quellbox;
using namespace quellbox::bench;

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QString folder = FolderArgument(argc, argv, 1);
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    ProgramWindow window(*files, folder);
    const qint64 empty = MemoryKiB("VmRSS:");
    if (empty == 0) {
        std::puts("The kernel does not tell how much memory a process has: no figures.");
        return 0;
    }
    window.Refresh();
    QCoreApplication::processEvents();
    const qint64 peak = MemoryKiB("VmHWM:");
    const qint64 filled = MemoryKiB("VmRSS:");
    window.RequireWholeList();
    const double rows = window.Form().Messages().Count();
    Report("memory of the empty window", static_cast<double>(empty) / 1024, "MiB");
    Report("memory a row, at the peak", static_cast<double>(peak - empty) / rows, "KiB", "<= 1.2");
    Report("memory a row, afterwards", static_cast<double>(filled - empty) / rows, "KiB");
    return 0;
}
