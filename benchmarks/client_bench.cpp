// The program's core on shares: 2,000 and 32,000 messages on this computer, on mounted folders that are as slow as a
// share, and on shares of a real server through two clients. Each figure stands beside that of a plain loop over the
// same mount in the same run.
#include "archive/RefreshTask.h"
#include "benchmarks/Bench.h"
#include "messages/DisposalTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FaultMount.h"
#include "tests/support/FileNames.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/SambaServer.h"
#include "tests/support/ShareMount.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <array>
#include <cstdio>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

// So many messages are deleted, and as many unblocked.
constexpr int part = 250;
// A plain loop reads no more than these; what it would take for all is worked out from them.
constexpr int mostLooped = 2000;
// Longer than the kernel remembers a name.
constexpr std::chrono::milliseconds untilForgotten(1500);

/// An archive and a pickup folder, as they are measured and as they are filled.
struct Place {
    const char* name;
    QString archive;
    QString pickup;
    QString archiveBehind;
    QString pickupBehind;
};

struct Pair {
    double program = 0;
    double plain = 0; ///< less than 0 when the plain loop failed, as mv does between two shares of smbnetfs
};

/// Lets the kernel forget what it knows of the files.
void Forget() {
    std::this_thread::sleep_for(untilForgotten);
}

class Trial {
public:
    explicit Trial(const Place& place) : place_(place) {
        state_.ArchiveDir = place.archive;
        state_.PickupDir = place.pickup;
    }
    // The readers must not outlive the file system.
    ~Trial() { pool_.WaitForDone(); }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    void Fill(int count) {
        for (int message = 0; message < count; ++message) {
            const QByteArray number = QByteArray::number(message);
            files_->WriteWhole(place_.archiveBehind + QStringLiteral("m%1.EML").arg(message, 6, 10, QLatin1Char('0')),
                               "To: joe@example.com\r\nFrom: eve@spam.example\r\nSubject: About " + number +
                                   "\r\nX-SENDER: eve@spam.example\r\nX-SCL: 7\r\n\r\n" + QByteArray(3000, 'x') +
                                   "\r\n");
        }
    }

    Pair Listing(int count) {
        Forget();
        Pair times;
        times.plain = Time([&] { ReadOneByOne(count); });
        Forget();
        times.program = Time([this] { Refresh(); });
        Require(model_.Count() == count, "the list is not complete");
        return times;
    }

    Pair Deleting() {
        Forget();
        Pair times;
        times.program = Time([this] { Dispose(Action::remove); });
        Forget();
        times.plain = TimeProcesses({QStringLiteral("rm")});
        return times;
    }

    Pair Unblocking() {
        Forget();
        Pair times;
        times.program = Time([this] { Dispose(Action::unblock); });
        RequireFiles(place_.pickupBehind, part);
        Forget();
        times.plain = TimeProcesses({QStringLiteral("mv"), QStringLiteral("-n"), QStringLiteral("-t"), place_.pickup});
        if (times.plain >= 0) {
            RequireFiles(place_.pickupBehind, 2 * part);
        }
        return times;
    }

    void Empty() {
        for (const QString& folder : {place_.archiveBehind, place_.pickupBehind}) {
            for (const QString& name : FileNames(*files_, folder)) {
                files_->Remove(folder + name);
            }
        }
    }

private:
    void Refresh() {
        RefreshTask task(RefreshPorts{*files_, store_, clock_, pool_}, state_, model_);
        task.Start(false, false);
        Run([&task] { return !task.IsRunning(); });
    }

    void Dispose(qint16 action) {
        std::vector<int> rows(part);
        std::iota(rows.begin(), rows.end(), 0);
        DisposalTask task(*files_, pool_, model_);
        DisposalResult result;
        QObject::connect(&task, &DisposalTask::Ended, [&result](const DisposalResult& ended) { result = ended; });
        task.Start(action, {state_.ArchiveDir, state_.PickupDir}, rows);
        Run([&task] { return !task.IsRunning(); });
        Require(result.failures.empty() && result.rowsGone == part, "a message could not be disposed of");
    }

