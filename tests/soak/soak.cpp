// The program over a share for a long time: messages come and go, the server stalls and dies, keys and clicks act at
// random. Usage: quellbox_soak MINUTES [SEED]
#include "platform/ShareFileSystem.h"
#include "tests/soak/Checks.h"
#include "tests/soak/GapWatch.h"
#include "tests/soak/Messages.h"
#include "tests/soak/User.h"
#include "tests/soak/World.h"
#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/MemorySettingsStore.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest/QTest>

#include <cstdio>

namespace quellbox::soak {

namespace {

constexpr int quietEveryMs = 60'000;
constexpr int patienceMs = 60'000;

double ResidentMiB() {
    QFile file(QStringLiteral("/proc/self/statm"));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("0 0");
    return text.split(' ').value(1).toDouble() * 4096 / (1 << 20);
}

int OpenFiles() {
    return static_cast<int>(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
}

class Soak {
public:
    explicit Soak(unsigned seed)
        : world_(seed), program_(MakeProgramInfo(world_.Archive() + QStringLiteral("quellbox"))) {
        for (const auto& [key, value] :
             std::initializer_list<std::pair<const char*, QString>>{{"ArchiveDir", world_.Archive()},
                                                                    {"PickupDir", world_.Pickup()},
                                                                    {"AutoRefresh", QStringLiteral("1")},
                                                                    {"RefreshInterval", QStringLiteral("2")},
                                                                    {"TolerationLevel", QStringLiteral("2")}}) {
            store_.SetValue(QStringLiteral("Settings"), QLatin1String(key), value);
        }
        store_.SetValue(QStringLiteral("Tolerate"), ToleratedSender(), QStringLiteral("0"));
        MainPorts ports{*files_, store_, *clock_, *shell_, pool_, *volumes_, passwords_, program_};
        ports.reportError = [this](const QString& text) { errors_ += text; };
        window_ = std::make_unique<frmMain>(ports);
        window_->show();
        ledger_ = std::make_unique<Ledger>(*window_, [this](const QString& name) { return world_.IsInArchive(name); });
        user_ = std::make_unique<User>(*window_, seed + 1);
    }

    ~Soak() {
        window_->close();
        user_.reset();
        ledger_.reset();
        window_.reset();
        pool_.WaitForDone();
    }

    QString WhyNot() const { return world_.WhyNot(); }

    /// Lets everything act for so long, looks afterwards, and returns whether all is well.
    bool Run(int forMs) {
        user_->GoOn();
        world_.GoOn();
        {
            const GapWatch watch;
            QTest::qWait(forMs);
            gapMs_ = watch.LongestMs();
            seenGapMs_ = watch.LongestSeenMs();
            longestGapMs_ = std::max(longestGapMs_, gapMs_);
        }
        user_->Pause();
        world_.Pause();
        return Look();
    }

    double LongestGapMs() const { return longestGapMs_; }

    void PrintLine(int minute) {
        const World::Account& seen = account_;
        std::printf(
            "%3d min, %s: %d arrived, %d touched, %d vanished, %d held open, %d delivered (%d of them also kept), "
            "%zu deleted, %d dealt with as told, %d stalls, %d write faults, %d lost answers, %d deaths, %d "
            "actions; %.0f MiB, %d files open, longest gap %.0f ms (%.0f "
            "ms with the waiting for "
            "a processor), %lld errors told\n",
            minute, world_.Kind(), seen.arrived, seen.touched, seen.vanished, seen.held, seen.delivered, seen.inBoth,
            user_->Deleted().size(), ledger_->Done(), seen.stalls, seen.writeFaults, seen.lostAnswers, seen.deaths,
            user_->Actions(), ResidentMiB(), OpenFiles(), gapMs_, seenGapMs_, static_cast<long long>(errors_.size()));
        std::fflush(stdout);
    }

private:
    bool Look() {
        const bool quiet = QTest::qWaitFor([this] { return world_.IsQuiet(); }, patienceMs) &&
                           QTest::qWaitFor([this] { return window_->Jobs().IsIdle(); }, patienceMs);
        if (!Expect(quiet, QStringLiteral("the window is idle a minute after the server answers again"))) {
            return false;
        }
        pool_.WaitForDone(std::chrono::milliseconds(patienceMs));
        account_ = world_.Look(user_->Deleted());
        bool good = Expect(account_.violations.isEmpty(), account_.violations.join(QLatin1Char('\n')));
        const QStringList wrong = Checks(*window_, world_, *ledger_).Make();
        good &= Expect(wrong.isEmpty(), wrong.join(QLatin1Char('\n')));
        return good;
    }

    World world_;
    std::unique_ptr<Volumes> volumes_ = MakeVolumes();
    std::unique_ptr<FileSystem> files_ = MakeFileSystem(*volumes_);
    MemorySettingsStore store_;
    MemoryPasswordStore passwords_;
    std::unique_ptr<Clock> clock_ = MakeClock();
    std::unique_ptr<Shell> shell_ = MakeShell();
    ProgramInfo program_;
    ThreadWorkPool pool_;
    QStringList errors_;
    std::unique_ptr<frmMain> window_;
    std::unique_ptr<Ledger> ledger_;
    std::unique_ptr<User> user_;
    World::Account account_;
    double gapMs_ = 0; // of the last minute
    double seenGapMs_ = 0;
    double longestGapMs_ = 0;
};

/// Memory and files that stay open may grow in the first minutes, and not in the later ones.
bool IsFlat(double firstMiB, int firstFiles) {
    const double nowMiB = ResidentMiB();
    const int nowFiles = OpenFiles();
    std::printf("memory %.0f -> %.0f MiB, open files %d -> %d\n", firstMiB, nowMiB, firstFiles, nowFiles);
    return nowMiB < firstMiB * 1.3 + 20 && nowFiles < firstFiles + 20;
}

int Main(int minutes, unsigned seed) {
    std::printf("seed %u\n", seed);
    Soak soak(seed);
    if (!soak.WhyNot().isEmpty()) {
        std::printf("SKIPPED: %s\n", qPrintable(soak.WhyNot()));
        return 0;
    }
    bool good = true;
    double firstMiB = 0;
    int firstFiles = 0;
    for (int minute = 1; minute <= minutes && good; ++minute) {
        good = soak.Run(quietEveryMs);
        soak.PrintLine(minute);
        if (minute <= 2) {
            firstMiB = ResidentMiB();
            firstFiles = OpenFiles();
        }
    }
    std::printf("longest gap %.0f ms\n", soak.LongestGapMs());
    good = IsFlat(firstMiB, firstFiles) && good;
    std::printf("%s with seed %u\n", good ? "every message accounted for" : "FAILED", seed);
    return good ? 0 : 1;
}

} // namespace

} // namespace quellbox::soak

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const int minutes = argc > 1 ? std::atoi(argv[1]) : 10;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::random_device()();
    return quellbox::soak::Main(minutes, seed);
}
