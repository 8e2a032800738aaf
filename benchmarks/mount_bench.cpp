// Unblock and Delete on a mounted folder as slow as a share, against mv and rm in 64 processes on the same mount.
// The kernel removes or renames one name of a folder at a time, so nobody gets below one call a message there.
#include "benchmarks/Bench.h"
#include "benchmarks/ProgramWindow.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FaultMount.h"
#include "tests/support/FileNames.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <array>
#include <cstdio>
#include <set>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int count = 250;
constexpr std::chrono::milliseconds delay(20);
// Longer than the kernel remembers a name.
constexpr std::chrono::milliseconds untilForgotten(1500);

/// One of the commands that are compared.
struct Command {
    const char* name;
    const char* action;
    QStringList program; ///< of xargs, which adds the file
    int inPickup;        ///< messages afterwards
    /// How many calls a message may take; those by which the kernel itself learns of names count only where `names`.
    const char* wantedCalls;
    bool names;
};

using Counts = std::map<QByteArray, int>;

/// The calls by which the kernel gets to know names and what they stand for.
const std::set<QByteArray> nameCalls{"lookup", "getattr"};

/// An archive and a pickup folder in one mount.
class Place {
public:
    explicit Place(FaultMount& mount) : mount_(mount) {
        Require(QDir(mount_.RealFolder()).mkdir(QStringLiteral("archive")), "no archive");
        Require(QDir(mount_.RealFolder()).mkdir(QStringLiteral("pickup")), "no pickup folder");
    }

    QString Archive() const { return mount_.Folder() + QStringLiteral("archive/"); }
    QString Pickup() const { return mount_.Folder() + QStringLiteral("pickup/"); }
    FaultMount& Mount() { return mount_; }

    /// Puts new messages into the archive, of which the mount has not been asked yet, and empties the pickup folder.
    void Fill() {
        for (const QString& name : FileNames(*files_, Real("pickup"))) {
            files_->Remove(Real("pickup") + name);
        }
        ++filled_;
        for (int number = 0; number < count; ++number) {
            const QString name = QStringLiteral("r%1m%2.EML").arg(filled_).arg(number, 4, 10, QLatin1Char('0'));
            files_->WriteWhole(Real("archive") + name,
                               "Subject: " + QByteArray::number(number) + "\r\n\r\nA body.\r\n");
        }
    }

    QStringList Paths() const {
        QStringList paths;
        for (const QString& name : FileNames(*files_, Real("archive"))) {
            paths += Archive() + name;
        }
        return paths;
    }

    void RequireDone(const Command& command) const {
        Require(FileNames(*files_, Real("archive")).isEmpty(), "messages are left in the archive");
        Require(FileNames(*files_, Real("pickup")).size() == command.inPickup,
                "the pickup folder holds something else");
    }

private:
    QString Real(const char* folder) const { return mount_.RealFolder() + QLatin1String(folder) + QLatin1Char('/'); }

    FaultMount& mount_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
    int filled_ = 0;
};

/// The calls of `work`.
template <class Work>
Counts CallsOf(FaultMount& mount, Work work) {
    const Counts before = mount.Counts();
    work();
    Counts calls = mount.Counts();
    for (auto& [kind, number] : calls) {
        number -= before.at(kind);
    }
    return calls;
}

/// The same by 64 processes, each of which takes one file.
double TimeProcesses(Place& place, const Command& command) {
    place.Fill();
    const QByteArray paths = QFile::encodeName(place.Paths().join(QChar()));
    QProcess xargs;
    xargs.setProcessChannelMode(QProcess::ForwardedChannels);
    const double seconds = Time([&] {
        xargs.start(QStringLiteral("xargs"), QStringLiteral("-0 -P 64 -n 1").split(QLatin1Char(' ')) + command.program);
        xargs.write(paths);
        xargs.closeWriteChannel();
        Require(xargs.waitForFinished(600'000) && xargs.exitCode() == 0, "xargs does not run");
    });
    place.RequireDone(command);
    return seconds;
}

ProgramWindow::Emptying RunProgram(Place& place, const Command& command, Counts& calls) {
    place.Fill();
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    ProgramWindow window(*files, place.Archive(), place.Pickup());
    window.Refresh();
    window.RequireWholeList();
    QElapsedTimer idle;
    idle.start();
    window.WaitUntil([&idle] { return idle.hasExpired(untilForgotten.count()); });
    ProgramWindow::Emptying emptying;
    calls = CallsOf(place.Mount(), [&] { emptying = window.EmptyList(command.action); });
    place.RequireDone(command);
    return emptying;
}

void ReportCalls(const char* who, const Counts& calls, const Command* command) {
    int all = 0;
    int names = 0;
    std::printf("  calls a message of %s:", who);
    for (const auto& [kind, number] : calls) {
        if (number != 0) {
            std::printf(" %s %.2f", kind.constData(), static_cast<double>(number) / count);
            all += number;
            names += nameCalls.contains(kind) ? number : 0;
        }
    }
    std::printf("\n");
    if (command != nullptr) {
        const int judged = command->names ? all : all - names;
        Report(command->names ? "  calls a message" : "  calls a message, those for names apart",
               static_cast<double>(judged) / count, "", command->wantedCalls);
    }
}

void Compare(Place& place, const Command& command, const char* kind) {
    double processes = 0;
    Counts callsOfProcesses = CallsOf(place.Mount(), [&] { processes = TimeProcesses(place, command); });
    Counts calls;
    const ProgramWindow::Emptying emptying = RunProgram(place, command, calls);
    std::printf("%s of %d messages, %s share of %d ms a call\n", command.name, count, kind,
                static_cast<int>(delay.count()));
    Report("  64 processes", processes * 1e3, "ms");
    Report("  the command", emptying.seconds * 1e3, "ms");
    Report("  command / processes", emptying.seconds / processes, "times", "<= 1.1");
    ReportCalls("the processes", callsOfProcesses, nullptr);
    ReportCalls("the command", calls, &command);
    Report("  longest gap between turns", emptying.longestGapMs, "ms", "< 50");
}

void CompareOn(bool poor) {
    FaultMount::Traits traits = poor ? FaultMount::Poor() : FaultMount::Traits();
    traits.delay = delay;
    FaultMount mount(traits);
    Require(mount.IsMounted(), "the folder cannot be mounted again");
    Place place(mount);
    const QStringList move{QStringLiteral("mv"), QStringLiteral("-n"), QStringLiteral("-t"), place.Pickup()};
    const QStringList remove{QStringLiteral("rm")};
    const char* kind = poor ? "poor" : "rich";
    Compare(place, {"unblock", "mnuActionsUnblock", move, count, poor ? "<= 4" : "1", false}, kind);
    Compare(place, {"delete", "mnuActionsDelete", remove, 0, "2", true}, kind);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (const FaultMount trial({}); !trial.IsMounted()) {
        std::printf("%s No figures.\n", qPrintable(trial.WhyNot()));
        return 0;
    }
    CompareOn(false);
    CompareOn(true);
    return 0;
}
