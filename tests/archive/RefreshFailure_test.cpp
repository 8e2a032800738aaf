#include "tests/archive/RefreshFixture.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/support/FaultMount.h"

#include <QProcess>
#include <QSemaphore>

#include <atomic>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

class RefreshFailureTest : public RefreshTaskTest {
protected:
    void AddEmptyFiles(int first, int count) {
        for (int file = first; file < first + count; ++file) {
            files.Add(InArchive(QString::number(file)), {}, file);
        }
    }

    /// Lets the readers of one file wait for `release`.
    void Stall(const QString& name) {
        files.SetReadHook([this, name](const QString& path) {
            if (path == InArchive(name)) {
                stalled = true;
                release.acquire();
            }
        });
    }

    // Members, since what a read hook uses must live as long as the readers.
    QSemaphore release;
    std::atomic<bool> stalled{false};
};

} // namespace

TEST_F(RefreshFailureTest, NamesAMissingArchiveInUpperCase) {
    model.Append(NumberedRows(3));
    state.ArchiveDir = u"/Missing/Spam/"_s;
    state.LastAddedFile = u"kept"_s;
    EXPECT_EQ(Run(), RefreshOutcome::ArchiveMissing);
    EXPECT_EQ(result.reason, u"Archive /MISSING/SPAM/ not found"_s);
    EXPECT_EQ(maximum, 0);
    EXPECT_EQ(state.LastAddedFile, u"kept"_s);
}

TEST_F(RefreshFailureTest, SaysWhyAnArchiveCannotBeRead) {
    class Unreadable : public MemoryFileSystem {
    public:
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            throw FileError(folder, u"Permission denied"_s);
        }
    } unreadable;
    unreadable.AddFolder(state.ArchiveDir);
    model.Append(NumberedRows(3));
    Make(unreadable);
    EXPECT_EQ(Run(), RefreshOutcome::Unreadable);
    EXPECT_TRUE(result.reason.startsWith(u"Archive cannot be read:"_s));
    EXPECT_TRUE(result.reason.contains(u"Permission denied"_s));
    EXPECT_EQ(model.Count(), 3);
    EXPECT_EQ(maximum, 0);
    task.reset();
    pool.WaitForDone();
}

#ifdef __linux__

TEST_F(RefreshFailureTest, TellsADeadShareAndAnUnmountedOneFromAnEmptyArchiveAndGoesOnWhenItIsBack) {
    FaultMount mount({});
    if (!mount.IsMounted()) {
        GTEST_SKIP() << mount.WhyNot().toStdString();
    }
    const std::unique_ptr<FileSystem> local = MakeLocalFileSystem();
    local->WriteWhole(mount.RealFolder() + u"1.EML"_s, "Subject: one\n\n");
    state.ArchiveDir = mount.Folder();
    Make(*local);
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 1);

    mount.Kill();
    EXPECT_EQ(Run(), RefreshOutcome::Unreadable);
    EXPECT_TRUE(result.reason.startsWith(u"The server of the archive does not answer: "_s));
    EXPECT_EQ(model.Count(), 1);

    QProcess::execute(u"fusermount3"_s, {u"-uzq"_s, mount.Folder()});
    state.LastAddedFile.clear();
    EXPECT_EQ(Run(), RefreshOutcome::Unreadable);
    EXPECT_EQ(result.reason, u"The share of the archive is not mounted any more: "_s + mount.Folder());
    EXPECT_EQ(model.Count(), 1) << "the list is no empty one";

    mount.MountAgain();
    local->WriteWhole(mount.RealFolder() + u"2.EML"_s, "Subject: two\n\n");
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 2);
    task.reset();
    pool.WaitForDone();
}

#endif

