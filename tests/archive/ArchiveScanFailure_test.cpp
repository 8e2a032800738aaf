#include "tests/archive/ArchiveScanFixture.h"

#include "platform/RuntimeError.h"
#include "tests/support/CallGate.h"

#include <QDeadlineTimer>
#include <QSemaphore>

#include <atomic>
#include <thread>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

class ArchiveScanFailure : public ArchiveScanTest {
protected:
    ~ArchiveScanFailure() override {
        release.release(100);
        scan.reset();
        pool.WaitForDone();
    }

    /// Lets the readers of one file wait for `release`.
    void Stall(const QString& name) {
        files.SetReadHook([this, name](const QString& path) {
            if (path == archive.PathOf(name)) {
                release.acquire();
            }
        });
    }

    /// A scan of other files, which have to live until it is over.
    ScanOutcome RunWith(const FileSystem& system) {
        Make(system);
        const ScanOutcome outcome = Run();
        Make(files);
        pool.WaitForDone();
        return outcome;
    }

    QSemaphore release;
};

/// Files of a folder where something is mounted, or nothing any more; and of a server that answers, or does not.
class MountedFiles : public MemoryFileSystem {
public:
    std::unique_ptr<FolderReader> ReadFolder(const QString& folder) const override {
        return std::make_unique<Reader>(*this, MemoryFileSystem::ReadFolder(folder));
    }

    std::atomic<bool> isMounted = true;
    std::atomic<bool> answers = true;

private:
    class Reader : public FolderReader {
    public:
        Reader(const MountedFiles& files, std::unique_ptr<FolderReader> reader)
            : files_(files), reader_(std::move(reader)) {}

        bool IsMountPoint() const override { return files_.isMounted; }
        std::optional<FileStatus> Status(const QString& name) const override {
            if (!files_.answers) {
                throw FileError(name, u"Connection timed out"_s, FileProblem::NoAnswer);
            }
            return reader_->Status(name);
        }
        std::unique_ptr<InputFile> Open(const QString& name) const override { return reader_->Open(name); }

    private:
        const MountedFiles& files_;
        const std::unique_ptr<FolderReader> reader_;
    };
};

} // namespace

TEST_F(ArchiveScanFailure, NamesAMissingArchiveInUpperCase) {
    request.archive = u"/Missing/Spam/"_s;
    EXPECT_EQ(Run(), ScanOutcome::ArchiveMissing);
    EXPECT_EQ(result.reason, u"Archive /MISSING/SPAM/ not found"_s);
    EXPECT_EQ(listed, -1);
    EXPECT_EQ(scan->Files(), nullptr);
    EXPECT_EQ(ends, 1);
}

TEST_F(ArchiveScanFailure, SaysWhyAnArchiveCannotBeRead) {
    class Unreadable : public MemoryFileSystem {
    public:
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            throw FileError(folder, u"Permission denied"_s);
        }
    } unreadable;
    unreadable.AddFolder(archive);
    EXPECT_EQ(RunWith(unreadable), ScanOutcome::Unreadable);
    EXPECT_EQ(result.reason, u"Archive cannot be read: /Archive/: Permission denied"_s);
    EXPECT_EQ(ends, 1);
}

TEST_F(ArchiveScanFailure, OfAMaildirWithoutItsFoldersSaysWhichAreMissing) {
    request.profile = &ProfileOf(u"maildir"_s);
    AddMessage(u"1.eml"_s, 1);
    EXPECT_EQ(Run(), ScanOutcome::Unreadable);
    EXPECT_TRUE(result.reason.startsWith(u"Archive cannot be read: /Archive/: It has none of the folders"_s))
        << result.reason.toStdString();
}

TEST_F(ArchiveScanFailure, TellsAServerThatDoesNotAnswerFromAMissingArchive) {
    class Dead : public MemoryFileSystem {
    public:
        bool FolderExists(const QString&) const override { return false; }
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            throw FileError(folder, u"Transport endpoint is not connected"_s, FileProblem::NoAnswer);
        }
    } dead;
    EXPECT_EQ(RunWith(dead), ScanOutcome::Unreadable);
    EXPECT_EQ(result.reason,
              u"The server of the archive does not answer: /Archive/: Transport endpoint is not connected"_s);
}