    static void Run(const std::function<bool()>& holds) {
        while (!holds()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    /// As `cat` or `head` in a loop would: each file is looked at, opened, read once and closed.
    void ReadOneByOne(int count) const {
        std::array<char, 4096> buffer{};
        const std::string folder = QFile::encodeName(place_.archive).toStdString();
        DIR* stream = ::opendir(folder.c_str());
        Require(stream != nullptr, "the folder cannot be opened");
        std::vector<std::string> names;
        while (const dirent* entry = ::readdir(stream)) {
            if (entry->d_name[0] != '.') {
                names.push_back(folder + entry->d_name);
            }
        }
        ::closedir(stream);
        if (static_cast<int>(names.size()) != count) {
            std::printf("%s: the plain loop sees %zu of %d files\n", place_.name, names.size(), count);
            std::fflush(stdout);
        }
        names.resize(static_cast<size_t>(std::min(count, mostLooped)));
        for (const std::string& name : names) {
            struct stat status {};
            Require(::stat(name.c_str(), &status) == 0, "a file cannot be looked at");
            const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
            Require(file >= 0 && ::read(file, buffer.data(), buffer.size()) > 0, "a file cannot be read");
            ::close(file);
        }
    }

    /// The same to the messages that come next in the list, by 64 processes, each of which takes one file. Less than 0
    /// when one of them fails.
    double TimeProcesses(const QStringList& program) {
        QStringList paths;
        std::vector<int> rows(part);
        std::iota(rows.begin(), rows.end(), 0);
        for (const int row : rows) {
            paths += place_.archive + model_.Row(row).Key();
        }
        QProcess xargs;
        const double seconds = Time([&] {
            xargs.start(QStringLiteral("xargs"), QStringLiteral("-0 -P 64 -n 1").split(QLatin1Char(' ')) + program);
            xargs.write(QFile::encodeName(paths.join(QChar())));
            xargs.closeWriteChannel();
            Require(xargs.waitForFinished(600'000), "xargs does not run");
        });
        model_.Remove(rows);
        return xargs.exitCode() == 0 ? seconds : -1;
    }

    void RequireFiles(const QString& folder, int count) const {
        Require(FileNames(*files_, folder).size() == count, "a folder holds something else");
    }

    const Place& place_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
    ThreadWorkPool pool_;
    MemorySettingsStore store_;
    FixedClock clock_{QDateTime::currentDateTime()};
    AppState state_;
    MessageListModel model_;
};

void PrintPair(const Pair& times) {
    if (times.plain < 0) {
        std::printf(" | %8.2f %15s", times.program, "(loop fails)");
    } else {
        std::printf(" | %8.2f %8.2f %6.2f", times.program, times.plain, times.plain / times.program);
    }
}

void Measure(const Place& place, int count) {
    for (const QString& folder : {place.archiveBehind, place.pickupBehind}) {
        Require(QDir().mkpath(folder), "a folder cannot be made");
    }
    Trial trial(place);
    trial.Fill(count);
    Pair listing = trial.Listing(count);
    const double looped = std::min(count, mostLooped);
    listing.plain *= count / looped;
    const Pair deleting = trial.Deleting();
    const Pair unblocking = trial.Unblocking();
    trial.Empty();
    std::printf("%-16s %6d", place.name, count);
    PrintPair(listing);
    PrintPair(deleting);
    PrintPair(unblocking);
    std::printf(" |%s\n", count > mostLooped ? " (loop worked out from 2,000)" : "");
    std::fflush(stdout);
}

void MeasureLocal(int count) {
    const QTemporaryDir folder;
    const QString archive = folder.filePath(QStringLiteral("archive/"));
    const QString pickup = folder.filePath(QStringLiteral("pickup/"));
    Measure({"this computer", archive, pickup, archive, pickup}, count);
}

void MeasureSlow(const char* name, std::chrono::milliseconds delay, int count) {
    FaultMount::Traits traits;
    traits.delay = delay;
    FaultMount mount(traits);
    if (!mount.IsMounted()) {
        std::printf("%-16s %s\n", name, qPrintable(mount.WhyNot()));
        return;
    }
    const QString archive = QStringLiteral("archive/");
    const QString pickup = QStringLiteral("pickup/");
    Measure({name, mount.Folder() + archive, mount.Folder() + pickup, mount.RealFolder() + archive,
             mount.RealFolder() + pickup},
            count);
}

void MeasureShare(const char* name, ShareClient client, int count) {
    const SambaServer server(SambaServer::Access::Guest);
    const auto mount = server.IsRunning() ? ShareMount::Make(client, server) : nullptr;
    if (!mount || !mount->IsMounted()) {
        std::printf("%-16s %s\n", name, qPrintable(mount ? mount->WhyNot() : server.WhyNot()));
        return;
    }
    const QString archive = QStringLiteral("archive");
    const QString pickup = QStringLiteral("pickup");
    Measure(
        {name, mount->Folder(archive), mount->Folder(pickup), server.RealFolder(archive), server.RealFolder(pickup)},
        count);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::vector<int> counts;
    QStringList wanted;
    for (const QString& argument : QCoreApplication::arguments().mid(1)) {
        bool isNumber = false;
        const int count = argument.toInt(&isNumber);
        Require(!isNumber || count >= 4 * part,
                "usage: client_bench [COUNT | local | 1ms | 20ms | smbnetfs | desktop]... "
                "(each count at least 1000)");
        isNumber ? counts.push_back(count) : wanted.append(argument);
    }
    if (counts.empty()) {
        counts = {2000, 32000};
    }
    const auto isWanted = [&wanted](const char* place) {
        return wanted.isEmpty() || wanted.contains(QLatin1String(place));
    };
    std::printf("Seconds of the program, seconds of the plain loop, and how many times faster the program is.\n"
                "Plain loops: one file after the other; 64 processes of rm; 64 processes of mv -n.\n\n"
                "%-16s %6s | %-24s | %-24s | %-24s |\n",
                "", "", "list and read all", "delete 250", "unblock 250");
    for (const int count : counts) {
        if (isWanted("local")) {
            MeasureLocal(count);
        }
        if (isWanted("1ms")) {
            MeasureSlow("1 ms a call", std::chrono::milliseconds(1), count);
        }
        if (isWanted("20ms")) {
            MeasureSlow("20 ms a call", std::chrono::milliseconds(20), count);
        }
        if (isWanted("smbnetfs")) {
            MeasureShare("smbnetfs", ShareClient::SmbNetFs, count);
        }
        if (isWanted("desktop")) {
            MeasureShare("desktop (gvfs)", ShareClient::Desktop, count);
        }
    }
    return 0;
}
