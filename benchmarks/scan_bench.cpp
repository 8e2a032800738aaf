// An archive of many real files, listed and read in order of arrival, against what no program can avoid; how soon the
// first row comes, how much memory a file takes, and the same on a share on which every call takes 20 ms.
#include "archive/ArchiveScan.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Floor.h"
#include "benchmarks/MemoryArchive.h"
#include "platform/LocalFileSystem.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr auto measureOption = "--measure";

/// How long parts of a scan took, in seconds.
struct ScanTimes {
    double whole = 0;
    double listing = 0;  ///< until the files were listed and sorted
    double firstRow = 0; ///< from then until the first row
};

using SteadyTime = std::chrono::steady_clock::time_point;

double Since(SteadyTime start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A scan whose rows are as many as `count`, whole, and in order of arrival, which is that of their names.
ScanTimes TimeScan(const FileSystem& files, const QString& folder, qint64 count) {
    ThreadWorkPool pool;
    ArchiveScan scan(files, pool);
    QEventLoop loop;
    ScanTimes times;
    qint64 rows = 0;
    bool areLoaded = true;
    bool areInOrder = true;
    qint64 last = std::numeric_limits<qint64>::min();
    const SteadyTime start = std::chrono::steady_clock::now();
    SteadyTime listed;
    QObject::connect(&scan, &ArchiveScan::Listed, [&] {
        times.listing = Since(start);
        listed = std::chrono::steady_clock::now();
    });
    QObject::connect(&scan, &ArchiveScan::Ended, [&](const ScanResult& result) {
        Require(result.outcome == ScanOutcome::Completed, "the scan was not completed");
        loop.quit();
    });
    scan.Start({folder, &ServerProfiles().front()}, [&](const ReadRow& row) {
        if (rows++ == 0) {
            times.firstRow = Since(listed);
        }
        areLoaded = areLoaded && row.loaded;
        areInOrder = areInOrder && row.status.modifiedNs > last;
        last = row.status.modifiedNs;
    });
    loop.exec();
    times.whole = Since(start);
    Require(rows == count, "the scan gave another number of rows");
    Require(areLoaded, "a message was not read");
    Require(areInOrder, "the rows are not in order of arrival");
    return times;
}

/// What this process has used of the processors, all threads taken together. Other work on the computer hardly adds to
/// it.
double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Fills a folder with messages.
void MakeMessages(const QString& folder, int count) {
    const QByteArray prefix = QFile::encodeName(folder);
    for (int number = 0; number < count; ++number) {
        const QByteArray path = prefix + QFile::encodeName(ArchiveMessageName(number));
        QFile file(QFile::decodeName(path));
        Require(file.open(QIODevice::WriteOnly) && file.write(ArchiveMessage(number)) > 0, "a message is not written");
        file.close();
        const timespec time{ArchiveMessageTime(number) / 1'000'000'000, 0};
        const timespec times[2] = {time, time};
        Require(::utimensat(AT_FDCWD, path.constData(), times, 0) == 0, "a message gets no time");
    }
}

/// Scans and floors take turns, so that both meet the same disturbances.
void CompareWithFloor(const FileSystem& files, const QString& folder, int count) {
    const int rounds = count > 300'000 ? 3 : 7;
    Best whole;
    Best wholeWork;
    Best listing;
    Best firstRow;
    Best floor;
    Best floorWork;
    RunFloor(folder);
    for (int round = 0; round < rounds; ++round) {
        double before = ProcessorSeconds();
        const ScanTimes times = TimeScan(files, folder, count);
        wholeWork.Add(ProcessorSeconds() - before);
        whole.Add(times.whole);
        listing.Add(times.listing);
        firstRow.Add(times.firstRow);
        before = ProcessorSeconds();
        floor.Add(Time([&] { Require(RunFloor(folder) == count, "the floor saw another number of files"); }));
        floorWork.Add(ProcessorSeconds() - before);
    }
    Report("scan, files", count, "");
    Report("scan, warm cache: whole", whole.seconds * 1e3, "ms");
    Report("scan, warm cache: floor, one thread", floor.seconds * 1e3, "ms");
    Report("scan, warm cache: whole / floor", whole.seconds / floor.seconds, "times", "<= 1.3");
    Report("scan, warm cache: the same in processor time", wholeWork.seconds / floorWork.seconds, "times");
    Report("scan, the listing of it", listing.seconds * 1e3, "ms");
    Report("scan, first row after the listing", firstRow.seconds * 1e3, "ms", "<= 1000");
}

/// The most memory that a process has which does nothing but scan the folder, in KiB.
qint64 PeakOfScan(const QString& folder, int count) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QLatin1String(measureOption), folder, QString::number(count)});
    Require(process.waitForFinished(-1) && process.exitCode() == 0, "the scan of another process failed");
    return process.readAllStandardOutput().trimmed().toLongLong();
}

void MeasureMemory(const QString& folder, int count) {
    const QTemporaryDir empty;
    const qint64 none = PeakOfScan(empty.path() + QLatin1Char('/'), 0);
    const qint64 all = PeakOfScan(folder, count);
    if (none == 0) {
        std::puts("The kernel does not tell how much memory a process has: no figures.");
        return;
    }
    const double each = static_cast<double>(all - none) * 1024 / count;
    const auto name = static_cast<double>(ArchiveMessageName(count - 1).size());
    Report("scan, memory of an empty folder, at the peak", static_cast<double>(none) / 1024, "MiB");
    Report("scan, memory of this one, at the peak", static_cast<double>(all) / 1024, "MiB");
    Report("scan, memory a file beyond its name", each - name, "B", "<= 150");
}

/// The least that it could take is how long the calls take when all threads are always in one.
void CompareWithIdealShare() {
    constexpr int count = 10'000;
    constexpr double latency = 0.020;
    MemoryFileSystem files;
    FillArchive(files, 0, count);
    files.SetLatency(std::chrono::milliseconds(20));
    const int before = files.CallCount();
    const ScanTimes times = TimeScan(files, archiveFolder, count);
    ThreadWorkPool pool;
    const double ideal = (files.CallCount() - before) * latency / pool.Most(WorkPool::Kind::Series);
    Report("share of 20 ms a call: scan", times.whole * 1e3, "ms");
    Report("share of 20 ms a call: all threads always in a call", ideal * 1e3, "ms");
    Report("share of 20 ms a call: scan / that", times.whole / ideal, "times", "<= 1.2");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    if (arguments.value(1) == QLatin1String(measureOption)) {
        TimeScan(*files, arguments.value(2), arguments.value(3).toLongLong());
        std::printf("%lld\n", static_cast<long long>(MemoryKiB("VmHWM:")));
        return 0;
    }
    const int count = arguments.size() > 1 ? arguments[1].toInt() : 100'000;
    const QString place = arguments.value(2, QDir::tempPath());
    if (count <= 0 || !QDir(place).exists()) {
        std::fprintf(stderr, "usage: %s [FILES [FOLDER]]  (so many are made in the folder, and removed)\n", argv[0]);
        return 2;
    }
    {
        const QTemporaryDir made(place + QStringLiteral("/scan_bench-XXXXXX"));
        const QString folder = made.path() + QLatin1Char('/');
        MakeMessages(folder, count);
        CompareWithFloor(*files, folder, count);
        MeasureMemory(folder, count);
    }
    CompareWithIdealShare();
    return 0;
}