TEST_F(ArchiveScanFailure, TellsAServerThatFallsSilentBehindTheNames) {
    MountedFiles mounted;
    mounted.Add(archive.PathOf(u"a.eml"_s), "x");
    mounted.answers = false;
    EXPECT_EQ(RunWith(mounted), ScanOutcome::Unreadable);
    EXPECT_EQ(result.reason, u"The server of the archive does not answer: a.eml: Connection timed out"_s);
    EXPECT_EQ(listed, -1);
    EXPECT_EQ(ends, 1);
}

TEST_F(ArchiveScanFailure, TellsAShareThatIsNotMountedAnyMoreFromAnEmptyArchive) {
    MountedFiles mounted;
    mounted.Add(archive.PathOf(u"a.eml"_s), "Subject: s\r\n\r\n");
    Make(mounted);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    mounted.Remove(archive.PathOf(u"a.eml"_s));
    mounted.isMounted = false;
    EXPECT_EQ(Run(), ScanOutcome::Unreadable);
    EXPECT_EQ(result.reason, u"The share of the archive is not mounted any more: /Archive/"_s);
    mounted.isMounted = true;
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(listed, 0);
    Make(files);
    pool.WaitForDone();
}

TEST_F(ArchiveScanFailure, GivesAFileThatIsNoMessageARowThatSaysSo) {
    AddMessages(2);
    files.Add(archive.PathOf(NumberedName(1)), "", 1'000'000'000);
    std::vector<bool> loaded;
    scan->Start(request, [&loaded](const ReadRow& row) { loaded.push_back(row.loaded); });
    EXPECT_EQ(WaitForEnd(), ScanOutcome::Completed);
    EXPECT_EQ(loaded, (std::vector<bool>{true, false}));
}

TEST_F(ArchiveScanFailure, CancelledWhileTheFolderIsListedEndsTheListing) {
    class Endless : public MemoryFileSystem {
    public:
        void VisitEntries(const QString&, const std::function<void(FolderEntry)>& visit) const override {
            for (visited = 0; !giveUp; ++visited) {
                visit({QString::number(visited), EntryKind::File, false, std::nullopt});
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
        }

        mutable std::atomic<int> visited = 0;
        std::atomic<bool> giveUp = false;
    } endless;
    endless.AddFolder(archive);
    Make(endless);
    Start();
    ASSERT_TRUE(RunUntil([&endless] { return endless.visited > 10; }));
    scan->Cancel();
    EXPECT_FALSE(scan->IsRunning());
    EXPECT_EQ(ends, 1) << "it ends at once";
    EXPECT_EQ(result.outcome, ScanOutcome::Cancelled);
    EXPECT_EQ(result.reason, QString());
    EXPECT_TRUE(pool.WaitForDone(std::chrono::seconds(20))) << "the listing goes on";
    endless.giveUp = true;
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(scan->Files(), nullptr);
}

TEST_F(ArchiveScanFailure, DestroyedWhileTheFolderIsListedWaitsForNothing) {
    CallGate gate;
    class Stalling : public MemoryFileSystem {
    public:
        explicit Stalling(CallGate& gate) : gate_(gate) {}
        bool FolderExists(const QString& folder) const override {
            gate_.Pass(0);
            return MemoryFileSystem::FolderExists(folder);
        }

    private:
        CallGate& gate_;
    } stalling(gate);
    Make(stalling);
    Start();
    ASSERT_TRUE(gate.WaitForInside(1));
    scan.reset();
    gate.LetAll();
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 0);
}

TEST_F(ArchiveScanFailure, CancelledWhileFilesAreLookedAtEndsAtOnce) {
    AddMessages(200);
    files.SetLatency(std::chrono::milliseconds(20));
    Start();
    ASSERT_TRUE(RunUntil([this] { return files.CallCount() > 3; }));
    scan->Cancel();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(result.outcome, ScanOutcome::Cancelled);
    EXPECT_EQ(listed, -1);
    pool.WaitForDone();
    EXPECT_LT(files.CallCount(), 200) << "it goes on looking";
}

TEST_F(ArchiveScanFailure, CancelledWhileAFileIsReadKeepsWhatWasHandedOver) {
    AddMessages(5);
    Stall(NumberedName(3));
    Start();
    ASSERT_TRUE(RunUntil([this] { return rows.size() == 3; }));
    scan->Cancel();
    EXPECT_EQ(ends, 1) << "it ends at once";
    EXPECT_EQ(result.outcome, ScanOutcome::Cancelled);
    release.release(10);
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(rows, NumberedNames(3));
    EXPECT_EQ(ends, 1);
    scan->Cancel();
    EXPECT_EQ(ends, 1) << "nothing is under way";
    files.SetReadHook({});
    rows.clear();
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, NumberedNames(5));
}