TEST_F(RefreshFailureTest, ListsAsManyFilesAsA16BitCountHoldsAndNotOneMore) {
    AddEmptyFiles(0, 32'766);
    EXPECT_EQ(Run(false, true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 32'766);
    EXPECT_EQ(maximum, 32'767);
    maximum = 0;
    AddEmptyFiles(32'766, 1);
    EXPECT_EQ(Run(false, true), RefreshOutcome::TooMany);
    EXPECT_TRUE(result.reason.contains(u"32767"_s)) << result.reason.toStdString();
    EXPECT_EQ(maximum, 0) << "files were read";
    EXPECT_EQ(model.Count(), 32'766);
    state.LastAddedFile.clear();
    EXPECT_EQ(Run(false, true), RefreshOutcome::TooMany);
    EXPECT_EQ(model.Count(), 32'766) << "rows listed before must stay";
}

TEST_F(RefreshFailureTest, GivesAFileThatIsNoMessageARowWithTheError) {
    AddMessage(u"a.eml"_s);
    files.Add(InArchive(u"b.eml"_s), "", start.addDays(1).toMSecsSinceEpoch() * 1'000'000);
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    ASSERT_EQ(Keys(), (QStringList{u"a.eml"_s, u"b.eml"_s}));
    EXPECT_NE(model.Row(1).Cell(ColumnSubject), QString());
    EXPECT_EQ(model.Row(1).Cell(ColumnTo), QString());
    EXPECT_EQ(model.Row(1).Tag(), QString());
    EXPECT_EQ(model.Row(1).Cell(ColumnSize), u"0"_s);
    EXPECT_TRUE(model.Row(1).IsUnread());
    EXPECT_EQ(state.LastAddedFile, u"b.eml"_s);
    EXPECT_FALSE(result.lastMessageWasRead);
}

TEST_F(RefreshFailureTest, GivesAFileThatVanishesAfterTheListingARowWithTheError) {
    AddMessages(3);
    QObject::connect(task.get(), &RefreshTask::Counted, [this] { files.Remove(InArchive(u"001.eml"_s)); });
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    ASSERT_EQ(model.Count(), 3);
    EXPECT_TRUE(model.Row(1).Cell(ColumnSubject).contains(u"No such file"_s));
    EXPECT_EQ(model.Row(2).Cell(ColumnSubject), u"s"_s);
    EXPECT_TRUE(result.lastMessageWasRead);
}

TEST_F(RefreshFailureTest, ShowsTheRowsSoFarWhileAReaderStalls) {
    AddMessages(3);
    Stall(u"002.eml"_s);
    task->Start(false, false);
    EXPECT_TRUE(RunUntil([this] { return stalled && model.Count() == 2; }));
    EXPECT_TRUE(task->IsRunning());
    release.release(10);
    EXPECT_EQ(WaitForEnd(), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 3);
}

TEST_F(RefreshFailureTest, EndsWhenItIsCancelledAndKeepsTheRowsSoFar) {
    AddMessages(5);
    Stall(u"003.eml"_s);
    task->Start(false, false);
    ASSERT_TRUE(RunUntil([this] { return stalled && model.Count() == 3; }));
    task->Cancel();
    EXPECT_EQ(ends, 1) << "it ends at once";
    EXPECT_EQ(result.outcome, RefreshOutcome::Cancelled);
    release.release(10);
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"002.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
    EXPECT_EQ(ends, 1);
    files.SetReadHook({});
    EXPECT_EQ(Run(true), RefreshOutcome::Completed) << "the next one goes on where this one ended";
    EXPECT_EQ(model.Count(), 5);
}

TEST_F(RefreshFailureTest, IsCancelledWhileTheListingStalls) {
    class Stalling : public MemoryFileSystem {
    public:
        bool FolderExists(const QString& folder) const override {
            release.acquire();
            return MemoryFileSystem::FolderExists(folder);
        }

        mutable QSemaphore release;
    } stalling;
    model.Append(NumberedRows(3));
    Make(stalling);
    task->Start(false, false);
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 0);
    task->Cancel();
    EXPECT_EQ(result.outcome, RefreshOutcome::Cancelled);
    EXPECT_EQ(model.Count(), 3) << "an archive that did not answer is not a missing one";
    stalling.release.release(10);
    task.reset();
    pool.WaitForDone();
}

TEST_F(RefreshFailureTest, ASecondRefreshIsCancelledWhileItsListingStalls) {
    AddMessages(2);
    Run();
    files.SetLatency(std::chrono::milliseconds(50));
    task->Start(true, false);
    task->Cancel();
    EXPECT_FALSE(task->IsRunning());
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(result.outcome, RefreshOutcome::Cancelled);
}

TEST_F(RefreshFailureTest, OneRefreshAtATime) {
    AddMessages(2);
    task->Start(false, false);
    task->Start(true, true);
    EXPECT_EQ(WaitForEnd(), RefreshOutcome::Completed);
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(model.Row(0).IsUnread());
}

TEST_F(RefreshFailureTest, AnIncrementalRefreshReadsAgainWhatCouldNotBeRead) {
    AddMessages(2);
    AddMessage(u"locked.eml"_s);
    files.FailPath(InArchive(u"locked.eml"_s), u"The file is in use."_s);
    files.LetFoldersTellStatus([](const QString&) { return true; });
    Run();
    ASSERT_EQ(model.Count(), 3);
    ASSERT_TRUE(model.Row(2).Cell(ColumnSubject).contains(u"in use"_s));
    model.MarkRows(2, 2, true);
    files.FailPath(InArchive(u"locked.eml"_s), {});
    const int opened = files.OpenCount();
    EXPECT_EQ(Run(true), RefreshOutcome::Completed);
    EXPECT_EQ(files.OpenCount(), opened + 1) << "only that one";
    ASSERT_EQ(model.Count(), 3);
    EXPECT_EQ(model.Row(2).Cell(ColumnSubject), u"s"_s);
    EXPECT_EQ(model.Row(2).Tag(), u"eve@spam.example"_s);
    EXPECT_TRUE(model.Row(2).IsUnread()) << "as it was";
    Run(true);
    EXPECT_EQ(files.OpenCount(), opened + 1) << "it is read now";
}

TEST_F(RefreshFailureTest, AHalfWrittenMessageIsReadAgainWhenItHasChangedAndThenTolerated) {
    state.TolerationLevel = 2;
    Tolerate(u"@friend.example"_s);
    AddMessages(1);
    const auto write = [this](const QByteArray& bytes, int second) {
        files.Add(InArchive(u"late.eml"_s), bytes, start.addSecs(second).toMSecsSinceEpoch() * 1'000'000);
    };
    write({}, 10);
    AddMessage(u"noise.eml"_s);
    files.Add(InArchive(u"noise.eml"_s), "no message at all", start.addSecs(5).toMSecsSinceEpoch() * 1'000'000);
    Run();
    ASSERT_EQ(Keys(), (QStringList{u"000.eml"_s, u"noise.eml"_s, u"late.eml"_s}));
    const int opened = files.OpenCount();
    Run(true);
    EXPECT_EQ(files.OpenCount(), opened) << "neither has changed";
    write("Subject: s\r\nX-SENDER: bob@friend.example\r\n\r\n", 11);
    Run(true);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"noise.eml"_s}));
    EXPECT_TRUE(files.FileExists(u"/pickup/late.eml"_s));
    EXPECT_EQ(files.OpenCount(), opened + 1);
}

} // namespace quellbox