TEST_F(ArchiveScanFailure, WhoTakesARowMayCancel) {
    constexpr int count = 3 * int{ArchiveScan::segment};
    AddMessages(count);
    for (const qsizetype last : {qsizetype{1}, qsizetype{ArchiveScan::segment}, qsizetype{ArchiveScan::segment} + 1}) {
        rows.clear();
        ends = 0;
        scan->Start(request, [this, last](const ReadRow& row) {
            rows.append(row.row.Key());
            if (rows.size() == last) {
                scan->Cancel();
            }
        });
        EXPECT_EQ(WaitForEnd(), ScanOutcome::Cancelled);
        pool.WaitForDone();
        QCoreApplication::processEvents();
        EXPECT_EQ(rows, NumberedNames(static_cast<int>(last)));
        EXPECT_EQ(ends, 1);
    }
}

TEST_F(ArchiveScanFailure, WhoTakesARowMayDestroyTheScan) {
    AddMessages(3);
    bool wasTaken = false;
    scan->Start(request, [this, &wasTaken, kept = u"kept"_s](const ReadRow&) {
        scan.reset();
        EXPECT_EQ(kept, u"kept"_s);
        EXPECT_FALSE(wasTaken) << "another row came";
        wasTaken = true;
    });
    ASSERT_TRUE(RunUntil([&wasTaken] { return wasTaken; }));
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 0);
}

TEST_F(ArchiveScanFailure, WhoHearsThatFilesAreListedMayCancel) {
    AddMessages(3);
    QObject::connect(scan.get(), &ArchiveScan::Listed, [this] { scan->Cancel(); });
    EXPECT_EQ(Run(), ScanOutcome::Cancelled);
    QCoreApplication::processEvents();
    EXPECT_EQ(rows, QStringList());
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(ListedNames(), NumberedNames(3)) << "which are known all the same";
}

/// Few files are looked at one by one, many by the handful; in either way all threads wait for a slow share.
class ArchiveScanOfASlowShare : public ArchiveScanTest, public testing::WithParamInterface<int> {};

TEST_P(ArchiveScanOfASlowShare, LooksAtManyFilesAtOnce) {
    class Gated : public MemoryFileSystem {
    public:
        std::optional<FileStatus> Status(const QString& path) const override {
            gate.Pass(next++);
            return MemoryFileSystem::Status(path);
        }

        mutable CallGate gate;
        mutable std::atomic<size_t> next = 0;
    } gated;
    for (int message = 0; message < GetParam(); ++message) {
        gated.Add(archive.PathOf(NumberedName(message)), "x", message);
    }
    Make(gated);
    request.reads = false;
    Start();
    EXPECT_TRUE(RunUntil([&gated] { return gated.gate.MostInside() == 64; }));
    gated.gate.LetAll();
    EXPECT_EQ(WaitForEnd(), ScanOutcome::Completed);
    EXPECT_EQ(listed, GetParam());
    scan.reset();
    pool.WaitForDone();
}

INSTANTIATE_TEST_SUITE_P(Counts, ArchiveScanOfASlowShare, testing::Values(64, 1100, 10'000));

} // namespace quellbox
